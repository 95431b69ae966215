<?php $place = "$name->channel/$name->archive"; ?>
<?php if ($isNew) { ?>
<p><a href="<?= $h->url('/', ['in' => $place]) ?>"><?= $h->text('back-to-search') ?></a></p>
<?php } else { ?>
<p><a href="<?= $h->url('/document', $state) ?>"><?= $h->text('back-to-document') ?></a></p>
<?php } ?>
<h1><?= $h($heading) ?></h1>
<p class="counts"><?= $h($place) ?><?php if (!$isNew) { ?>, <?= $h->text('document-version', $name->id, $name->version) ?><?php } ?></p>
<?php if ($problem !== '') { ?>
<div class="problem" role="alert">
<p><?= $h->text($problem) ?><?php if ($detail !== '') { ?>: <?= $h($detail) ?><?php } ?></p>
<?php if ($help !== '') { ?>
<p><?= $h->text($help) ?></p>
<?php } ?>
<?php if ($isUncertain) { ?>
<p><?= $h->text('form-unknown') ?></p>
<?php } elseif ($outcomes === []) { ?>
<p><?= $h->text('form-again') ?></p>
<?php } ?>
</div>
<?php } ?>
<?php if ($outcomes !== []) { ?>
<?= $h($templates->render('document-outcomes', ['outcomes' => $outcomes])) ?>
<?php } ?>
<?php if ($isKept) { ?>
<p class="problem" role="status"><?= $h->text('form-kept') ?></p>
<?php } ?>
<?php if (count($masks) > 1) { ?>
<nav class="pages" aria-label="<?= $h->text('mask') ?>">
<span><?= $h->text('mask') ?></span>
<?php foreach ($masks as $mask) { ?>
<a href="<?= $h->url($path, $state + ['mask' => $mask->name]) ?>"<?php if ($form !== null && $mask->name === $form->name) { ?> aria-current="true"<?php } ?>><?= $h($mask->name) ?></a>
<?php } ?>
</nav>
<?php } ?>
<form class="fields" id="document-form" method="post" enctype="multipart/form-data" action="<?= $h->url($path, $state + ['mask' => $form === null ? '' : $form->name]) ?>" data-largest="<?= $h($largest) ?>" data-largest-form="<?= $h($largestForm) ?>" data-most-files="<?= $h($mostFiles) ?>" data-texts="<?= $h->json($texts) ?>"<?php if ($outcomes !== []) { ?> data-left="<?= $h->json($left) ?>"<?php } ?>>
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="by" value="<?= $h($by) ?>">
<input type="hidden" name="number" value="<?= $h($number) ?>">
<label for="title"><?= $h->text('title') ?> <span class="needed"><?= $h->text('needed') ?></span></label>
<input id="title" name="title" value="<?= $h($documentTitle) ?>" required autofocus<?php if ($titleProblem !== '') { ?> aria-invalid="true" aria-describedby="title-problem"<?php } ?>>
<?php if ($titleProblem !== '') { ?>
<p class="problem" id="title-problem"><?= $h->text($titleProblem) ?></p>
<?php } ?>
<?php if ($form !== null) { ?>
<?= $h($templates->render('mask-fields', ['form' => $form, 'isChecked' => $isChecked, 'hasLongTexts' => true])) ?>
<?php } ?>
<label for="files"><?= $h->text($isNew ? 'files' : 'files-more') ?></label>
<input id="files" name="files[]" type="file" multiple aria-describedby="files-help<?php if ($fileProblems !== []) { ?> files-problem<?php } ?>"<?php if ($fileProblems !== []) { ?> aria-invalid="true"<?php } ?>>
<p class="help" id="files-help"><?= $h->text('files-help', $mostFiles, $h::bytes($largest)) ?><?php if ($largestForm > 0) { ?> <?= $h->text('files-total', $h::bytes($largestForm)) ?><?php } ?></p>
<?php if ($fileProblems !== []) { ?>
<ul class="problem" id="files-problem">
<?php foreach ($fileProblems as [$text, $file]) { ?>
<li><?= $h->text($text) ?> <?= $h($file) ?></li>
<?php } ?>
</ul>
<?php } ?>
<?php if ($isNew) { ?>
<fieldset>
<legend><?= $h->text('files-as') ?></legend>
<label><input type="radio" name="as" value="one"<?= $h->flag(!$isEach, 'checked') ?>> <?= $h->text('files-as-one') ?></label>
<label><input type="radio" name="as" value="each"<?= $h->flag($isEach, 'checked') ?>> <?= $h->text('files-as-each') ?></label>
</fieldset>
<?php } ?>
<button class="chief"><?= $h->text($isNew ? 'create' : 'save') ?></button>
</form>
<script src="/upload.js" defer></script>
