<h1><?= $h->text('log-on') ?></h1>
<?php if ($problem !== '') { ?>
<p class="problem" role="alert"><?= $h->text("log-on-$problem", $wait) ?></p>
<?php } ?>
<form class="fields" method="post" action="/log-on">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<input type="hidden" name="to" value="<?= $h($to) ?>">
<?php foreach ($kept as $key => $value) { ?>
<input type="hidden" name="kept-<?= $h($key) ?>" value="<?= $h($value) ?>">
<?php } ?>
<label for="name"><?= $h->text('user-name') ?></label>
<input id="name" name="name" value="<?= $h($name) ?>" autocomplete="username" autocapitalize="none" required autofocus>
<label for="password"><?= $h->text('password') ?></label>
<input id="password" name="password" type="password" autocomplete="current-password" required>
<button class="chief"><?= $h->text('log-on') ?></button>
</form>
