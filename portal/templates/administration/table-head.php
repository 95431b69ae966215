<thead>
<tr>
<?php foreach ($columns as $column) { ?>
<th scope="col"<?php if (in_array($column, $figures ?? [], true)) { ?> class="figure"<?php } ?>><?= $h->text($column) ?></th>
<?php } ?>
</tr>
</thead>
