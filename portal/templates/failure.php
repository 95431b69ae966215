<h1><?= $h->text("failure-$kind") ?></h1>
<?php if ($detail !== '') { ?>
<p class="problem"><?= $h($detail) ?></p>
<?php } ?>
<p><?= $h->text($help) ?></p>
<?php if ($isUncertain) { ?>
<p><?= $h->text('failure-uncertain') ?></p>
<?php } ?>
<?php if ($attempts !== []) { ?>
<h2><?= $h->text('servers-tried', $milliseconds) ?></h2>
<ul>
<?php foreach ($attempts as [$server, $number, $time]) { ?>
<li><?= $h->text($number > 0 ? 'server-tried' : 'server-silent', $server, $number, $time) ?></li>
<?php } ?>
</ul>
<?php } ?>
<?php if ($typed !== []) { ?>
<form method="post" action="<?= $h($target) ?>">
<?php foreach ($typed as $key => $value) { ?>
<input type="hidden" name="<?= $h($key) ?>" value="<?= $h($value) ?>">
<?php } ?>
<button class="chief"><?= $h->text('back-to-form') ?></button>
</form>
<?php } ?>
<ul class="next">
<?php if ($again !== '') { ?>
<li><a href="<?= $h($again) ?>"><?= $h->text('again') ?></a></li>
<?php } ?>
<?php if ($document !== '') { ?>
<li><a href="<?= $h($document) ?>"><?= $h->text('back-to-document') ?></a></li>
<?php } ?>
<?php if ($hits !== '') { ?>
<li><a href="<?= $h($hits) ?>"><?= $h->text('back-to-hits') ?></a></li>
<?php } ?>
<li><a href="<?= $h->url('/', $search) ?>"><?= $h->text('back-to-search') ?></a></li>
</ul>
