<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Oxaqrycln\ServerHealth;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The archive servers: what each of them answers now, and how this process uses them. */
final class ServersPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $archive = $visit->archive();
        $health = $archive->health();
        $servers = [];
        foreach ($archive->servers() as $server) {
            $servers["$server->host,$server->port"] = $server;
        }
        return $visit->page('administration/servers', $visit->h->locale->text('admin-servers'), [
            'servers' => array_map(static fn(ServerHealth $each): array => [
                'health' => $each,
                'server' => $servers["$each->host,$each->port"] ?? null,
            ], $health),
            'aliveCount' => \count(array_filter($health, static fn(ServerHealth $each): bool => $each->isAlive)),
            'now' => new \DateTimeImmutable(),
            'process' => getmypid(),
        ]);
    }
}
