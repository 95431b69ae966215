<!DOCTYPE html>
<html lang="<?= $h($h->locale->language) ?>">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title><?= $h($title) ?> - <?= $h($siteTitle) ?></title>
<link rel="icon" href="/icon.svg">
<link rel="stylesheet" href="/portal.css">
<?php if ($style !== '') { ?>
<link rel="stylesheet" href="<?= $h($style) ?>">
<?php } ?>
<script src="/portal.js" defer></script>
</head>
<body<?= $h->flag($hasKeys, 'data-keys') ?>>
<a class="skip" href="#content"><?= $h->text('skip') ?></a>
<header class="site">
<a class="home" href="/"><?php if ($logo !== '') { ?><img src="<?= $h($logo) ?>" alt=""> <?php } ?><?= $h($siteTitle) ?></a>
<?php if ($userName !== null) { ?>
<nav aria-label="<?= $h->text('account') ?>">
<span><?= $h($userName) ?></span>
<?php if ($isAdministrator) { ?>
<a href="/administration"><?= $h->text('administration') ?></a>
<?php } ?>
<a href="/password"><?= $h->text('change-password') ?></a>
<a href="/keys" data-key="?" data-close="<?= $h->text('close') ?>"><?= $h->text('keys') ?></a>
<form method="post" action="/log-off">
<input type="hidden" name="token" value="<?= $h($token) ?>">
<button><?= $h->text('log-off') ?></button>
<button name="everywhere" value="1"><?= $h->text('log-off-everywhere') ?></button>
</form>
</nav>
<?php } ?>
</header>
<main id="content" tabindex="-1">
<?= $h($body) ?>
</main>
</body>
</html>
