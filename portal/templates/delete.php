<h1><?= $h->text($heading) ?></h1>
<p><strong><?= $h($title) ?></strong></p>
<p class="counts"><?= $h($asked->name->channel) ?>/<?= $h($asked->name->archive) ?>, <?= $h->text('document-version', $asked->name->id, $version) ?></p>
<?php if ($problem !== '') { ?>
<p class="problem" role="alert"><?= $h->text($problem) ?></p>
<?php } ?>
<p><?= $h->text("$heading-help", $noteCount) ?></p>
<form class="fields" method="post" action="<?= $h->url($action, $asked->with(['version' => $version])) ?>">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="number" value="<?= $h($number) ?>">
<input type="hidden" name="seen" value="<?= $h($seen) ?>">
<?php if ($choices !== []) { ?>
<fieldset>
<legend><?= $h->text('delete-what') ?></legend>
<?php foreach ($choices as $value => $text) { ?>
<label><input type="radio" name="what" value="<?= $h($value) ?>" required> <?= $h->text($text, $version) ?></label>
<?php } ?>
</fieldset>
<?php } ?>
<button class="chief"><?= $h->text($heading) ?></button>
<a href="<?= $h->url('/document', $asked->with()) ?>"><?= $h->text('cancel') ?></a>
</form>
