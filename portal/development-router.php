<?php

// For "php -S 127.0.0.1:PORT -t portal/public portal/development-router.php": files of public/ as they are, everything else through index.php.

declare(strict_types=1);

$file = __DIR__ . "/public" . parse_url($_SERVER['REQUEST_URI'], PHP_URL_PATH);
if (preg_match('/\.(css|js|svg)$/', $file) && is_file($file)) {
    return false;
}
require __DIR__ . '/public/index.php';
