<?php
use Portal\Administration\Names;
use Portal\Administration\Rights;

$path = '/administration/account';
$head = static fn(string $action) => $templates->render('administration/form-head', ['token' => $token, 'account' => $account, 'action' => $action]);
$hasPassword = !$account->isGroup() || $account->hasPassword;
?>
<?= $h($templates->render('administration/navigation', ['here' => ''])) ?>
<h1><?= $h($account->name) ?></h1>
<?php if ($done !== '') { ?>
<p class="done" role="status"><?= $h->text("admin-done-$done") ?></p>
<?php } ?>
<?php if ($isUnknown) { ?>
<p class="problem" role="status"><?= $h->text('admin-unknown') ?></p>
<?php } ?>
<?= $h($templates->render('administration/refusal', ['refusal' => $refusal])) ?>
<p class="counts"><?= $h->text('admin-kind-' . $account->kind()) ?>, <?= $h->text('admin-id') ?> <?= $h($account->id) ?>
<?php if ($account->mustChange === true) { ?>, <?= $h->text('admin-must-change-short') ?>
<?php } ?>
<?php if ($isSelf) { ?>, <?= $h->text('admin-self') ?>
<?php } ?>
</p>
<p class="actions"><a href="<?= $h->url('/administration/why', ['id' => $account->id]) ?>"><?= $h->text('admin-why') ?></a>
<?php if (!$isSelf) { ?>
<a href="<?= $h->url('/administration/remove', ['id' => $account->id]) ?>"><?= $h->text('admin-remove') ?></a>
<?php } ?>
</p>

<section aria-labelledby="name-title" id="name">
<h2 id="name-title"><?= $h->text('admin-name') ?></h2>
<form class="fields" method="post" action="<?= $h($path) ?>">
<?= $h($head('rename')) ?>
<label for="new-name"><?= $h->text('admin-name') ?></label>
<input id="new-name" name="name" value="<?= $h($action === 'rename' ? $typed['name'] ?? $account->name : $account->name) ?>" maxlength="255" autocomplete="off" autocapitalize="none" required>
<button><?= $h->text('admin-rename') ?></button>
</form>
</section>

<?php if ($hasPassword) { ?>
<section aria-labelledby="password-title" id="password">
<h2 id="password-title"><?= $h->text('password') ?></h2>
<?php if ($account->isDisabled()) { ?>
<p><?= $h->text('admin-disabled-help') ?></p>
<?php } ?>
<?php if (!$account->isGroup()) { ?>
<form class="fields" method="post" action="<?= $h($path) ?>">
<?= $h($head('password')) ?>
<?= $h($templates->render('administration/new-password', ['label' => 'password-new', 'mustChange' => !$isSelf])) ?>
<button><?= $h->text('admin-set-password') ?></button>
</form>
<?php } ?>
<div class="actions">
<form method="post" action="<?= $h($path) ?>">
<?= $h($head('must-change')) ?>
<?php if ($account->mustChange === true) { ?>
<button><?= $h->text('admin-must-change-off') ?></button>
<?php } else { ?>
<button name="must-change" value="1"><?= $h->text('admin-must-change-on') ?></button>
<?php } ?>
</form>
<?php if ($account->hasPassword && !$isSelf) { ?>
<form method="post" action="<?= $h($path) ?>">
<?= $h($head('disable')) ?>
<button aria-describedby="disable-help"><?= $h->text('admin-disable') ?></button>
</form>
<?php } ?>
</div>
<p class="help" id="disable-help"><?= $h->text('admin-disable-help') ?></p>
</section>
<?php } ?>

<?php if (!$account->isGroup() || $account->archiveUser !== '') { ?>
<section aria-labelledby="archive-account-title" id="archive-account">
<h2 id="archive-account-title"><?= $h->text('admin-archive-account') ?></h2>
<p class="help"><?= $h->text('admin-archive-account-help') ?></p>
<form class="fields" method="post" action="<?= $h($path) ?>">
<?= $h($head('archive-account')) ?>
<label for="archive-user"><?= $h->text('admin-archive-user') ?></label>
<input id="archive-user" name="archive-user" value="<?= $h($typed['archive-user'] ?? $account->archiveUser) ?>" maxlength="255" autocomplete="off">
<label for="archive-password"><?= $h->text('admin-archive-password') ?></label>
<input id="archive-password" name="archive-password" type="password" autocomplete="new-password">
<button><?= $h->text('admin-save') ?></button>
</form>
</section>
<?php } ?>

<section aria-labelledby="groups-title" id="groups">
<?php if ($account->isGroup()) { ?>
<h2 id="groups-title"><?= $h->text('admin-members') ?></h2>
<p><a href="<?= $h->url('/administration', ['group' => $account->id]) ?>"><?= $h->text('admin-all-members', $h->locale->number($memberCount)) ?></a></p>
<p class="help"><?= $h->text('admin-members-help') ?></p>
<ul>
<?php foreach ($members as $member) { ?>
<li><a href="<?= $h->url($path, ['id' => $member->id], 'groups') ?>"><?= $h($member->name) ?></a></li>
<?php } ?>
</ul>
<?php } else { ?>
<h2 id="groups-title"><?= $h->text('admin-groups') ?></h2>
<?php } ?>
<?php if ($memberships !== []) { ?>
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-group', 'admin-change']])) ?>
<tbody>
<?php foreach ($memberships as $group) { ?>
<tr>
<td><a href="<?= $h->url($path, ['id' => $group->id]) ?>"><?= $h($group->name) ?></a></td>
<td><form method="post" action="<?= $h($path) ?>">
<?= $h($head('leave')) ?>
<button name="group" value="<?= $h($group->id) ?>" aria-label="<?= $h->text('admin-leave-group', $group->name) ?>"><?= $h->text('admin-leave') ?></button>
</form></td>
</tr>
<?php } ?>
</tbody>
</table>
<?php } elseif (!$account->isGroup()) { ?>
<p><?= $h->text('admin-none') ?></p>
<?php } ?>
<?php if ($groups !== []) { ?>
<form class="query" method="post" action="<?= $h($path) ?>">
<?= $h($head('join')) ?>
<label for="group"><?= $h->text('admin-group') ?></label>
<select id="group" name="group">
<?php foreach ($groups as $group) { ?>
<option value="<?= $h($group->id) ?>"><?= $h($group->name) ?> (<?= $h($group->id) ?>)</option>
<?php } ?>
</select>
<button><?= $h->text('admin-join') ?></button>
</form>
<?php } ?>
</section>

<section aria-labelledby="rights-title" id="rights">
<h2 id="rights-title"><?= $h->text('admin-rights') ?></h2>
<p class="help"><?= $h->text('admin-rights-help') ?></p>
<?php foreach ($rights as ['kind' => $kind, 'entries' => $entries]) { ?>
<h3 id="right-<?= $h($kind) ?>"><?= $h->text("admin-right-$kind") ?></h3>
<?php if ($entries === []) { ?>
<p><?= $h->text('admin-none') ?></p>
<?php } else { ?>
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-entry', 'admin-change']])) ?>
<tbody>
<?php foreach ($entries as $entry) { ?>
<?php $shown = $kind === 'general' && $entry === 1 ? "1 ({$h->locale->text('administration')})" : Names::shown((string) $entry); ?>
<tr>
<td><?= $h($shown) ?><?php if (!Rights::isUsable($kind, $entry)) { ?> <strong class="problem"><?= $h->text('admin-unusable') ?></strong><?php } ?></td>
<td><form method="post" action="<?= $h($path) ?>">
<?= $h($head('take')) ?>
<input type="hidden" name="kind" value="<?= $h($kind) ?>">
<button name="entry" value="<?= $h($entry) ?>" aria-label="<?= $h->text('admin-take-entry', $shown) ?>"><?= $h->text('admin-take') ?></button>
</form></td>
</tr>
<?php } ?>
</tbody>
</table>
<?php } ?>
<form class="query" method="post" action="<?= $h($path) ?>">
<?= $h($head('give')) ?>
<input type="hidden" name="kind" value="<?= $h($kind) ?>">
<label for="value-<?= $h($kind) ?>"><?= $h->text("admin-value-$kind") ?></label>
<input id="value-<?= $h($kind) ?>" name="value-<?= $h($kind) ?>" value="<?= $h($typed["value-$kind"] ?? '') ?>" maxlength="255" autocomplete="off" required<?php if (Rights::isNumber($kind)) { ?> inputmode="numeric"<?php } ?>>
<button aria-describedby="right-<?= $h($kind) ?>"><?= $h->text('admin-give') ?></button>
</form>
<?php } ?>
</section>

<section aria-labelledby="edit-rights-title" id="edit-rights">
<h2 id="edit-rights-title"><?= $h->text('admin-right-edit') ?></h2>
<p class="help"><?= $h->text('admin-edit-rights-help') ?></p>
<?php if ($editRights !== []) { ?>
<div class="wide" role="group" aria-labelledby="edit-rights-title" tabindex="0">
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['archive', 'admin-new', 'admin-edit', 'admin-delete', 'admin-change'], 'figures' => ['admin-new', 'admin-edit', 'admin-delete']])) ?>
<tbody>
<?php foreach ($editRights as [$archive, $new, $edit, $delete]) { ?>
<tr>
<th scope="row"><?= $h(Names::shown($archive)) ?></th>
<td class="figure"><?= $h($new) ?></td>
<td class="figure"><?= $h($edit) ?></td>
<td class="figure"><?= $h($delete) ?></td>
<td><form class="actions" method="post" action="<?= $h($path) ?>">
<?= $h($head('edit-right')) ?>
<input type="hidden" name="archive" value="<?= $h($archive) ?>">
<input type="hidden" name="was" value="<?= $h("$new,$edit,$delete") ?>">
<input type="hidden" name="new" value="0">
<input type="hidden" name="edit" value="0">
<input type="hidden" name="delete" value="0">
<a href="<?= $h->url($path, ['id' => $account->id, 'archive' => $archive], 'edit-right') ?>" aria-label="<?= $h->text('admin-change-entry', Names::shown($archive)) ?>"><?= $h->text('admin-change') ?></a>
<button aria-label="<?= $h->text('admin-take-entry', Names::shown($archive)) ?>"><?= $h->text('admin-take') ?></button>
</form></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
<form class="fields" id="edit-right" method="post" action="<?= $h($path) ?>">
<?= $h($head('edit-right')) ?>
<input type="hidden" name="was" value="<?= $h($edited['was']) ?>">
<label for="edit-archive"><?= $h->text('admin-value-archive') ?></label>
<?php if ($edited['was'] === '') { ?>
<input id="edit-archive" name="archive" value="<?= $h($edited['archive']) ?>" maxlength="255" autocomplete="off" required>
<?php } else { ?>
<input type="hidden" name="archive" value="<?= $h($edited['archive']) ?>">
<input id="edit-archive" value="<?= $h(Names::shown($edited['archive'])) ?>" readonly>
<?php } ?>
<?php foreach (['new', 'edit', 'delete'] as $each) { ?>
<label for="edit-<?= $h($each) ?>"><?= $h->text("admin-$each") ?></label>
<input id="edit-<?= $h($each) ?>" name="<?= $h($each) ?>" type="number" min="-1000" max="1000" step="1" value="<?= $h($edited[$each]) ?>" required>
<?php } ?>
<button><?= $h->text('admin-save') ?></button>
</form>
</section>

<?php if ($sessions !== []) { ?>
<section aria-labelledby="sessions-title">
<h2 id="sessions-title"><?= $h->text('admin-sessions') ?></h2>
<ul>
<?php foreach ($sessions as $session) { ?>
<li><?= $h->time($session['time']) ?>: <a href="<?= $h->url('/administration/log', ['name' => $session['log']]) ?>"><?= $h($session['log']) ?></a></li>
<?php } ?>
</ul>
</section>
<?php } ?>
