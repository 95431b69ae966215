<?php

// php_bench.php PORT ROUNDS SECONDS - the benchmarks of the PHP package against the canned server on that port. Prints a
// JSON object with the nanoseconds of a run in each round, by benchmark.

declare(strict_types=1);

use Oxaqrycln\Archive;

require dirname(__DIR__) . '/bindings/php/autoload.php';

[, $port, $rounds, $seconds] = $argv;
$archive = new Archive(hosts: "127.0.0.1,$port", user: 'webuser', session: 'S1', timeout: 60);

/** Takes all texts of all hits, and returns the number of hits. */
function take(iterable $hits): int
{
    $count = 0;
    foreach ($hits as $hit) {
        $channel = $hit->channel;
        $archive = $hit->archive;
        $id = $hit->id;
        $version = $hit->version;
        foreach ($hit->values as $value) {
        }
        ++$count;
    }
    return $count;
}

$benchmarks = [
    'PhpSearches/100' => fn() => \count($archive->search('rows:100', max: 100, queryMax: 100)) === 100,
    'PhpSearchAndWalk/100' => fn() => take($archive->search('rows:100', max: 100, queryMax: 100)) === 100,
    'PhpSearchAndWalk/1000' => fn() => take($archive->search('rows:1000', max: 1000, queryMax: 1000)) === 1000,
];
$times = array_fill_keys(array_keys($benchmarks), []);
for ($round = 0; $round < $rounds; ++$round) {
    foreach ($benchmarks as $name => $run) {
        $start = hrtime(true);
        $end = $start + (int) ($seconds * 1e9);
        for ($count = 0; $count === 0 || hrtime(true) < $end; ++$count) {
            $run() || throw new RuntimeException("$name: rows are missing");
        }
        $times[$name][] = (hrtime(true) - $start) / $count;
    }
}
echo json_encode($times), "\n";
