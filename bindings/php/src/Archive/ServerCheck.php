<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * Asks each query server of a list whether it is alive, all at the same time. A process keeps its list of servers, and
 * a request goes to a free one of it, so the checks have connections of their own; see docs/protocol.md.
 *
 * @internal
 */
final class ServerCheck
{
    private const LONGEST_ANSWER = 65536;

    /** @var array<int, array{resource, string, string}> connection, what is still to be sent, what was received */
    private array $running = [];
    /** @var array<int, ServerHealth> */
    private array $done = [];
    private float $start = 0;
    /** @var list<Raw\Server> of this process */
    private array $table;

    public function __construct(private readonly Settings $settings, QueryAccess $access)
    {
        $this->table = $access->servers();
    }

    /** @return list<ServerHealth> */
    public function run(): array
    {
        $this->start = microtime(true);
        foreach ($this->settings->hosts === '' ? [] : explode('|', $this->settings->hosts) as $at => $entry) {
            $this->connect($at, explode(',', $entry));
        }
        $end = $this->start + $this->settings->timeout;
        while ($this->running !== [] && microtime(true) < $end) {
            $this->serve($end - microtime(true));
        }
        foreach (array_keys($this->running) as $at) {
            $this->end($at, false, 'no answer');
        }
        ksort($this->done);
        return $this->done;
    }

    /** @param list<string> $entry host, port, print flag, user, encoded password */
    private function connect(int $at, array $entry): void
    {
        [$user, $password] = [$entry[3] ?? '', $entry[4] ?? ''];
        $query = new Raw\Query();
        if ($user === '') {
            [$user, $password] = [$this->settings->user, $query->Encode($this->settings->password)];
        }
        $session = $this->settings->session ?: 'client';
        // In Windows-1252, as the component sends it.
        $text = base64_decode($query->EncodeBase64("^$session^,^$user^,^$password^,^LiveCheck^"));
        $host = str_contains($entry[0], ':') ? "[$entry[0]]" : $entry[0];
        $stream = @stream_socket_client(
            "tcp://$host:" . ($entry[1] ?? 0),
            $number,
            $error,
            $this->settings->timeout,
            STREAM_CLIENT_CONNECT | STREAM_CLIENT_ASYNC_CONNECT,
        );
        $this->running[$at] = [$stream, $text, ''];
        if ($stream === false) {
            $this->end($at, false, "no connection: $error");
        } else {
            stream_set_blocking($stream, false);
        }
    }

    private function serve(float $seconds): void
    {
        $read = array_map(static fn(array $check) => $check[0], $this->running);
        $write = array_filter($read, fn(int $at): bool => $this->running[$at][1] !== '', ARRAY_FILTER_USE_KEY);
        $except = null;
        if (!@stream_select($read, $write, $except, (int) $seconds, (int) (fmod($seconds, 1) * 1e6))) {
            return;
        }
        foreach ($write as $at => $stream) {
            $sent = @fwrite($stream, $this->running[$at][1]);
            if ($sent === false || ($sent === 0 && stream_socket_get_name($stream, true) === false)) {
                $this->end($at, false, 'no connection');
                continue;
            }
            $this->running[$at][1] = substr($this->running[$at][1], $sent);
        }
        foreach ($read as $at => $stream) {
            if (isset($this->running[$at])) {
                $this->receive($at, $stream);
            }
        }
    }

    /** @param resource $stream */
    private function receive(int $at, $stream): void
    {
        $received = &$this->running[$at][2];
        $received .= @fread($stream, self::LONGEST_ANSWER);
        $hasHeader = preg_match('/^TotalBytes:(\d+)\r\n(.*)$/Ds', $received, $part) === 1;
        if ($hasHeader && \strlen($part[2]) >= (int) $part[1]) {
            $lines = explode("\r\n", (new Raw\Query())->DecodeBase64(base64_encode($part[2])));
            $isAlive = $lines[0] === 'Status: OK';
            $this->end($at, $isAlive, $isAlive ? $lines[1] ?? '' : substr($lines[0], 8));
        } elseif (feof($stream) || \strlen($received) > self::LONGEST_ANSWER) {
            $this->end($at, false, $received === '' ? 'no connection' : 'the answer cannot be read');
        }
    }

    private function end(int $at, bool $isAlive, string $text): void
    {
        if ($this->running[$at][0] !== false) {
            fclose($this->running[$at][0]);
        }
        unset($this->running[$at]);
        [$host, $port] = explode(',', explode('|', $this->settings->hosts)[$at]) + ['', '0'];
        [$isBusy, $session] = [false, ''];
        foreach ($this->table as $server) {
            if ($server->host === $host && $server->port === (int) $port) {
                [$isBusy, $session] = [$server->isBusy, $server->session];
            }
        }
        $milliseconds = (int) ((microtime(true) - $this->start) * 1000);
        $this->done[$at] = new ServerHealth($host, (int) $port, $isAlive, $text, $milliseconds, $isBusy, $session);
    }
}
