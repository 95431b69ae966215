<?php

// The only file that the web server runs.

declare(strict_types=1);

require \dirname(__DIR__) . '/bootstrap.php';

Portal\Web\Portal::answer();
