<?php $name = $document->name; ?>
<?php if ($back !== '') { ?>
<p><a href="<?= $h($back) ?>"><?= $h->text('back-to-hits') ?></a></p>
<?php } ?>
<h1><?= $h($document->title) ?></h1>
<p class="counts"><?= $h($name->channel) ?>/<?= $h($name->archive) ?>, <?= $h->text('document-version', $name->id, $name->version) ?>
<?php if ($query !== '') { ?>
<?= $h->text('marks', $marks, $query) ?>
<?php } ?>
</p>
<?php if ($marks > 0) { ?>
<p><a href="#hit-1"><?= $h->text('first-mark') ?></a></p>
<?php } ?>
<?php foreach ($segments as ['segment' => $segment, 'firstMark' => $firstMark]) { ?>
<section class="segment" aria-labelledby="segment-<?= $h($segment->index) ?>">
<h2 id="segment-<?= $h($segment->index) ?>"><?= $h($segment->title === '' ? $segment->name : $segment->title) ?></h2>
<?php if ($segment->text->text !== '') { ?>
<p class="text"><?= $h->marked($segment->text, $firstMark) ?></p>
<?php } ?>
<?php if ($segment->contentLength > 0) { ?>
<p class="file"><?= $h->text('stored-file', $segment->extension, $segment->contentLength) ?></p>
<?php } ?>
</section>
<?php } ?>
<section aria-labelledby="properties">
<h2 id="properties"><?= $h->text('properties') ?></h2>
<dl>
<dt><?= $h->text('created') ?></dt>
<dd><?= $h->time($document->created) ?></dd>
<dt><?= $h->text('changed') ?></dt>
<dd><?= $h->time($document->changed) ?></dd>
</dl>
</section>
<?php if ($document->notes !== []) { ?>
<section aria-labelledby="notes">
<h2 id="notes"><?= $h->text('notes') ?></h2>
<?php foreach ($document->notes as $note) { ?>
<article class="note">
<p class="counts"><?= $h($note->author) ?> <?= $h->time($note->time) ?></p>
<p class="text"><?= $h($note->text) ?></p>
</article>
<?php } ?>
</section>
<?php } ?>
