<h1><?= $h->text('deleted') ?></h1>
<p role="status"><?= $h->text('deleted-help', $id) ?></p>
<ul>
<?php if ($back !== '') { ?>
<li><a href="<?= $h($back) ?>"><?= $h->text('back-to-hits') ?></a></li>
<?php } ?>
<li><a href="/"><?= $h->text('back-to-search') ?></a></li>
</ul>
