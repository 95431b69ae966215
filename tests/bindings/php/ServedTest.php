<?php

declare(strict_types=1);

use PHPUnit\Framework\TestCase;

require_once __DIR__ . '/support/PageServer.php';

/** Pages under "php -S" and under a php-fpm of the tests with PHP's default "ffi.enable = preload". */
final class ServedTest extends TestCase
{
    /** That a process may grow, which holds freed memory back with sanitizers. */
    private static function slack(): int
    {
        return getenv('OXAQRY_PRELOAD') ? 4096 : 512;
    }

    public function testAPageSearchesUnderEachServer(): void
    {
        $servers = [
            'preloaded, php -S' => BuiltInServer::preloading(),
            'allowed, php -S' => new BuiltInServer(['ffi.enable=true']),
            'preloaded, php-fpm' => new FastCgiServer(),
        ];
        foreach ($servers as $case => $server) {
            $shown = $server->get("do=search");
            self::assertSame(20, substr_count($shown, "\n"), "$case: $shown");
        }
        self::assertStringContainsString('FFI\Exception', $servers['preloaded, php-fpm']->get('do=ffi'));
        $shown = (new BuiltInServer(['ffi.enable=preload']))->get('do=search');
        self::assertStringStartsWith('Oxaqrycln\LibraryFailed: PHP allows FFI in preloaded files only', $shown);
        self::assertStringContainsString('opcache.preload = ', $shown);
    }

    public function testFatalErrorsLeaveNothingInTheWorker(): void
    {
        $server = new FastCgiServer();
        $this->fail10($server);
        $before = $this->stateOf($server);
        for ($i = 0; $i < 30; ++$i) {
            $this->fail10($server);
        }
        $after = $this->stateOf($server);
        self::assertSame($before->process, $after->process);
        self::assertSame([0, $before->descriptors], [$after->busy, $after->descriptors]);
        self::assertLessThan($before->kilobytes + self::slack(), $after->kilobytes);
        self::assertSame([], glob(getenv('OXAQRY_BLOBS') . '/*.import'));
        self::assertSame(20, substr_count($server->get('do=search'), "\n"));
    }

    /** OXAQRY_PAGES sets how many pages are served; sanitizers make them slow. */
    public function testAWorkerKeepsItsSize(): void
    {
        $server = new FastCgiServer();
        for ($i = 0; $i < 200; ++$i) {
            $server->get('do=search');
        }
        $before = $this->stateOf($server);
        $count = (int) (getenv('OXAQRY_PAGES') ?: (getenv('OXAQRY_PRELOAD') ? 400 : 1500));
        for ($i = 0; $i < $count; ++$i) {
            $shown = $server->get('do=search');
            if ($i % 100 === 0) {
                self::assertSame(20, substr_count($shown, "\n"), "$i: $shown");
            }
        }
        $after = $this->stateOf($server);
        fprintf(STDERR, "\n%d KiB, then %d KiB after %d pages\n", $before->kilobytes, $after->kilobytes, $i);
        self::assertSame([$before->process, $before->descriptors], [$after->process, $after->descriptors]);
        self::assertLessThan($before->kilobytes + self::slack(), $after->kilobytes);
    }

    /** Throws with what the page shows instead. */
    private function stateOf(PageServer $server): stdClass
    {
        $shown = $server->get('do=state');
        return json_decode($shown) ?? throw new RuntimeException("no state: $shown");
    }

    private function fail10(PageServer $server): void
    {
        for ($i = 0; $i < 10; ++$i) {
            self::assertStringNotContainsString('Oxaqrycln', $server->get('do=fatal&how=' . ($i % 2 ? 'memory' : 'call')));
        }
    }
}
