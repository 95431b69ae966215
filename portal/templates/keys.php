<section id="keys" aria-labelledby="keys-title">
<h1 id="keys-title"><?= $h->text('keys') ?></h1>
<p><?= $h->text('keys-help') ?></p>
<table class="columns">
<thead>
<tr>
<th scope="col"><?= $h->text('keys-key') ?></th>
<th scope="col"><?= $h->text('keys-action') ?></th>
</tr>
</thead>
<tbody>
<tr><th scope="row"><kbd>/</kbd></th><td><?= $h->text('key-search') ?></td></tr>
<tr><th scope="row"><kbd><?= $h->text('key-down-name') ?></kbd></th><td><?= $h->text('key-down') ?></td></tr>
<tr><th scope="row"><kbd><?= $h->text('key-up-name') ?></kbd></th><td><?= $h->text('key-up') ?></td></tr>
<tr><th scope="row"><kbd><?= $h->text('key-enter-name') ?></kbd></th><td><?= $h->text('key-enter') ?></td></tr>
<tr><th scope="row"><kbd><?= $h->text('key-space-name') ?></kbd></th><td><?= $h->text('key-space') ?></td></tr>
<tr><th scope="row"><kbd><?= $h->text('key-escape-name') ?></kbd></th><td><?= $h->text('key-escape') ?></td></tr>
<tr><th scope="row"><kbd>x</kbd></th><td><?= $h->text('key-select') ?></td></tr>
<tr><th scope="row"><kbd>n</kbd></th><td><?= $h->text('key-mark-next') ?></td></tr>
<tr><th scope="row"><kbd>N</kbd></th><td><?= $h->text('key-mark-previous') ?></td></tr>
<tr><th scope="row"><kbd>]</kbd></th><td><?= $h->text('key-next') ?></td></tr>
<tr><th scope="row"><kbd>[</kbd></th><td><?= $h->text('key-previous') ?></td></tr>
<tr><th scope="row"><kbd>?</kbd></th><td><?= $h->text('key-help') ?></td></tr>
</tbody>
</table>
<form method="post" action="/keys">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="back" value="<?= $h($back) ?>">
<label><input type="checkbox" name="keys" value="1"<?= $h->flag($isOn, 'checked') ?>> <?= $h->text('keys-on') ?></label>
<button class="chief"><?= $h->text('keys-save') ?></button>
</form>
</section>
