<h1><?= $h->text('search') ?></h1>
<?php if ($channels === []) { ?>
<p><?= $h->text('nothing-to-search') ?></p>
<?php } else { ?>
<div class="split">
<div>
<form class="fields" method="get" action="/hits" role="search">
<label for="q"><?= $h->text('query') ?></label>
<input id="q" name="q" type="search" value="<?= $h($query) ?>" aria-describedby="q-help" required<?= $h->flag($form === null, 'autofocus') ?>>
<p class="help" id="q-help"><?= $h->text('query-help') ?></p>
<label for="in"><?= $h->text('where') ?></label>
<select id="in" name="in">
<option value=""><?= $h->text('everywhere') ?></option>
<?php foreach ($channels as $channel) { ?>
<optgroup label="<?= $h($channel->name) ?>">
<?php foreach ($channel->archives as $archive) { ?>
<?php $place = "$channel->name/$archive->name"; ?>
<option value="<?= $h($place) ?>"<?= $h->flag($place === $chosen, 'selected') ?>><?= $h($archive->name) ?> (<?= $h($archive->comment) ?>)</option>
<?php } ?>
</optgroup>
<?php } ?>
</select>
<?php if ($formats !== []) { ?>
<input type="hidden" name="of" value="<?= $h($chosen) ?>">
<label for="format"><?= $h->text('format') ?></label>
<select id="format" name="format">
<option value=""><?= $h->text('format-all') ?></option>
<?php foreach ($formats as $each) { ?>
<option<?= $h->flag($each === $format, 'selected') ?>><?= $h($each) ?></option>
<?php } ?>
</select>
<?php } ?>
<?php if ($layouts !== []) { ?>
<label for="layout"><?= $h->text('layout') ?></label>
<select id="layout" name="layout">
<option value=""><?= $h->text('layout-own') ?></option>
<?php foreach ($layouts as $id => $title) { ?>
<option value="<?= $h($id) ?>"<?= $h->flag((string) $id === $layout, 'selected') ?>><?= $h($title) ?></option>
<?php } ?>
</select>
<?php } ?>
<?php foreach ($fixed as [$field, $value]) { ?>
<p class="help"><?= $h->text('fixed-value', $field, $value) ?></p>
<?php } ?>
<p class="buttons">
<button class="chief"><?= $h->text('search') ?></button>
<button formaction="/" formnovalidate><?= $h->text('choose-archive') ?></button>
</p>
</form>
<?php if ($masks !== []) { ?>
<section aria-labelledby="masks">
<h2 id="masks"><?= $h->text('masks') ?></h2>
<nav class="pages" aria-labelledby="masks">
<?php foreach ($masks as $mask) { ?>
<a href="<?= $h->url('/', ['in' => $chosen, 'mask' => $mask->name, 'layout' => $layout], 'masks') ?>"<?php if ($form !== null && $mask->name === $form->name) { ?> aria-current="true"<?php } ?>><?= $h($mask->name) ?></a>
<?php } ?>
</nav>
<?php if ($form !== null) { ?>
<?php if ($isChecked && $form->isValid()) { ?>
<p class="problem" role="alert"><?= $h->text('mask-empty') ?></p>
<?php } elseif ($isChecked) { ?>
<p class="problem" role="alert"><?= $h->text('mask-problem') ?></p>
<?php } ?>
<form class="fields" method="get" action="/" aria-label="<?= $h->text('mask-of', $form->name) ?>">
<input type="hidden" name="in" value="<?= $h($chosen) ?>">
<input type="hidden" name="mask" value="<?= $h($form->name) ?>">
<input type="hidden" name="layout" value="<?= $h($layout) ?>">
<?= $h($templates->render('mask-fields', ['form' => $form, 'isChecked' => $isChecked, 'hasLongTexts' => false])) ?>
<button class="chief" name="run" value="1"><?= $h->text('search-mask') ?></button>
</form>
<?php } ?>
</section>
<?php } ?>
</div>
<?php if ($trees !== [] || $mayCreate || $recent !== []) { ?>
<aside>
<?php if ($trees !== []) { ?>
<section aria-labelledby="trees">
<h2 id="trees"><?= $h->text('trees') ?></h2>
<ul class="list">
<?php foreach ($trees as $tree) { ?>
<li><a href="<?= $h->url('/outline', ['in' => $chosen, 'tree' => $tree->id]) ?>"><?= $h($tree->name) ?></a></li>
<?php } ?>
</ul>
</section>
<?php } ?>
<?php if ($mayCreate) { ?>
<p><a href="<?= $h->url('/create', ['in' => $chosen]) ?>"><?= $h->text('create-in', $chosen) ?></a></p>
<?php } ?>
<?php if ($recent !== []) { ?>
<section aria-labelledby="recent">
<h2 id="recent"><?= $h->text('recent') ?></h2>
<ul class="list">
<?php foreach ($recent as $entry) { ?>
<li><a href="<?= $h->url('/hits', $entry) ?>"><?= $h($entry['q']) ?></a> <span class="place"><?= $h($entry['in'] === '' ? $h->locale->text('everywhere') : $entry['in']) ?></span></li>
<?php } ?>
</ul>
</section>
<?php } ?>
</aside>
<?php } ?>
</div>
<?php } ?>
