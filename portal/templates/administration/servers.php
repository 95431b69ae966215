<?= $h($templates->render('administration/navigation', ['here' => 'servers'])) ?>
<h1><?= $h->text('admin-servers') ?></h1>
<p class="counts" role="status"><?= $h->text('admin-servers-alive', $aliveCount, count($servers)) ?> <?= $h->time($now) ?></p>
<p><?= $h->text('admin-servers-help', $process) ?></p>
<div class="wide" role="group" aria-label="<?= $h->text('admin-servers') ?>" tabindex="0">
<table class="hits">
<?= $h($templates->render('administration/table-head', ['columns' => ['admin-server', 'admin-state', 'admin-answer', 'admin-milliseconds', 'admin-tries', 'admin-use', 'admin-prints'], 'figures' => ['admin-milliseconds', 'admin-tries']])) ?>
<tbody>
<?php foreach ($servers as ['health' => $health, 'server' => $server]) { ?>
<tr>
<th scope="row"><?= $h("$health->host:$health->port") ?></th>
<td<?php if (!$health->isAlive) { ?> class="problem"<?php } ?>><?= $h->text($health->isAlive ? 'admin-alive' : 'admin-dead') ?></td>
<td><?= $h($health->text) ?></td>
<td class="figure"><?= $h->number($health->milliseconds) ?></td>
<td class="figure"><?= $h($server?->failures) ?></td>
<td><?php if ($health->isBusy) { ?><?= $h->text('admin-busy', $health->session) ?> <?= $h->time($server?->since) ?><?php } else { ?><?= $h->text('admin-free') ?><?php } ?></td>
<td><?php if ($server !== null) { ?><?= $h->text($server->takesPrintRequests ? 'yes' : 'no') ?><?php } ?></td>
</tr>
<?php } ?>
</tbody>
</table>
</div>
<p><a href="/administration/servers"><?= $h->text('admin-check-again') ?></a></p>
