<?php
$hasFile = $segment->contentLength > 0;
$page = $view->pageOf($segment);
$isOpened = in_array(strtolower($segment->extension), ['pdf', 'png', 'jpg', 'jpeg', 'gif', 'webp', 'txt', 'csv', 'log'], true);
$file = ['channel' => $name->channel, 'archive' => $name->archive, 'id' => $name->id, 'version' => $name->version, 'segment' => $segment->index];
?>
<section class="segment" aria-labelledby="segment-<?= $h($segment->index) ?>">
<h2 id="segment-<?= $h($segment->index) ?>"><?= $h($view->titleOf($segment)) ?></h2>
<?php if ($segment->text->text !== '') { ?>
<?php if ($isPrint) { ?>
<p class="text"><?= $h($segment->text->text) ?></p>
<?php } else { ?>
<p class="text"><?= $h->marked($segment->text, $view->firstMark($segment), $view->markCount, $view->markUrl(...)) ?></p>
<?php } ?>
<?php } ?>
<?php if ($page > 0 && ($isPrint || $view->segment === $segment)) { ?>
<p class="image"><img src="<?= $h->url('/image', $file) ?>" alt="<?= $h->text('image-of', $view->titleOf($segment), $segment->fileName) ?>"></p>
<?php } ?>
<?php if ($hasFile) { ?>
<p class="file"><?= $h->text('stored-file', $segment->fileName === '' ? $segment->extension : $segment->fileName, $h->locale->number($segment->contentLength)) ?>
<?php if (!$isPrint) { ?>
<?php if ($isOpened) { ?>
 <a href="<?= $h->url('/file', $file) ?>"><?= $h->text('open-file', $view->titleOf($segment)) ?></a>
<?php } ?>
<?php if ($page > 0 && $view->segment !== $segment) { ?>
 <a href="<?= $h->url('/document', $asked->with(['segment' => $segment->index])) ?>"><?= $h->text('show-image', $view->titleOf($segment)) ?></a>
<?php } ?>
 <a href="<?= $h->url('/file', $file + ['download' => 1]) ?>"><?= $h->text('download-file', $view->titleOf($segment)) ?></a>
<?php } ?>
</p>
<?php } elseif ($segment->text->text === '') { ?>
<p class="counts"><?= $h->text('segment-empty') ?></p>
<?php } ?>
<?php if ($page > 0 && $view->segment === $segment && !$isPrint) { ?>
<nav class="pages" aria-label="<?= $h->text('document-pages') ?>">
<?php if ($page > 1) { ?>
<a href="<?= $h->url('/document', $asked->with(['page' => $page - 1])) ?>"><?= $h->text('previous') ?></a>
<?php } ?>
<span><?= $h->text('page-of', $page, count($view->images)) ?></span>
<?php if ($page < count($view->images)) { ?>
<a href="<?= $h->url('/document', $asked->with(['page' => $page + 1])) ?>"><?= $h->text('next') ?></a>
<?php } ?>
<?php if (count($view->images) > 1) { ?>
<a href="<?= $h->url('/file', ['segment' => '', 'pages' => 'all'] + $file) ?>"><?= $h->text('all-pages') ?></a>
<?php } ?>
</nav>
<?php } ?>
</section>
