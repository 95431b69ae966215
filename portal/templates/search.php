<h1><?= $h->text('search') ?></h1>
<?php if ($channels === []) { ?>
<p><?= $h->text('nothing-to-search') ?></p>
<?php } else { ?>
<form class="fields" method="get" action="/hits" role="search">
<label for="q"><?= $h->text('query') ?></label>
<input id="q" name="q" type="search" value="<?= $h($query) ?>" required autofocus>
<p class="help"><?= $h->text('query-help') ?></p>
<label for="in"><?= $h->text('where') ?></label>
<select id="in" name="in">
<option value=""><?= $h->text('everywhere') ?></option>
<?php foreach ($channels as $channel) { ?>
<optgroup label="<?= $h($channel['name']) ?>">
<?php foreach ($channel['archives'] as $archive) { ?>
<?php $place = $channel['name'] . '/' . $archive->name; ?>
<option value="<?= $h($place) ?>"<?= $h->flag($place === $chosen, 'selected') ?>><?= $h($archive->name) ?> (<?= $h($archive->comment) ?>)</option>
<?php } ?>
</optgroup>
<?php } ?>
</select>
<button class="chief"><?= $h->text('search') ?></button>
</form>
<?php if ($recent !== []) { ?>
<section aria-labelledby="recent">
<h2 id="recent"><?= $h->text('recent') ?></h2>
<ul>
<?php foreach ($recent as $entry) { ?>
<li><a href="<?= $h->url('/hits', $entry) ?>"><?= $h($entry['q']) ?></a> <?= $h($entry['in']) ?></li>
<?php } ?>
</ul>
</section>
<?php } ?>
<?php } ?>
