<?php

declare(strict_types=1);

/** A program that serves pages, in a temporary directory of its own; it ends with the object. */
abstract class PageServer
{
    protected readonly string $directory;
    /** @var resource */
    private $process;

    public function __destruct()
    {
        proc_terminate($this->process);
        proc_close($this->process);
        array_map('unlink', glob("$this->directory/*"));
        rmdir($this->directory);
    }

    /** The body that the test page answers with. */
    abstract public function get(string $query): string;

    /** @param list<string> $command */
    protected function start(array $command): void
    {
        $log = ['file', "$this->directory/log", 'a'];
        $this->process = proc_open($command, [['file', '/dev/null', 'r'], $log, $log], $pipes);
    }

    protected function makeDirectory(): void
    {
        $this->directory = getenv('OXAQRY_DIRECTORY') . '/' . bin2hex(random_bytes(6));
        mkdir($this->directory);
    }

    /** @return resource a connection, as soon as the server takes one */
    protected function connect(string $address)
    {
        for ($tries = 0; $tries < 200; ++$tries) {
            if ($stream = @stream_socket_client($address, $number, $error, 10)) {
                stream_set_timeout($stream, 30);
                return $stream;
            }
            usleep(50_000);
        }
        throw new RuntimeException("$address: $error\n" . file_get_contents("$this->directory/log"));
    }

    protected static function package(): string
    {
        return dirname(__DIR__, 4) . '/bindings/php';
    }

    /** Those of oxaqrycln.ini; the pages run as the user that the tests run as. */
    protected static function preloadSettings(): array
    {
        $user = posix_getpwuid(posix_geteuid())['name'];
        return ['ffi.enable=preload', 'opcache.enable=1', 'opcache.preload=' . self::package() . '/preload.php',
            "opcache.preload_user=$user", 'opcache.jit=tracing', 'opcache.jit_buffer_size=16M'];
    }
}

/** "php -S". */
final class BuiltInServer extends PageServer
{
    private readonly int $port;

    /** @param list<string> $settings of php.ini */
    public function __construct(array $settings)
    {
        $this->makeDirectory();
        $free = stream_socket_server('tcp://127.0.0.1:0');
        $this->port = (int) substr(strrchr(stream_socket_get_name($free, false), ':'), 1);
        fclose($free);
        $options = array_merge(...array_map(static fn(string $setting): array => ['-d', $setting], $settings));
        $pages = dirname(__DIR__) . '/pages';
        $this->start([PHP_BINARY, ...$options, '-S', "127.0.0.1:$this->port", '-t', $pages]);
    }

    public static function preloading(): self
    {
        return new self(self::preloadSettings());
    }

    public function get(string $query): string
    {
        $stream = $this->connect("tcp://127.0.0.1:$this->port");
        fwrite($stream, "GET /page.php?$query HTTP/1.0\r\n\r\n");
        return explode("\r\n\r\n", stream_get_contents($stream), 2)[1] ?? '';
    }
}

/** A php-fpm with one worker. */
final class FastCgiServer extends PageServer
{
    public function __construct()
    {
        $this->makeDirectory();
        $lines = ['[global]', "error_log=$this->directory/errors", 'daemonize=no',
            '[test]', "listen=$this->directory/socket", 'pm=static', 'pm.max_children=1'];
        foreach (['OXAQRYCLN_LIBRARY', 'ODBCSYSINI'] as $name) {
            $lines[] = "env[$name]=" . (getenv($name) ?: '/etc');
        }
        if (posix_geteuid() === 0) {
            array_push($lines, 'user=root', 'group=root');
        }
        file_put_contents("$this->directory/fpm.conf", implode("\n", $lines) . "\n");
        $options = array_merge(...array_map(static fn(string $each): array => ['-d', $each], self::preloadSettings()));
        $this->start([getenv('OXAQRY_PHP_FPM'), '-R', '-F', '-y', "$this->directory/fpm.conf", ...$options]);
    }

    public function get(string $query): string
    {
        $variables = ['SCRIPT_FILENAME' => dirname(__DIR__) . '/pages/page.php', 'REQUEST_METHOD' => 'GET',
            'QUERY_STRING' => $query];
        foreach (['OXAQRY_HOSTS', 'OXAQRY_BLOBS', 'OXAQRY_DATABASE'] as $name) {
            $variables[$name] = getenv($name);
        }
        $parameters = '';
        foreach ($variables as $name => $text) {
            $parameters .= pack('NN', \strlen($name) | 1 << 31, \strlen($text) | 1 << 31) . $name . $text;
        }
        $stream = $this->connect("unix://$this->directory/socket");
        // Begin as a responder, the parameters and their end, no body.
        fwrite($stream, self::record(1, pack('nCx5', 1, 0)) . self::record(4, $parameters) . self::record(4, '')
            . self::record(5, ''));
        [$answer, $received] = [stream_get_contents($stream), ''];
        for ($at = 0; $at + 8 <= \strlen($answer); $at += 8 + $head['length'] + $head['padding']) {
            $head = unpack('Cversion/Ctype/nid/nlength/Cpadding', $answer, $at);
            $received .= $head['type'] === 6 ? substr($answer, $at + 8, $head['length']) : '';
        }
        return explode("\r\n\r\n", $received, 2)[1] ?? '';
    }

    private static function record(int $type, string $content): string
    {
        return pack('CCnnCx', 1, $type, 1, \strlen($content), 0) . $content;
    }
}
