<?php foreach ($form->entries as $entry) { ?>
<?php $problem = $isChecked ? $entry->problem() : ''; ?>
<label for="<?= $h($entry->key) ?>"><?= $h($entry->name) ?><?php if ($entry->isMandatory) { ?> <span class="needed"><?= $h->text('needed') ?></span><?php } ?></label>
<?php if ($entry->isListOnly) { ?>
<select id="<?= $h($entry->key) ?>" name="<?= $h($entry->key) ?>"<?= $h->flag($entry->isMandatory, 'required') ?><?php if ($problem !== '') { ?> aria-invalid="true" aria-describedby="<?= $h($entry->key) ?>-problem"<?php } ?>>
<option value=""></option>
<?php foreach ($entry->choices as $choice) { ?>
<option<?= $h->flag($choice === $entry->value, 'selected') ?>><?= $h($choice) ?></option>
<?php } ?>
</select>
<?php } elseif ($hasLongTexts && $entry->width >= 60) { ?>
<textarea id="<?= $h($entry->key) ?>" name="<?= $h($entry->key) ?>" rows="6"<?= $h->flag($entry->isMandatory, 'required') ?><?php if ($problem !== '') { ?> aria-invalid="true" aria-describedby="<?= $h($entry->key) ?>-problem"<?php } ?>>
<?= $h($entry->value) ?></textarea>
<?php } else { ?>
<input id="<?= $h($entry->key) ?>" name="<?= $h($entry->key) ?>" value="<?= $h($entry->value) ?>" size="<?= $h(max(4, min(60, $entry->width))) ?>"<?= $h->flag($entry->isMandatory, 'required') ?><?php if ($entry->isAlignedRight) { ?> class="right"<?php } ?><?php if ($entry->choices !== []) { ?> list="<?= $h($entry->key) ?>-choices"<?php } ?><?php if ($problem !== '') { ?> aria-invalid="true" aria-describedby="<?= $h($entry->key) ?>-problem"<?php } ?>>
<?php if ($entry->choices !== []) { ?>
<datalist id="<?= $h($entry->key) ?>-choices">
<?php foreach ($entry->choices as $choice) { ?>
<option value="<?= $h($choice) ?>"></option>
<?php } ?>
</datalist>
<?php } ?>
<?php } ?>
<?php if ($problem !== '') { ?>
<p class="problem" id="<?= $h($entry->key) ?>-problem"><?= $h->text("mask-$problem") ?></p>
<?php } ?>
<?php } ?>
