<label for="new-password"><?= $h->text($label) ?></label>
<input id="new-password" name="password" type="password" autocomplete="new-password" minlength="8" required>
<label for="again"><?= $h->text('password-again') ?></label>
<input id="again" name="again" type="password" autocomplete="new-password" required>
<label class="choice"><input type="checkbox" name="must-change" value="1"<?= $h->flag($mustChange, 'checked') ?>> <?= $h->text('admin-must-change') ?></label>
