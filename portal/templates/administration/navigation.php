<nav class="pages" aria-label="<?= $h->text('administration') ?>">
<?php foreach (['accounts' => '/administration', 'definitions' => '/administration/definitions', 'servers' => '/administration/servers', 'logs' => '/administration/logs'] as $page => $path) { ?>
<a href="<?= $h($path) ?>"<?php if ($page === $here) { ?> aria-current="page"<?php } ?>><?= $h->text("admin-$page") ?></a>
<?php } ?>
</nav>
