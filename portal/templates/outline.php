<p><a href="<?= $h->url('/', ['in' => $place]) ?>"><?= $h->text('back-to-search') ?></a></p>
<h1><?= $h($tree->name) ?></h1>
<p class="counts"><?= $h->text('tree-help', $place) ?></p>
<nav class="tree" aria-label="<?= $h($tree->name) ?>">
<?= $h($templates->render('outline-nodes', ['tree' => $tree, 'place' => $place, 'nodes' => $nodes, 'open' => $open])) ?>
</nav>
