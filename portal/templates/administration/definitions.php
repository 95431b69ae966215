<?= $h($templates->render('administration/navigation', ['here' => 'definitions'])) ?>
<h1><?= $h->text('admin-definitions') ?></h1>
<p><?= $h->text('admin-definitions-help') ?></p>
<?php foreach (['document' => $documents, 'search' => $searches] as $kind => $definitions) { ?>
<section aria-labelledby="<?= $h($kind) ?>">
<h2 id="<?= $h($kind) ?>"><?= $h->text("admin-right-$kind") ?></h2>
<?php if ($definitions === []) { ?>
<p><?= $h->text('admin-none') ?></p>
<?php } else { ?>
<div class="wide" role="group" aria-labelledby="<?= $h($kind) ?>" tabindex="0">
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-number', 'admin-applies-to', 'admin-fields', 'admin-given-to']])) ?>
<tbody>
<?php foreach ($definitions as $definition) { ?>
<tr id="<?= $h("$kind-" . $definition['id']) ?>">
<th scope="row"><?= $h($definition['id']) ?></th>
<td>
<?php if ($definition['places'] === []) { ?>
<?= $h->text('admin-nowhere') ?>
<?php } ?>
<?php foreach ($definition['places'] as $place) { ?>
<div><?= $h($place) ?></div>
<?php } ?>
</td>
<td>
<?php foreach ($definition['lines'] as $line) { ?>
<?php if ($kind === 'document') { ?>
<div><?= $h->text('admin-condition', $line[0], $line[1], $line[2], $line[3]) ?></div>
<?php } else { ?>
<div><?= $h->text('admin-field', $line[0]) ?>
<ul>
<?php if ($line[1] !== '') { ?>
<li><?= $h->text('admin-fixed', $line[1]) ?></li>
<?php } ?>
<?php if ($line[2] === '1') { ?>
<li><?= $h->text('admin-hides') ?></li>
<?php } ?>
<?php if ($line[3] === '1') { ?>
<li><?= $h->text('admin-no-matchcode') ?></li>
<?php } ?>
</ul>
</div>
<?php } ?>
<?php } ?>
</td>
<td>
<?php foreach ($definition['holders'] as [$id, $name]) { ?>
<div><a href="<?= $h->url('/administration/account', ['id' => $id]) ?>"><?= $h($name) ?></a></div>
<?php } ?>
</td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
</section>
<?php } ?>
