<?= $h($templates->render('administration/navigation', ['here' => ''])) ?>
<h1><?= $h->text($isGroup ? 'admin-add-group' : 'admin-add-user') ?></h1>
<?= $h($templates->render('administration/refusal', ['refusal' => $refusal])) ?>
<form class="fields" method="post" action="/administration/add">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="kind" value="<?= $h($isGroup ? 'group' : 'user') ?>">
<label for="name"><?= $h->text('admin-name') ?></label>
<input id="name" name="name" value="<?= $h($name) ?>" maxlength="255" autocomplete="off" autocapitalize="none" required>
<?php if ($isGroup) { ?>
<p class="help"><?= $h->text('admin-group-help') ?></p>
<?php } else { ?>
<?= $h($templates->render('administration/new-password', ['label' => 'password', 'mustChange' => $mustChange])) ?>
<?php } ?>
<button class="chief"><?= $h->text($isGroup ? 'admin-add-group' : 'admin-add-user') ?></button>
</form>
