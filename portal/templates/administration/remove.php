<?= $h($templates->render('administration/navigation', ['here' => ''])) ?>
<h1><?= $h->text('admin-remove-question', $account->name) ?></h1>
<?= $h($templates->render('administration/refusal', ['refusal' => $refusal])) ?>
<p><?= $h->text('admin-kind-' . $account->kind()) ?>, <?= $h->text('admin-id') ?> <?= $h($account->id) ?></p>
<?php if ($isSelf) { ?>
<p class="problem"><?= $h->text('admin-remove-self') ?></p>
<?php } else { ?>
<p><?= $h->text('admin-remove-help') ?></p>
<?php if ($memberCount > 0) { ?>
<p class="problem"><?= $h->text('admin-remove-members', $h->locale->number($memberCount)) ?></p>
<?php } ?>
<form class="fields" method="post" action="/administration/remove">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="id" value="<?= $h($account->id) ?>">
<input type="hidden" name="stamp" value="<?= $h($account->stamp()) ?>">
<label class="choice"><input type="checkbox" name="confirmed" value="1" required> <?= $h->text('admin-remove-confirm') ?></label>
<button class="chief"><?= $h->text('admin-remove') ?></button>
</form>
<?php } ?>
<p><a href="<?= $h->url('/administration/account', ['id' => $account->id]) ?>"><?= $h->text('admin-back') ?></a></p>
