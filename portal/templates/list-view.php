<details class="list-view">
<summary><?= $h->text('list-view') ?></summary>
<form method="post" action="/list-view" autocomplete="off">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="in" value="<?= $h($place) ?>">
<input type="hidden" name="back" value="<?= $h($back) ?>">
<div class="wide">
<table class="columns">
<thead>
<tr>
<th scope="col"><?= $h->text('column') ?></th>
<th scope="col"><?= $h->text('column-shown') ?></th>
<th scope="col"><?= $h->text('column-place') ?></th>
</tr>
</thead>
<tbody>
<?php foreach ($view->columns as $number => $column) { ?>
<tr>
<th scope="row" id="column-<?= $h($number) ?>"><?= $h($column->title) ?><input type="hidden" name="key-<?= $h($number) ?>" value="<?= $h($column->key) ?>"></th>
<td><input type="checkbox" name="show-<?= $h($number) ?>" value="1"<?= $h->flag($column->isShown, 'checked') ?> aria-labelledby="column-<?= $h($number) ?>"></td>
<td><input type="number" name="place-<?= $h($number) ?>" value="<?= $h($number + 1) ?>" min="1" max="<?= $h(count($view->columns)) ?>" aria-label="<?= $h->text('column-place-of', $column->title) ?>"></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<fieldset>
<legend><?= $h->text('density') ?></legend>
<?php foreach ($view::DENSITIES as $density) { ?>
<label><input type="radio" name="density" value="<?= $h($density) ?>"<?= $h->flag($density === $view->density, 'checked') ?>> <?= $h->text("density-$density") ?></label>
<?php } ?>
</fieldset>
<button class="chief"><?= $h->text('remember') ?></button>
<button name="do" value="reset"><?= $h->text('reset') ?></button>
<p class="help"><?= $h->text('list-view-help') ?></p>
</form>
</details>
