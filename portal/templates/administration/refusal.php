<?php if ($refusal !== null) { ?>
<p class="problem" role="alert"><?= $h->text("admin-refused-$refusal->kind", $refusal->value) ?></p>
<?php } ?>
