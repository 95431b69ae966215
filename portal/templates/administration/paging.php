<nav class="pages" aria-label="<?= $h->text('admin-pages') ?>">
<?php if ($paging->page > 1) { ?>
<a href="<?= $h->url($path, $query) ?>"><?= $h->text('admin-first') ?></a>
<a rel="prev" href="<?= $h->url($path, ['page' => $paging->page - 1] + $query) ?>"><?= $h->text('previous') ?></a>
<?php } ?>
<span><?= $h->text('page-of', $paging->page, $paging->pageCount) ?></span>
<?php if ($paging->page < $paging->pageCount) { ?>
<a rel="next" href="<?= $h->url($path, ['page' => $paging->page + 1] + $query) ?>"><?= $h->text('next') ?></a>
<a href="<?= $h->url($path, ['page' => $paging->pageCount] + $query) ?>"><?= $h->text('admin-last') ?></a>
<?php } ?>
</nav>
