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
<?php if ($texts === []) { ?>
<p><?= $h->text('preview-nothing') ?></p>
<?php } ?>
<?php foreach ($texts as $segment) { ?>
<h2><?= $h($segment->title === '' ? $segment->name : $segment->title) ?></h2>
<p class="text"><?= $h->markedStart($segment->text, $longest) ?></p>
<?php } ?>
<?php if ($images !== []) { ?>
<?php $image = ['channel' => $name->channel, 'archive' => $name->archive, 'id' => $name->id, 'version' => $name->version, 'segment' => $images[0]->index]; ?>
<h2><?= $h->text('page-of', 1, $h->number(count($images))) ?></h2>
<p class="image"><a href="<?= $h->url('/document', $wanted->with(['page' => 1])) ?>"><img src="<?= $h->url('/image', $image) ?>" alt="<?= $h->text('image-of', $images[0]->title === '' ? $images[0]->name : $images[0]->title, $images[0]->fileName) ?>" loading="lazy"></a></p>
<?php } ?>
</article>
