<?php

// Loads the classes of the package without composer: require this file once.

declare(strict_types=1);

spl_autoload_register(static function (string $class): void {
    $parts = explode('\\', $class);
    if (array_shift($parts) !== 'Oxaqrycln') {
        return;
    }
    $folders = \count($parts) === 1 ? ['Archive', 'Document', 'Errors', 'Users'] : [$parts[0]];
    foreach ($folders as $folder) {
        $file = __DIR__ . "/src/$folder/" . end($parts) . '.php';
        if (is_file($file)) {
            require $file;
            return;
        }
    }
});
