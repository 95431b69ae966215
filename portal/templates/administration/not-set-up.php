<?= $h($templates->render('administration/navigation', ['here' => 'accounts'])) ?>
<h1><?= $h->text('admin-not-set-up') ?></h1>
<p><?= $h->text('admin-not-set-up-help') ?></p>
