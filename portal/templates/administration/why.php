<?php use Portal\Administration\Names; ?>
<?= $h($templates->render('administration/navigation', ['here' => ''])) ?>
<h1><?= $h->text('admin-why-of', $account->name) ?></h1>
<p><a href="<?= $h->url('/administration/account', ['id' => $account->id]) ?>"><?= $h->text('admin-back') ?></a></p>
<?= $h($templates->render('administration/refusal', ['refusal' => $refusal])) ?>
<form class="fields" method="get" action="/administration/why">
<input type="hidden" name="id" value="<?= $h($account->id) ?>">
<?= $h($templates->render('administration/choice', ['label' => 'admin-why-kind', 'kinds' => $kinds, 'texts' => 'admin-why', 'chosen' => $kind])) ?>
<label for="entry"><?= $h->text('admin-why-entry') ?></label>
<input id="entry" name="entry" value="<?= $h($asked) ?>" required autocomplete="off">
<button class="chief"><?= $h->text('admin-why') ?></button>
</form>
<?php if ($explanation !== null) { ?>
<section aria-labelledby="answer">
<h2 id="answer"><?= $h->text("admin-why-$kind") ?>: <?= $h($asked) ?></h2>
<?php if ($account->isDisabled()) { ?>
<p class="problem"><?= $h->text('admin-why-disabled') ?></p>
<?php } ?>
<?php if ($account->isGroup()) { ?>
<p><?= $h->text('admin-why-group') ?></p>
<?php } ?>
<ul>
<?php foreach ($explanation->answers as $answer => $isYes) { ?>
<li><strong><?= $h->text("admin-answer-$answer-" . ($isYes ? 'yes' : 'no')) ?></strong></li>
<?php } ?>
</ul>
<?php if ($explanation->sources === []) { ?>
<p><?= $h->text('admin-why-nothing') ?></p>
<?php } else { ?>
<div class="wide" role="group" aria-labelledby="answer" tabindex="0">
<table class="hits">
<caption><?= $h->text('admin-why-sources') ?></caption>
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-from', 'admin-entry', ...($kind === 'edit' ? ['admin-new', 'admin-edit', 'admin-delete'] : []), 'admin-effect'], 'figures' => ['admin-new', 'admin-edit', 'admin-delete']])) ?>
<tbody>
<?php foreach ($explanation->sources as $source) { ?>
<tr>
<td><a href="<?= $h->url('/administration/account', ['id' => $source->id]) ?>"><?php if ($source->isOwn) { ?><?= $h->text('admin-own') ?><?php } else { ?><?= $h->text('admin-of-group', $source->name) ?><?php } ?></a></td>
<td><?= $h(Names::shown($source->entry)) ?></td>
<?php foreach ($source->numbers as $number) { ?>
<td class="figure"><?= $h($number) ?></td>
<?php } ?>
<td><?= $h->text("admin-effect-$source->effect") ?></td>
</tr>
<?php } ?>
<?php foreach ($explanation->sums as $entry => $numbers) { ?>
<tr class="sum">
<th scope="row"><?= $h->text('admin-sum') ?></th>
<td><?= $h(Names::shown((string) $entry)) ?></td>
<?php foreach ($numbers as $number) { ?>
<td class="figure"><?= $h($number) ?></td>
<?php } ?>
<td><?= $h->text('admin-sum-help') ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
<?php if ($kind === 'see') { ?>
<p class="help"><?= $h->text('admin-why-see-help') ?></p>
<?php } ?>
</section>
<?php } ?>
