<?php

// check_locale.php FILE ... - compares each file of texts with the first one and prints "FILE: KEY: what" for keys that are
// missing, unknown or out of order, and for texts with other places than {0}, {1}, ... of the first file; then exits with 1.

declare(strict_types=1);

/** @return list<string> the places of a text, in order */
function placesOf(string $text): array
{
    preg_match_all('/\{(\d)[:}]/', $text, $found);
    $places = array_unique($found[1]);
    sort($places);
    return $places;
}

$first = require $argv[1];
$faults = [];
foreach (array_slice($argv, 1) as $file) {
    $texts = require $file;
    foreach (array_keys(array_diff_key($first, $texts)) as $key) {
        $faults[] = "$file: $key: missing";
    }
    $before = '';
    foreach ($texts as $key => $text) {
        if (!isset($first[$key])) {
            $faults[] = "$file: $key: not in $argv[1]";
        } elseif (placesOf($text) !== placesOf($first[$key])) {
            $faults[] = "$file: $key: has other places than \"$first[$key]\"";
        }
        if (strcmp($before, $key) > 0) {
            $faults[] = "$file: $key: comes after $before";
        }
        $before = $key;
    }
}
foreach ($faults as $fault) {
    print("$fault\n");
}
exit($faults === [] ? 0 : 1);
