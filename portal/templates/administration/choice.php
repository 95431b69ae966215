<label for="kind"><?= $h->text($label) ?></label>
<select id="kind" name="kind">
<?php foreach ($kinds as $kind) { ?>
<option value="<?= $h($kind) ?>"<?= $h->flag($kind === $chosen, 'selected') ?>><?= $h->text($kind === '' ? 'admin-kind-all' : "$texts-$kind") ?></option>
<?php } ?>
</select>
