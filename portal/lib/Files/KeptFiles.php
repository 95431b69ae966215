<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\DiskFull;
use Portal\Web\Settings;
use Portal\Web\StateFile;

/**
 * Files that were fetched a short time ago, so that the parts of one that a browser asks for are one request to the archive.
 * They are in a folder of the state directory: KEY-TAG is a file, KEY.json says which one is the latest, and under what name
 * it is sent, and new-... is a file that is not complete.
 */
final class KeptFiles
{
    private const SECONDS = 300;
    private const MOST = 200;

    private readonly string $directory;
    private readonly int $mostBytes;

    public function __construct(private readonly Settings $settings)
    {
        $this->directory = StateFile::directory($settings, 'files');
        $this->mostBytes = $settings->keptMegabytes << 20;
    }

    /**
     * @param string $key any text
     * @return array{StoredFile, string}|null the file and its name; null when it is not there any more
     */
    public function find(string $key): ?array
    {
        $this->removeOld();
        $start = "$this->directory/" . hash('sha256', $key);
        $kept = json_decode((string) @file_get_contents("$start.json"), true);
        $stream = isset($kept['tag']) ? @fopen("$start-{$kept['tag']}", 'rb') : false;
        return $stream === false ? null : [new StoredFile($stream, $kept['tag']), $kept['name']];
    }

    /** @return resource a file to write to, for keep() and finish() */
    public function begin(): mixed
    {
        $this->removeOld();
        $stream = @fopen("$this->directory/new-" . bin2hex(random_bytes(16)), 'x+b');
        return $stream !== false ? $stream : throw new DiskFull('no file can be made in the state directory');
    }

    /**
     * Keeps a file for a time, unless it is larger than all that may be kept.
     *
     * @param resource $stream of begin()
     * @param StoredFile $file that it has become
     */
    public function keep(string $key, mixed $stream, StoredFile $file, string $name): void
    {
        if ($file->size > $this->mostBytes) {
            return;
        }
        $this->removeUntil($this->mostBytes - $file->size);
        $start = "$this->directory/" . hash('sha256', $key);
        $entry = "$this->directory/new-" . bin2hex(random_bytes(16));
        $text = json_encode(['tag' => $file->tag, 'name' => $name], JSON_THROW_ON_ERROR);
        if (@file_put_contents($entry, $text) === \strlen($text) && @rename(TemporaryFile::path($stream), "$start-$file->tag")) {
            @rename($entry, "$start.json");
        }
        @unlink($entry);
    }

    /**
     * Removes a file that is not kept. The stream stays open.
     *
     * @param resource $stream of begin()
     */
    public function finish(mixed $stream): void
    {
        @unlink(TemporaryFile::path($stream));
    }

    /** Removes expired files, and incomplete files of processes that were interrupted. */
    public function removeOld(): void
    {
        foreach ($this->files() as $path => [$time]) {
            if ($time < time() - self::SECONDS - (self::isNew($path) ? $this->settings->timeout : 0)) {
                @unlink($path);
            }
        }
    }

    /** Removes the oldest files until one more fits into the number, and the rest has $bytes at most. */
    private function removeUntil(int $bytes): void
    {
        $kept = array_filter($this->files(), static fn(string $path): bool => !self::isNew($path), ARRAY_FILTER_USE_KEY);
        asort($kept);
        $total = array_sum(array_column($kept, 1));
        $count = \count($kept);
        foreach ($kept as $path => [, $size]) {
            if ($total <= $bytes && $count < self::MOST) {
                return;
            }
            @unlink($path);
            $total -= $size;
            --$count;
        }
    }

    /** @return array<string, array{int, int}> time and size by path */
    private function files(): array
    {
        clearstatcache();
        $files = [];
        foreach (scandir($this->directory) as $name) {
            $found = is_file("$this->directory/$name") ? @stat("$this->directory/$name") : false;
            if ($found !== false) {
                $files["$this->directory/$name"] = [$found['mtime'], $found['size']];
            }
        }
        return $files;
    }

    private static function isNew(string $path): bool
    {
        return str_starts_with(basename($path), 'new-');
    }
}
