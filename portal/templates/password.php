<h1><?= $h->text('change-password') ?></h1>
<?php if ($isForced) { ?>
<p><?= $h->text('password-forced') ?></p>
<?php } ?>
<?php if ($problem !== '') { ?>
<p class="problem" role="alert"><?= $h->text("password-$problem", $shortest) ?></p>
<?php } ?>
<form class="fields" method="post" action="/password">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<label for="old"><?= $h->text('password-old') ?></label>
<input id="old" name="old" type="password" autocomplete="current-password" required>
<label for="new"><?= $h->text('password-new') ?></label>
<input id="new" name="new" type="password" autocomplete="new-password" minlength="<?= $h($shortest) ?>" required>
<label for="again"><?= $h->text('password-again') ?></label>
<input id="again" name="again" type="password" autocomplete="new-password" required>
<button class="chief"><?= $h->text('change-password') ?></button>
</form>
