<?php $query = ['q' => $text, 'kind' => $kind, 'group' => $group === null ? '' : $group->id]; ?>
<?= $h($templates->render('administration/navigation', ['here' => 'accounts'])) ?>
<h1><?php if ($group !== null) { ?><?= $h->text('admin-members-of', $group->name) ?><?php } else { ?><?= $h->text('admin-accounts') ?><?php } ?></h1>
<?php if ($isRemoved) { ?>
<p class="done" role="status"><?= $h->text('admin-done-removed') ?></p>
<?php } ?>
<p class="actions"><a href="/administration/add"><?= $h->text('admin-add-user') ?></a>
<a href="/administration/add?kind=group"><?= $h->text('admin-add-group') ?></a>
<?php if ($group !== null) { ?>
<a href="<?= $h->url('/administration/account', ['id' => $group->id]) ?>"><?= $h($group->name) ?></a>
<?php } ?>
</p>
<form class="query" role="search" method="get" action="/administration">
<?php if ($group !== null) { ?>
<input type="hidden" name="group" value="<?= $h($group->id) ?>">
<?php } ?>
<label for="q"><?= $h->text('admin-name-part') ?></label>
<input id="q" name="q" type="search" value="<?= $h($text) ?>">
<?= $h($templates->render('administration/choice', ['label' => 'admin-kind', 'kinds' => $kinds, 'texts' => 'admin-kind', 'chosen' => $kind])) ?>
<button><?= $h->text('search') ?></button>
</form>
<p class="counts" role="status"><?= $h->text('admin-count', $h->locale->number($paging->count)) ?> <?php if ($paging->wasBeyond) { ?><?= $h->text('counts-beyond', $paging->pageCount) ?><?php } ?></p>
<?php if ($accounts !== []) { ?>
<div class="wide" role="group" aria-label="<?= $h->text('admin-accounts') ?>" tabindex="0">
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-name', 'admin-kind', 'admin-archive-account', 'admin-id'], 'figures' => ['admin-id']])) ?>
<tbody>
<?php foreach ($accounts as $account) { ?>
<tr>
<td><a href="<?= $h->url('/administration/account', ['id' => $account->id]) ?>"><?= $h($account->name === '' ? '?' : $account->name) ?></a></td>
<td><?= $h->text('admin-kind-' . $account->kind()) ?><?php if ($account->mustChange === true) { ?>, <?= $h->text('admin-must-change-short') ?><?php } ?></td>
<td><?= $h($account->archiveUser) ?></td>
<td class="figure"><?= $h($account->id) ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
<?= $h($templates->render('administration/paging', ['paging' => $paging, 'path' => '/administration', 'query' => $query])) ?>
