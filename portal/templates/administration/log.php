<?= $h($templates->render('administration/navigation', ['here' => 'logs'])) ?>
<h1><?= $h->text('admin-log-of', $name) ?></h1>
<form class="query" method="get" action="/administration/log">
<input type="hidden" name="name" value="<?= $h($name) ?>">
<?= $h($templates->render('administration/choice', ['label' => 'admin-kind', 'kinds' => $kinds, 'texts' => 'admin-level', 'chosen' => $kind])) ?>
<button><?= $h->text('admin-show') ?></button>
</form>
<p class="counts" role="status"><?= $h->text('admin-entry-count', $h->locale->number($count)) ?> <?php if ($isCut) { ?><?= $h->text('admin-log-cut') ?><?php } ?> <?php if ($paging->wasBeyond) { ?><?= $h->text('counts-beyond', $paging->pageCount) ?><?php } ?></p>
<?php if ($entries !== []) { ?>
<div class="wide" role="group" aria-label="<?= $h->text('admin-log') ?>" tabindex="0">
<table class="hits log">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-time', 'admin-kind', 'admin-text']])) ?>
<tbody>
<?php foreach ($entries as $entry) { ?>
<tr>
<td><?= $h($entry['time']) ?></td>
<td<?php if ($entry['kind'] === 'error') { ?> class="problem"<?php } ?>><?= $h->text('admin-level-' . $entry['kind']) ?></td>
<td class="text"><?= $h($entry['text']) ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
<?= $h($templates->render('administration/paging', ['paging' => $paging, 'path' => '/administration/log', 'query' => ['name' => $name, 'kind' => $kind]])) ?>
<p><a href="/administration/logs"><?= $h->text('admin-back-to-logs') ?></a></p>
