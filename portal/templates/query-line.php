<form class="query" method="get" action="/hits" role="search">
<label for="q"><?= $h->text('query') ?></label>
<input id="q" name="q" type="search" value="<?= $h($search->query) ?>" required>
<input type="hidden" name="in" value="<?= $h($search->place) ?>">
<button class="chief"><?= $h->text('search') ?></button>
<a href="<?= $h->url('/', ['q' => $search->query, 'in' => $search->place]) ?>"><?= $h->text('change-search') ?></a>
</form>
