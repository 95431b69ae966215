<?php

// Makes the classes of the portal and of the package bindings/php known.

declare(strict_types=1);

spl_autoload_register(static function (string $class): void {
    $parts = explode('\\', $class);
    if (array_shift($parts) !== 'Portal') {
        return;
    }
    $folder = $parts[0] === 'Pages' ? array_shift($parts) : 'Lib';
    $file = __DIR__ . '/' . strtolower($folder) . '/' . implode('/', $parts) . '.php';
    if (is_file($file)) {
        require $file;
    }
});
class_exists(Oxaqrycln\Archive::class) || require __DIR__ . '/../bindings/php/autoload.php';
