<thead>
<tr>
<?php foreach ($columns as $column) { ?>
<th scope="col"><?= $h->text($column) ?></th>
<?php } ?>
</tr>
</thead>
