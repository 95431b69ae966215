<?php $name = $document->name; ?>
<?php if ($asked->back !== '') { ?>
<nav class="pages" aria-label="<?= $h->text('hit-list') ?>">
<a class="back" href="<?= $h($asked->backUrl()) ?>"><?= $h->text('back-to-hits') ?></a>
<?php if ($asked->at > 0) { ?>
<?php if ($asked->at > 1) { ?>
<a rel="prev" href="<?= $h->url('/document/neighbour', $asked->with(['step' => 'previous'])) ?>"><?= $h->text('hit-previous') ?></a>
<?php } ?>
<span><?= $h->text('hit-of', $h->locale->number($asked->at), $h->locale->number($asked->of)) ?></span>
<?php if ($asked->at < $asked->of) { ?>
<a rel="next" href="<?= $h->url('/document/neighbour', $asked->with(['step' => 'next'])) ?>"><?= $h->text('hit-next') ?></a>
<?php } ?>
<?php } ?>
</nav>
<?php } ?>
<?php if ($end !== '') { ?>
<p class="problem" role="status"><?= $h->text("hit-$end") ?></p>
<?php } ?>
<h1><?= $h($document->title === '' ? $name->id : $document->title) ?></h1>
<p class="counts"><?= $h($name->channel) ?>/<?= $h($name->archive) ?>, <?= $h->text('document-version', $name->id, $name->version) ?></p>
<?php if ($refusal !== '') { ?>
<p class="problem" role="status"><?= $h->text('marks-refused', $asked->query, $refusal) ?></p>
<?php } elseif ($asked->query !== '') { ?>
<p class="counts" id="marks"><?= $h->text('marks', $h->locale->number($view->markCount), $asked->query) ?>
<?php if ($view->markCount > 0) { ?>
 <a class="first-mark" href="<?= $h($view->markUrl(1)) ?>"><?= $h->text('first-mark') ?></a>
 <a href="<?= $h($view->markUrl($view->markCount)) ?>"><?= $h->text('last-mark') ?></a>
<?php } ?>
</p>
<?php } ?>
<div class="tools">
<a href="<?= $h->url('/document', $asked->with(['view' => 'print'])) ?>"><?= $h->text('print-view') ?></a>
<a href="<?= $h->url('/file', ['channel' => $name->channel, 'archive' => $name->archive, 'id' => $name->id, 'version' => $name->version, 'print' => 'all']) ?>"><?= $h->text('print-file') ?></a>
<a href="<?= $h->url('/document', ['channel' => $name->channel, 'archive' => $name->archive, 'id' => $name->id, 'version' => $name->version]) ?>"><?= $h->text('permanent-link') ?></a>
<?php if ($mayEdit) { ?>
<a href="<?= $h->url('/edit', ['channel' => $name->channel, 'archive' => $name->archive, 'id' => $name->id, 'version' => $name->version]) ?>"><?= $h->text('edit-document') ?></a>
<?php } ?>
<?php if ($mayDelete) { ?>
<a href="<?= $h->url('/document/delete', $asked->with(['version' => $name->version])) ?>"><?= $h->text('delete-document') ?></a>
<?php } ?>
<form method="get" action="/document">
<?php foreach ($asked->with(['version' => '']) as $key => $value) { ?>
<?php if ($value !== '') { ?>
<input type="hidden" name="<?= $h($key) ?>" value="<?= $h($value) ?>">
<?php } ?>
<?php } ?>
<label for="version"><?= $h->text('version') ?></label>
<input id="version" name="version" type="number" min="1" value="<?= $h($name->version) ?>" required>
<button><?= $h->text('open') ?></button>
<?php if ($asked->name->version !== '') { ?>
<a href="<?= $h->url('/document', $asked->with(['version' => ''])) ?>"><?= $h->text('newest-version') ?></a>
<?php } else { ?>
<span><?= $h->text('is-newest-version') ?></span>
<?php } ?>
</form>
</div>
<nav class="tabs" aria-label="<?= $h->text('segments') ?>">
<ul>
<li><a href="<?= $h->url('/document', $asked->with()) ?>"<?php if ($view->tab === 'all') { ?> aria-current="page"<?php } ?>><?= $h->text('whole-document') ?></a></li>
<?php foreach ($document->segments as $segment) { ?>
<li><a href="<?= $h->url('/document', $asked->with(['segment' => $segment->index])) ?>"<?php if ($view->segment === $segment) { ?> aria-current="page"<?php } ?>><?= $h($view->titleOf($segment)) ?><?php if ($segment->text->marks !== []) { ?> <span class="badge"><?= $h->text('tab-marks', count($segment->text->marks)) ?></span><?php } ?></a></li>
<?php } ?>
<li><a href="<?= $h->url('/document', $asked->with(['view' => 'properties'])) ?>"<?php if ($view->tab === 'properties') { ?> aria-current="page"<?php } ?>><?= $h->text('properties') ?></a></li>
</ul>
</nav>
<div class="record">
<div>
<?php foreach ($view->shown as $segment) { ?>
<?= $h($templates->render('segment', ['segment' => $segment, 'view' => $view, 'asked' => $asked, 'name' => $name, 'isPrint' => false])) ?>
<?php } ?>
<?php if ($properties !== null) { ?>
<?= $h($templates->render('properties', ['document' => $document, 'properties' => $properties])) ?>
<?php } ?>
</div>
<?= $h($templates->render('notes', ['asked' => $asked, 'notes' => $document->notes, 'mayAnnotate' => $mayAnnotate, 'note' => $note, 'problem' => $problem, 'token' => $token, 'by' => $by, 'number' => $number])) ?>
</div>
