<?php

// For "opcache.preload": PHP's default "ffi.enable = preload" lets only the functions of preloaded files use FFI. See
// oxaqrycln.ini.

declare(strict_types=1);

require_once __DIR__ . '/autoload.php';
foreach (glob(__DIR__ . '/src/*/*.php') as $oxaqryclnFile) {
    $oxaqryclnFolder = basename(dirname($oxaqryclnFile));
    $oxaqryclnName = ($oxaqryclnFolder === 'Raw' ? 'Raw\\' : '') . basename($oxaqryclnFile, '.php');
    // By name, so that a class comes after those that it stands on.
    class_exists("Oxaqrycln\\$oxaqryclnName") || trait_exists("Oxaqrycln\\$oxaqryclnName");
}
unset($oxaqryclnFile, $oxaqryclnFolder, $oxaqryclnName);
