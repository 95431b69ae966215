<?php

// Loads the classes of the portal and of the package bindings/php when they are used.
// Portal\Web\Request is in lib/Web/Request.php, and the classes of Portal\Pages are in pages/.

declare(strict_types=1);

spl_autoload_register(static function (string $class): void {
    if (str_starts_with($class, 'Portal\\')) {
        $path = strtr(substr($class, \strlen('Portal\\')), '\\', '/') . '.php';
        $file = __DIR__ . (str_starts_with($path, 'Pages/') ? '/pages' . substr($path, \strlen('Pages')) : "/lib/$path");
        if (is_file($file)) {
            require $file;
        }
    }
});
class_exists(Oxaqrycln\Archive::class) || require __DIR__ . '/../bindings/php/autoload.php';
