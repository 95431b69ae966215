<form class="query" method="get" action="/hits" role="search">
<label for="q"><?= $h->text('query') ?></label>
<input id="q" name="q" type="search" value="<?= $h($search->query) ?>" required>
<input type="hidden" name="in" value="<?= $h($search->place) ?>">
<input type="hidden" name="format" value="<?= $h($search->format) ?>">
<input type="hidden" name="layout" value="<?= $h($search->layout) ?>">
<button class="chief"><?= $h->text('search') ?></button>
<a href="<?= $h->url('/', ['q' => $search->query, 'in' => $search->place, 'format' => $search->format, 'layout' => $search->layout]) ?>"><?= $h->text('change-search') ?></a>
</form>
<?php foreach ($search->fixedValues() as [$field, $value]) { ?>
<p class="help"><?= $h->text('fixed-value', $field, $value) ?></p>
<?php } ?>
<?php if ($search->leftOut() !== []) { ?>
<p class="help"><?= $h->text('left-out') ?>
<?php foreach ($search->leftOut() as $place) { ?>
<a href="<?= $h->url('/hits', ['in' => $place, 'page' => ''] + $search->with()) ?>"><?= $h($place) ?></a>
<?php } ?>
</p>
<?php } ?>
