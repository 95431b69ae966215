<ul>
<?php foreach ($nodes as ['node' => $node, 'path' => $path, 'isSearched' => $isSearched, 'children' => $children]) { ?>
<?php $state = ['in' => $place, 'tree' => $tree->id]; ?>
<li id="node-<?= $h($node->id) ?>">
<?php if ($node->childCount > 0) { ?>
<?php $then = $children === null ? [...$open, $node->id] : array_diff($open, [$node->id]); ?>
<a class="toggle" aria-expanded="<?= $h($children === null ? 'false' : 'true') ?>" href="<?= $h->url('/outline', $state + ['open' => implode('.', $then === [] ? [0] : $then)], "node-$node->id") ?>" aria-label="<?= $h->text($children === null ? 'tree-open' : 'tree-close', $node->content) ?>"><?= $h($children === null ? '+' : "\u{2212}") ?></a>
<?php } ?>
<?php if ($isSearched) { ?>
<a href="<?= $h->url('/outline', $state + ['go' => $path]) ?>"><?= $h($node->content) ?></a>
<?php } else { ?>
<span><?= $h($node->content) ?></span>
<?php } ?>
<?php if ($children !== null) { ?>
<?= $h($templates->render('outline-nodes', ['tree' => $tree, 'place' => $place, 'nodes' => $children, 'open' => $open])) ?>
<?php } ?>
</li>
<?php } ?>
</ul>
