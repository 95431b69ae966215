<section aria-labelledby="properties">
<h2 id="properties"><?= $h->text('properties') ?></h2>
<dl>
<dt><?= $h->text('created') ?></dt>
<dd><?= $h->time($document->created) ?></dd>
<dt><?= $h->text('changed') ?></dt>
<dd><?= $h->time($document->changed) ?></dd>
<dt><?= $h->text('length') ?></dt>
<dd><?= $h->number($document->length) ?></dd>
<dt><?= $h->text('segments') ?></dt>
<dd><?= $h->number(count($document->segments)) ?></dd>
<dt><?= $h->text('fields') ?></dt>
<dd><?= $h->text('field-counts', $document->fieldCount, $document->textCount, $document->imageCount, $document->fileCount) ?></dd>
<dt><?= $h->text('notes') ?></dt>
<dd><?= $h->number(count($document->notes)) ?></dd>
</dl>
<?php if ($properties !== null) { ?>
<h3><?= $h->text('archive-allows') ?></h3>
<dl>
<?php foreach (['create' => $properties->canCreate, 'edit' => $properties->canEdit, 'delete' => $properties->canDelete, 'index' => $properties->canIndex] as $what => $isAllowed) { ?>
<dt><?= $h->text("archive-$what") ?></dt>
<dd><?= $h->text($isAllowed ? 'yes' : 'no') ?></dd>
<?php } ?>
<?php if ($properties->fifth !== '') { ?>
<dt><?= $h->text('archive-fifth') ?></dt>
<dd><?= $h($properties->fifth) ?></dd>
<?php } ?>
</dl>
<?php } ?>
<?php if ($document->segments !== []) { ?>
<h3 id="segment-list"><?= $h->text('segments') ?></h3>
<div class="wide" role="region" aria-labelledby="segment-list" tabindex="0">
<table class="hits">
<thead>
<tr>
<th scope="col"><?= $h->text('segment') ?></th>
<th scope="col" class="figure"><?= $h->text('field') ?></th>
<th scope="col"><?= $h->text('field-name') ?></th>
<th scope="col" class="figure"><?= $h->text('text-length') ?></th>
<th scope="col" class="figure"><?= $h->text('content-length') ?></th>
<th scope="col"><?= $h->text('file-name') ?></th>
<th scope="col" class="figure"><?= $h->text('status') ?></th>
</tr>
</thead>
<tbody>
<?php foreach ($document->segments as $segment) { ?>
<tr>
<th scope="row"><?= $h($segment->title === '' ? $segment->index : $segment->title) ?></th>
<td class="figure"><?= $h($segment->fieldId) ?></td>
<td><?= $h($segment->name) ?></td>
<td class="figure"><?= $h->number($segment->textLength) ?></td>
<td class="figure"><?= $h->number($segment->contentLength) ?></td>
<td><?= $h($segment->contentLength > 0 ? $segment->fileName : '') ?></td>
<td class="figure"><?= $h($segment->status) ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<?php } ?>
</section>
