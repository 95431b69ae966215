<?php
use Oxaqrycln\ColumnKind;

$last = $first + count($hits);
$here = $h::plainUrl('/hits', $search->with());
?>
<?= $h($templates->render('query-line', ['search' => $search])) ?>
<h1><?= $h->text('hits-for', $search->query) ?></h1>
<p class="counts" role="status"><?= $h->text('counts', $total, $first + 1, $last) ?>
<?php if ($isCut) { ?>
<?= $h->text('counts-limit', $limit) ?>
<?php } ?>
<?php if ($wasBeyond) { ?>
<?= $h->text('counts-beyond', $pageCount) ?>
<?php } ?>
</p>
<div class="wide">
<table class="hits">
<thead>
<tr>
<?php foreach ($columns as $number => $title) { ?>
<?php $isSorted = $search->sort === (string) ($number + 1); ?>
<?php $order = $isSorted && !$search->isDescending ? 'down' : ''; ?>
<th scope="col"<?php if ($isSorted) { ?> aria-sort="<?= $h($search->isDescending ? 'descending' : 'ascending') ?>"<?php } ?>><a href="<?= $h->url('/hits', $search->with(['sort' => $number + 1, 'order' => $order, 'page' => ''])) ?>"><?= $h($title) ?></a></th>
<?php } ?>
<th scope="col"><?= $h->text('archive') ?></th>
</tr>
</thead>
<tbody>
<?php foreach ($hits as ['hit' => $hit, 'at' => $at]) { ?>
<?php $link = ['channel' => $hit->channel, 'archive' => $hit->archive, 'id' => $hit->id, 'version' => $hit->version, 'q' => $search->query, 'back' => $here, 'at' => $first + $at + 1, 'of' => $count]; ?>
<tr id="hit-<?= $h($first + $at + 1) ?>">
<?php foreach ($columns as $number => $title) { ?>
<?php $value = $hit->values[$number] ?? ''; ?>
<td<?php if ($kinds[$number] !== ColumnKind::Text) { ?> class="figure"<?php } ?>><?php if ($number === 0) { ?><a href="<?= $h->url('/document', $link) ?>"><?= $h($value === '' ? $hit->id : $value) ?></a><?php } else { ?><?= $h($value) ?><?php } ?></td>
<?php } ?>
<td><?= $h($hit->channel) ?>/<?= $h($hit->archive) ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<nav class="pages" aria-label="<?= $h->text('pages') ?>">
<?php if ($page > 1) { ?>
<a rel="prev" href="<?= $h->url('/hits', $search->with(['page' => $page - 1])) ?>"><?= $h->text('previous') ?></a>
<?php } ?>
<span><?= $h->text('page-of', $page, $pageCount) ?></span>
<?php if ($page < $pageCount) { ?>
<a rel="next" href="<?= $h->url('/hits', $search->with(['page' => $page + 1])) ?>"><?= $h->text('next') ?></a>
<?php } ?>
<span class="sizes"><?= $h->text('hits-a-page') ?>
<?php foreach ($search::SIZES as $size) { ?>
<a href="<?= $h->url('/hits', $search->with(['size' => $size, 'page' => ''])) ?>"<?php if ($size === $search->size) { ?> aria-current="true"<?php } ?>><?= $h($size) ?></a>
<?php } ?>
</span>
</nav>
