<section id="notes" aria-labelledby="notes-title">
<h2 id="notes-title"><?= $h->text('notes') ?></h2>
<?php if ($notes === []) { ?>
<p class="counts"><?= $h->text('notes-none') ?></p>
<?php } ?>
<?php foreach ($notes as $each) { ?>
<article class="note">
<p class="counts"><?= $h($each->author) ?> <?= $h->time($each->time) ?></p>
<p class="text"><?= $h($each->text) ?></p>
</article>
<?php } ?>
<?php if ($mayAnnotate) { ?>
<?php if ($problem !== '') { ?>
<p class="problem" id="note-problem" role="alert"><?= $h->text($problem) ?></p>
<?php } elseif ($note !== '') { ?>
<p class="problem" role="status"><?= $h->text('note-kept') ?></p>
<?php } ?>
<form class="fields" method="post" action="<?= $h->url('/document/notes', $asked->with()) ?>">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="by" value="<?= $h($by) ?>">
<input type="hidden" name="number" value="<?= $h($number) ?>">
<label for="note"><?= $h->text('note-new') ?></label>
<textarea id="note" name="note" rows="3" maxlength="8000" required<?php if ($problem !== '') { ?> aria-invalid="true" aria-describedby="note-problem"<?php } ?>>
<?= $h($note) ?></textarea>
<button class="chief"><?= $h->text('note-add') ?></button>
</form>
<?php if ($notes !== []) { ?>
<p><a href="<?= $h->url('/document/notes/delete', $asked->with()) ?>"><?= $h->text('delete-notes') ?></a></p>
<?php } ?>
<?php } ?>
</section>
