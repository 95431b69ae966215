<?php

declare(strict_types=1);

use PHPUnit\Framework\TestCase;

/** What needs a PHP of its own: other settings, another library, other query servers. */
final class ProcessTest extends TestCase
{
    private const CHANNELS = 'count($archive->channels());';

    public function testEachWayToLackTheLibraryHasItsMessage(): void
    {
        $wrong = getenv('OXAQRY_WRONG_ABI');
        $cases = [
            'no extension' => [['-n'], null, ['no extension "ffi"', 'extension=ffi']],
            'switched off' => [['-d', 'ffi.enable=0'], null, ['switched off', 'opcache.preload = ', '/preload.php']],
            'no library' => [[], '/nowhere/library.so', ['/nowhere/library.so', 'OXAQRYCLN_LIBRARY']],
            'not in php.ini' => [['-d', 'oxaqrycln.library=/other.so'], '', ['/other.so']],
            'other interface' => [[], $wrong, [$wrong, '9.8.7', 'version 2', 'needs version 1']],
        ];
        foreach ($cases as $case => [$options, $library, $texts]) {
            $shown = self::shown('new Oxaqrycln\Archive();', $options, $library);
            self::assertStringStartsWith('Oxaqrycln\LibraryFailed', $shown, $case);
            foreach ($texts as $text) {
                self::assertStringContainsString($text, $shown, $case);
            }
        }
    }

    public function testFailuresOfARequestAreToldApart(): void
    {
        $silent = stream_socket_server('tcp://127.0.0.1:0');
        $port = (int) substr(strrchr(stream_socket_get_name($silent, false), ':'), 1);
        $closed = stream_socket_server('tcp://127.0.0.1:0');
        $unused = (int) substr(strrchr(stream_socket_get_name($closed, false), ':'), 1);
        fclose($closed);
        $cases = [
            'nobody listens' => ["127.0.0.1,$unused", 'Oxaqrycln\ConnectionFailed', "not sent $unused 10061"],
            'no answer' => ["127.0.0.1,$port", 'Oxaqrycln\TimedOut', "sent $port no answer"],
            'no servers' => ['', 'Oxaqrycln\BadArgument', 'no query servers'],
            'a list that is none' => ['127.0.0.1,many', 'Oxaqrycln\BadArgument', 'not valid'],
        ];
        foreach ($cases as $case => [$hosts, $class, $text]) {
            $shown = self::shown("\$archive = new Oxaqrycln\\Archive(hosts: '$hosts', timeout: 1);" . self::CHANNELS);
            self::assertStringStartsWith($class, $shown, $case);
            self::assertStringContainsString($text, $shown, $case);
        }
    }

    public function testARowThatCannotBeReadIsAnErrorAndNotTheEndOfTheList(): void
    {
        $server = stream_socket_server('tcp://127.0.0.1:0');
        $hosts = str_replace(':', ',', stream_socket_get_name($server, false));
        $rows = ['^Reference^,^DocID^,^Version^,^Title^', '^$(#Mail)\Inbox^,^1^,^1^,^a^', '^none^,^2^,^1^,^b^'];
        $answer = implode("\r\n", ['Status: OK', '2', '10=Title', '0', '^0^,^0^,^0^,^0^', ...$rows, '']);
        $code = "\$archive = new Oxaqrycln\\Archive(hosts: '$hosts', timeout: 1); \$hits = \$archive->search('a');"
            . 'try { $archive->channels(); } catch (Oxaqrycln\Error $error) { echo $error::class, " "; }'
            . 'try { $hits->columns(); } catch (Oxaqrycln\Error) { echo count($hits), " "; } echo $hits[0]->id;';
        $shown = self::shown($code, serve: static fn() => self::answer($server, $answer));
        // The other request has its own error, and the list keeps its.
        self::assertStringStartsWith('Oxaqrycln\TimedOut 2 Oxaqrycln\Error: hit 3 of the answer is malformed', $shown);
    }

    public function testValuesAreThoseOfTheirRowWhateverItsForm(): void
    {
        $forms = [',^a^,^b^' => ['a', 'b'], ',^^' => [''], ',^' => [''], ',^a^,^b' => ['a', 'b'], '' => [],
            ',^last^' => ['last']];
        $rows = array_map(static fn(string $form): string => "^$(#Mail)\Inbox^,^1^,^1^$form", array_keys($forms));
        $head = ['Status: OK', '6', '10=Title', '0', '^0^,^0^,^0^,^0^,^0^', '^Reference^,^DocID^,^Version^,^Title^,^B^'];
        $answer = implode("\r\n", [...$head, ...$rows, '']);
        $server = stream_socket_server('tcp://127.0.0.1:0');
        $hosts = str_replace(':', ',', stream_socket_get_name($server, false));
        $code = "\$archive = new Oxaqrycln\\Archive(hosts: '$hosts'); foreach (\$archive->search('a') as \$hit) {"
            . '$values[] = $hit->values; } echo json_encode($values);';
        $shown = self::shown($code, serve: static fn() => self::answer($server, $answer));
        self::assertSame(array_values($forms), json_decode($shown), $shown);
    }

    public function testWorkersBeginAtServersOfTheirOwn(): void
    {
        $hosts = '127.0.0.1,1|127.0.0.1,2,0,own,|127.0.0.1,3';
        $make = "new Oxaqrycln\\Archive(hosts: '$hosts');";
        $shown = self::shown("\$archive = $make \$again = $make"
            . 'echo getmypid() % 3 + 1, " "; foreach ($archive->health() as $each) {'
            . 'echo $each->port, str_starts_with($each->text, "no connection: 10061"), " "; }'
            . 'foreach ($archive->servers() as $server) { echo $server->port, $server->takesPrintRequests ? "p" : ""; }');
        self::assertSame(1, preg_match('/^(\d) (.*) (\S+)$/', $shown, $part), $shown);
        self::assertSame('11 21 31', $part[2]);  // in the order of the list
        self::assertSame(['1' => '1p23p', '2' => '23p1p', '3' => '3p1p2'][$part[1]], $part[3]);
    }

    public function testAForkedProcessMakesAnArchiveOfItsOwn(): void
    {
        $hosts = getenv('OXAQRY_HOSTS');
        $make = "new Oxaqrycln\\Archive(hosts: '$hosts', user: 'webuser', password: 'secret');";
        $shown = self::shown("\$archive = $make echo " . self::CHANNELS . 'if (pcntl_fork() === 0) {'
            . 'try { $archive->channels(); } catch (Oxaqrycln\WrongThread) { echo " refused"; }'
            . "\$archive = null; \$archive = $make echo ' ', " . self::CHANNELS . ' exit; }'
            . 'pcntl_wait($status); echo " ", ' . self::CHANNELS);
        self::assertSame('5 refused 5 5', $shown);
    }

    public function testAPageThatEndsInTheMiddleOfACallLeavesNoFile(): void
    {
        [$hosts, $blobs] = [getenv('OXAQRY_HOSTS'), getenv('OXAQRY_BLOBS')];
        $code = "\$archive = new Oxaqrycln\\Archive(hosts: '$hosts', user: 'webuser', password: 'secret',"
            . " blobLocal: '$blobs'); \$archive->onRequest(function () { echo count(glob('$blobs/*.import')); exit; });"
            . '$archive->create("Finance", "Orders", "Pipes");';
        self::assertSame('1', self::shown($code));
        self::assertSame([], glob("$blobs/*.import"));
    }

    public function testTheExampleShowsWhatItsUserMaySee(): void
    {
        $page = dirname(__DIR__, 3) . '/examples/php/search.php';
        $start = 'putenv("OXAQRY_REMOTE_HOSTS=" . getenv("OXAQRY_HOSTS"));'
            . 'putenv("OXAQRY_USER=webuser"); putenv("OXAQRY_PASSWORD=secret");'
            . '[$_SERVER["PHP_AUTH_USER"], $_SERVER["PHP_AUTH_PW"]] = ["anna", "secret"];';
        $document = '["channel" => "Finance", "archive" => "Orders", "id" => "$id", "version" => "", "q" => "<b>"]';
        $shown = self::shown("$start \$_GET = ['q' => 'copper']; require '$page';");
        self::assertSame(1, preg_match('/archive=Orders&amp;id=(\d+)/', $shown, $found));
        self::assertStringNotContainsString('channel=Mail', $shown);
        $cases = [
            'his document' => ['Orders', 'secret', '<h2>'],
            'of another archive' => ['Invoices', 'secret', '<p>there is no such document'],
            'wrong password' => ['Orders', 'wrong', 'Please log on.'],
        ];
        foreach ($cases as $case => [$archive, $password, $text]) {
            $given = strtr($document, ['Orders' => $archive, '$id' => $found[1]]);
            $code = "$start \$_SERVER['PHP_AUTH_PW'] = '$password'; \$_GET = $given; require '$page';";
            $shown = self::shown($code, ['-d', 'error_log=/dev/null']);
            self::assertStringContainsString($text, $shown, $case);
            self::assertStringNotContainsString('<b>', $shown, $case);
        }
    }

    /** @param resource $server answers one request */
    private static function answer($server, string $answer): void
    {
        $peer = stream_socket_accept($server, 30);
        fwrite($peer, 'TotalBytes:' . strlen($answer) . "\r\n" . $answer);
        fread($peer, 65536);
    }

    /** What a PHP of its own prints for the code: at the end class and text of the error, and what was tried. */
    private static function shown(
        string $code,
        array $options = [],
        ?string $library = null,
        ?callable $serve = null,
    ): string {
        $program = 'require "' . dirname(__DIR__, 3) . '/bindings/php/autoload.php"; try { ' . $code . ' }'
            . 'catch (Oxaqrycln\Error $error) { echo $error::class, ": ", $error->getMessage(), " ",'
            . '$error->request->wasSent ? "sent" : "not sent";'
            . 'foreach ($error->request->attempts as $each) { echo " $each->port $each->error"; } }';
        $environment = getenv();
        if ($library !== null) {
            $environment['OXAQRYCLN_LIBRARY'] = $library;
        }
        $pipes = [];
        $process = proc_open([PHP_BINARY, ...$options, '-r', $program], [1 => ['pipe', 'w']], $pipes, null, $environment);
        $serve === null || $serve();
        $shown = stream_get_contents($pipes[1]);
        proc_close($process);
        return $shown;
    }
}
