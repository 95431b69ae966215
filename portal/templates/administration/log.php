<?= $h($templates->render('administration/navigation', ['here' => 'logs'])) ?>
<h1><?= $h->text('admin-log-of', $name) ?></h1>
<form class="query" method="get" action="/administration/log">
<input type="hidden" name="name" value="<?= $h($name) ?>">
<label for="kind"><?= $h->text('admin-kind') ?></label>
<select id="kind" name="kind">
<?php foreach ($kinds as $each) { ?>
<option value="<?= $h($each) ?>"<?= $h->flag($each === $kind, 'selected') ?>><?= $h->text($each === '' ? 'admin-kind-all' : "admin-level-$each") ?></option>
<?php } ?>
</select>
<button><?= $h->text('admin-show') ?></button>
</form>
<p class="counts" role="status"><?= $h->text('admin-entry-count', $h->locale->number($count)) ?> <?php if ($isCut) { ?><?= $h->text('admin-log-cut') ?><?php } ?> <?php if ($paging->wasBeyond) { ?><?= $h->text('counts-beyond', $paging->pageCount) ?><?php } ?></p>
<?php if ($entries !== []) { ?>
<div class="wide" role="group" aria-label="<?= $h->text('admin-log') ?>" tabindex="0">
<table class="hits log">
<thead>
<tr>
<th scope="col"><?= $h->text('admin-time') ?></th>
<th scope="col"><?= $h->text('admin-kind') ?></th>
<th scope="col"><?= $h->text('admin-text') ?></th>
</tr>
</thead>
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
