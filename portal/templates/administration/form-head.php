<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="id" value="<?= $h($account->id) ?>">
<input type="hidden" name="stamp" value="<?= $h($account->stamp()) ?>">
<input type="hidden" name="action" value="<?= $h($action) ?>">
