<?php $name = $document->name; ?>
<?php if ($wanted->back !== '') { ?>
<p><a href="<?= $h($wanted->backUrl()) ?>"><?= $h->text('back-to-hits') ?></a></p>
<?php } ?>
<article id="preview" aria-labelledby="preview-title">
<h1 id="preview-title"><?= $h($document->title) ?></h1>
<p class="counts"><?= $h($name->channel) ?>/<?= $h($name->archive) ?>, <?= $h->text('document-version', $name->id, $name->version) ?>
<?php if ($wanted->query !== '') { ?>
 <?= $h->text('marks', $h->number($marks), $wanted->query) ?>
<?php } ?>
</p>
<p><a href="<?= $h->url('/document', $wanted->with()) ?>"><?= $h->text('preview-open') ?></a></p>
<?php if ($texts === [] && $document->imageCount > 0) { ?>
<p><?= $h->text('preview-image', $h->number($document->imageCount)) ?></p>
<?php } elseif ($texts === []) { ?>
<p><?= $h->text('preview-nothing') ?></p>
<?php } ?>
<?php foreach ($texts as $segment) { ?>
<h2><?= $h($segment->title === '' ? $segment->name : $segment->title) ?></h2>
<p class="text"><?= $h->markedStart($segment->text, $longest) ?></p>
<?php } ?>
</article>
