<?php

// A page for the tests: does what "do" names, and prints what the worker then holds.

declare(strict_types=1);

use Oxaqrycln\Archive;
use Oxaqrycln\DocumentName;
use Oxaqrycln\FieldContent;
use Oxaqrycln\Users;

// Where the package is preloaded, its classes are there.
if (!class_exists(Archive::class, false)) {
    require dirname(__DIR__, 4) . '/bindings/php/autoload.php';
}
try {
    $archive = new Archive(
        hosts: getenv('OXAQRY_HOSTS'),
        user: 'webuser',
        password: 'secret',
        blobLocal: getenv('OXAQRY_BLOBS'),
        database: getenv('OXAQRY_DATABASE'),
    );
    switch ($_GET['do']) {
        case 'search':
            foreach ($archive->search('copper', max: 20) as $hit) {
                $archive->users();
                echo $hit->value('Title'), "\n";
            }
            break;
        case 'fatal':
            // Between the request and the removal of the import file, with a search whose rows are not read.
            $hits = $archive->search('copper', max: 20);
            register_shutdown_function(static fn() => no_such_function());  // ends the functions behind it
            $archive->onRequest(function (): void {
                ini_set('memory_limit', '16M');
                global $used;  // which a fatal error does not free
                for ($used = []; $_GET['how'] === 'memory'; $used = [$used]) {
                }
                no_such_function();
            });
            $archive->create('Finance', 'Orders', 'never', [new FieldContent(11, 'x')]);
            break;
        case 'ffi':
            \FFI::cdef('int getpid(void);');
            echo 'allowed';
            break;
        default:
            gc_collect_cycles();
            $status = file_get_contents('/proc/self/status');
            preg_match('/VmRSS:\s+(\d+)/', $status, $resident);
            $busy = array_filter($archive->health(), static fn($server): bool => $server->isBusy);
            echo json_encode([
                'process' => getmypid(),
                'kilobytes' => (int) $resident[1],
                'descriptors' => count(scandir('/proc/self/fd')),
                'busy' => count($busy),
            ]);
    }
} catch (Exception | Error $error) {
    if ($_GET['do'] === 'fatal') {
        trigger_error('fatal', E_USER_ERROR);
    }
    echo $error::class, ': ', $error->getMessage();
}
