<?php

// For "opcache.preload" of php-fpm: the package bindings/php, which may use FFI then, and the classes of the portal, so that
// no request has to load them. They stay as they are until php-fpm is restarted.

declare(strict_types=1);

// In the sources, and installed.
foreach ([\dirname(__DIR__) . '/bindings/php', \dirname(__DIR__, 3) . '/php/oxaqrycln'] as $portalPackage) {
    if (is_file("$portalPackage/preload.php")) {
        require_once "$portalPackage/preload.php";
        break;
    }
}
require_once __DIR__ . '/bootstrap.php';
foreach (['lib' => 'Portal', 'pages' => 'Portal\\Pages'] as $portalFolder => $portalNamespace) {
    $portalPath = __DIR__ . "/$portalFolder";
    $portalFiles = new RecursiveDirectoryIterator($portalPath, FilesystemIterator::SKIP_DOTS);
    foreach (new RecursiveIteratorIterator($portalFiles) as $portalFile) {
        $portalName = substr($portalFile->getPathname(), \strlen($portalPath), -\strlen('.php'));
        // Through the autoloader, so that base classes are loaded first.
        class_exists($portalNamespace . strtr($portalName, '/', '\\'));
    }
}
unset($portalPackage, $portalFolder, $portalNamespace, $portalPath, $portalFiles, $portalFile, $portalName);
