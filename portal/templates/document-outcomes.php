<section aria-labelledby="outcomes">
<h2 id="outcomes"><?= $h->text('outcomes') ?></h2>
<ul class="files">
<?php foreach ($outcomes as $outcome) { ?>
<?php if ($outcome->made !== '') { ?>
<li><a href="<?= $h($outcome->made) ?>"><?= $h($outcome->file) ?></a>: <?= $h->text('outcome-made') ?></li>
<?php } else { ?>
<li><?= $h($outcome->file) ?>: <span class="problem"><?= $h->text($outcome->isUncertain ? 'outcome-unknown' : 'outcome-not-made') ?> <?= $h->text($outcome->problem) ?><?php if ($outcome->detail !== '') { ?>: <?= $h($outcome->detail) ?><?php } ?></span></li>
<?php } ?>
<?php } ?>
</ul>
</section>
