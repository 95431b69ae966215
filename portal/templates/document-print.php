<?php $name = $document->name; ?>
<p class="back screen"><a href="<?= $h->url('/document', $asked->with()) ?>"><?= $h->text('back-to-document') ?></a> <?= $h->text('print-help') ?></p>
<h1><?= $h($document->title === '' ? $name->id : $document->title) ?></h1>
<p class="counts"><?= $h($name->channel) ?>/<?= $h($name->archive) ?>, <?= $h->text('document-version', $name->id, $name->version) ?>
 <?= $h->text('created') ?> <?= $h->time($document->created) ?>, <?= $h->text('changed') ?> <?= $h->time($document->changed) ?></p>
<?php foreach ($view->shown as $segment) { ?>
<?= $h($templates->render('segment', ['segment' => $segment, 'view' => $view, 'asked' => $asked, 'name' => $name, 'isPrint' => true])) ?>
<?php } ?>
<?php if ($document->notes !== []) { ?>
<?= $h($templates->render('notes', ['asked' => $asked, 'notes' => $document->notes, 'mayAnnotate' => false, 'note' => '', 'problem' => '', 'token' => ''])) ?>
<?php } ?>
