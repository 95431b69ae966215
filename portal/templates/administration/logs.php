<?= $h($templates->render('administration/navigation', ['here' => 'logs'])) ?>
<h1><?= $h->text('admin-logs') ?></h1>
<?php if (!$isSetUp) { ?>
<p><?= $h->text('admin-no-logs') ?></p>
<?php } else { ?>
<p><?= $h->text('admin-logs-help') ?></p>
<form class="query" role="search" method="get" action="/administration/logs">
<label for="q"><?= $h->text('admin-log-part') ?></label>
<input id="q" name="q" type="search" value="<?= $h($text) ?>">
<button><?= $h->text('search') ?></button>
</form>
<p class="counts" role="status"><?= $h->text('admin-log-count', $h->locale->number($paging->count)) ?> <?php if ($paging->wasBeyond) { ?><?= $h->text('counts-beyond', $paging->pageCount) ?><?php } ?></p>
<?php if ($files !== []) { ?>
<div class="wide" role="group" aria-label="<?= $h->text('admin-logs') ?>" tabindex="0">
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-log', 'changed', 'admin-size'], 'figures' => ['admin-size']])) ?>
<tbody>
<?php foreach ($files as $file) { ?>
<tr>
<td><a href="<?= $h->url('/administration/log', ['name' => $file['name']]) ?>"><?= $h($file['name']) ?></a><?php if ($file['name'] === $own) { ?> <?= $h->text('admin-own-session') ?><?php } ?></td>
<td><?= $h->time($file['time']) ?></td>
<td class="figure"><?= $h->number($file['size']) ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
<?= $h($templates->render('administration/paging', ['paging' => $paging, 'path' => '/administration/logs', 'query' => ['q' => $text]])) ?>
<?php } ?>
