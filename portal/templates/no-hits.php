<?= $h($templates->render('query-line', ['search' => $search])) ?>
<h1><?= $h->text('no-hits', $search->query) ?></h1>
<p><?= $h->text('no-hits-help') ?></p>
