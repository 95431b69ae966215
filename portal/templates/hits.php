<?php
$last = $first + count($hits);
$here = $h::plainUrl('/hits', $search->with());
$columns = $view->shown();
$list = $h->query(['q' => $search->query, 'back' => $here, 'of' => $count]);
?>
<?= $h($templates->render('query-line', ['search' => $search])) ?>
<h1><?= $h->text('hits-for', $search->query) ?></h1>
<div class="heading">
<p class="counts" role="status"><?= $h->text('counts', $h->number($total), $h->number($first + 1), $h->number($last)) ?>
<?php if ($isCut && $count >= $limit) { ?>
 <?= $h->text('counts-limit', $h->number($count), $h->number($limit)) ?>
<?php } elseif ($isCut) { ?>
 <?= $h->text('counts-partial', $h->number($count)) ?>
<?php } ?>
<?php if ($withheld > 0) { ?>
 <?= $h->text('counts-withheld', $h->number($withheld)) ?>
<?php } ?>
<?php if ($wasBeyond) { ?>
 <?= $h->text('counts-beyond', $h->number($pageCount)) ?>
<?php } ?>
</p>
<?= $h($templates->render('list-view', ['view' => $view, 'place' => $search->place, 'back' => $here, 'token' => $token])) ?>
</div>
<div class="beside">
<form id="selection" class="hit-form" method="post" action="<?= $h->url('/selection', $search->with()) ?>" autocomplete="off" data-here="<?= $h($here) ?>" data-failed="<?= $h->text('selection-failed') ?>">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<div class="toolbar">
<div class="hit-tools" role="group" aria-label="<?= $h->text('hits-selection') ?>">
<span class="selected" aria-live="polite"><?= $h->text('selected', $h->number($selection->count())) ?><?php if ($selection->isFull()) { ?> <?= $h->text('selection-full', $h->number($selection::MOST)) ?><?php } ?></span>
<button class="scriptless" name="do" value="keep"><?= $h->text('keep-selection') ?></button>
<button name="do" value="page"><?= $h->text('select-page') ?></button>
<button name="do" value="all"><?= $h->text('select-all', $h->number($count)) ?></button>
<button name="do" value="clear"><?= $h->text('clear-selection') ?></button>
</div>
<div class="hit-tools" role="group" aria-label="<?= $h->text('download-selection') ?>">
<span><?= $h->text('download-selection') ?></span>
<button name="do" value="zip"><?= $h->text('download-zip') ?></button>
<button name="do" value="csv"><?= $h->text('download-csv') ?></button>
<button name="do" value="json"><?= $h->text('download-json') ?></button>
<?php if ($hasImages) { ?>
<button name="do" value="image"><?= $h->text('download-image') ?></button>
<?php } ?>
</div>
</div>
<div class="wide">
<table role="table" class="hits <?= $h($view->density) ?>">
<thead role="rowgroup">
<tr role="row">
<th role="columnheader" scope="col"><?= $h->text('select') ?></th>
<?php foreach ($columns as $column) { ?>
<?php if ($column->number === null) { ?>
<th role="columnheader" scope="col"><?= $h($column->title) ?></th>
<?php } else { ?>
<?php $isSorted = $search->sort === (string) ($column->number + 1); ?>
<?php $order = $isSorted && !$search->isDescending ? 'down' : ''; ?>
<th role="columnheader" scope="col"<?php if ($column->isFigure) { ?> class="figure"<?php } ?><?php if ($isSorted) { ?> aria-sort="<?= $h($search->isDescending ? 'descending' : 'ascending') ?>"<?php } ?>><a href="<?= $h->url('/hits', $search->with(['sort' => $column->number + 1, 'order' => $order, 'page' => ''])) ?>"><?= $h($column->title) ?></a></th>
<?php } ?>
<?php } ?>
<th role="columnheader" scope="col"><?= $h->text('preview') ?></th>
</tr>
</thead>
<tbody role="rowgroup">
<?php foreach ($hits as ['hit' => $hit, 'at' => $at]) { ?>
<?php $number = $first + $at + 1; ?>
<?php if ($hit === null) { ?>
<tr role="row" id="hit-<?= $h($number) ?>"><td role="cell" colspan="<?= $h(count($columns) + 2) ?>"><?= $h->text('withheld') ?></td></tr>
<?php continue; } ?>
<?php $link = $h->query(['channel' => $hit->channel, 'archive' => $hit->archive, 'id' => $hit->id, 'version' => $hit->version, 'at' => $number]); ?>
<?php $place = "$hit->channel/$hit->archive"; ?>
<?php $title = $columns[0]->number === null ? $place : $hit->values[$columns[0]->number] ?? ''; ?>
<?php $title = $title === '' ? $hit->id : $title; ?>
<?php $key = $selection::key($hit); ?>
<?php $isSelected = $selection->hasKey($key); ?>
<tr role="row" id="hit-<?= $h($number) ?>">
<td role="cell" class="tick"><label><input type="checkbox" name="hit" value="<?= $h($key) ?>"<?= $h->flag($isSelected, 'checked') ?> aria-label="<?= $h->text('select-hit', $title) ?>"></label><?php if ($isSelected) { ?><input type="hidden" name="was" value="<?= $h($key) ?>"><?php } ?></td>
<?php foreach ($columns as $order => $column) { ?>
<td role="cell"<?php if ($column->isFigure) { ?> class="figure"<?php } ?>><?php if ($order === 0) { ?><a class="hit" href="/document?<?= $h($link) ?>&amp;<?= $h($list) ?>"><?= $h($title) ?></a><?php } else { ?><?= $h($column->number === null ? $place : $hit->values[$column->number] ?? '') ?><?php } ?></td>
<?php } ?>
<td role="cell"><a class="look" href="/preview?<?= $h($link) ?>&amp;<?= $h($list) ?>" aria-label="<?= $h->text('preview-of', $title) ?>"><?= $h->text('preview') ?></a></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
</form>
</div>
<nav class="pages" aria-label="<?= $h->text('pages') ?>">
<?php if ($page > 1) { ?>
<a rel="prev" href="<?= $h->url('/hits', $search->with(['page' => $page - 1])) ?>"><?= $h->text('previous') ?></a>
<?php } ?>
<span><?= $h->text('page-of', $h->number($page), $h->number($pageCount)) ?></span>
<?php if ($page < $pageCount) { ?>
<a rel="next" href="<?= $h->url('/hits', $search->with(['page' => $page + 1])) ?>"><?= $h->text('next') ?></a>
<?php } ?>
<span class="sizes"><?= $h->text('hits-a-page') ?>
<?php foreach ($search::SIZES as $size) { ?>
<a href="<?= $h->url('/hits', $search->with(['size' => $size, 'page' => ''])) ?>"<?php if ($size === $search->size) { ?> aria-current="true"<?php } ?>><?= $h->number($size) ?></a>
<?php } ?>
</span>
</nav>
<p class="downloads"><?= $h->text('download-list') ?>
<a href="<?= $h->url('/download', $search->with(['as' => 'csv'])) ?>"><?= $h->text('download-csv') ?></a>
<a href="<?= $h->url('/download', $search->with(['as' => 'json'])) ?>"><?= $h->text('download-json') ?></a>
</p>
