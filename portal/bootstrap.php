<?php

// Makes the classes of the portal and of the package bindings/php known.

declare(strict_types=1);

spl_autoload_register(static function (string $class): void {
    $parts = explode('\\', $class);
    if (array_shift($parts) !== 'Portal') {
        return;
    }
    $folders = ['lib/Web', 'lib/Output', 'lib/Search', 'lib/Documents', 'lib/Forms', 'lib/Files', 'lib/Users'];
    if ($parts[0] === 'Pages') {
        $folders = ['pages'];
        array_shift($parts);
    } elseif ($parts[0] === 'Administration') {
        $folders = ['lib'];
    }
    foreach ($folders as $folder) {
        $file = __DIR__ . "/$folder/" . implode('/', $parts) . '.php';
        if (is_file($file)) {
            require $file;
            return;
        }
    }
});
class_exists(Oxaqrycln\Archive::class) || require __DIR__ . '/../bindings/php/autoload.php';
