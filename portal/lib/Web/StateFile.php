<?php

declare(strict_types=1);

namespace Portal\Web;

/** A small file of the portal's own data, as JSON, in a folder of the state directory. Several requests may use it at once. */
final class StateFile
{
    private const LOCK_TRIES = 10;

    private readonly string $path;
    /** @var array<string, mixed>|null as this object has read or written it last */
    private ?array $content = null;

    /** @param string $key any text; the file's name is made from it */
    public function __construct(Settings $settings, string $folder, string $key)
    {
        $this->path = self::directory($settings, $folder) . '/' . hash('sha256', $key) . '.json';
    }

    /** The path of a folder of the state directory, which is created if it does not exist. */
    public static function directory(Settings $settings, string $folder): string
    {
        $directory = "$settings->stateDir/$folder";
        is_dir($directory) || @mkdir($directory, 0700) || is_dir($directory)
            || throw new DiskFull("the directory \"$directory\" cannot be made");
        return $directory;
    }

    /** Removes files of a folder that were not changed for so many seconds, looking at no more than $most files. */
    public static function removeOld(Settings $settings, string $folder, int $seconds, int $most): void
    {
        $directory = @opendir("$settings->stateDir/$folder");
        while ($directory !== false && $most > 0 && ($name = readdir($directory)) !== false) {
            if (preg_match('/^[0-9a-f]{64}\.json/', $name, $part) !== 1) {
                continue;
            }
            --$most;
            // A lock keeps the time of its creation, and is needed as long as its file.
            $last = max((int) @filemtime("$settings->stateDir/$folder/$name"), (int) @filemtime("$settings->stateDir/$folder/$part[0]"));
            if ($last < time() - $seconds) {
                @unlink("$settings->stateDir/$folder/$name");
            }
        }
    }

    /** @return array<string, mixed> empty without a file; read once, whatever other requests write meanwhile */
    public function read(): array
    {
        return $this->content ??= $this->readAgain();
    }

    /**
     * Replaces the content by what $change makes of it, while no other request does.
     *
     * @param \Closure(array<string, mixed>): array<string, mixed> $change
     * @return array<string, mixed> the new content
     */
    public function change(\Closure $change): array
    {
        return $this->alone(function () use ($change): array {
            $content = $change($this->readAgain());
            $new = "$this->path." . bin2hex(random_bytes(8));
            $text = json_encode($content, JSON_THROW_ON_ERROR | JSON_UNESCAPED_UNICODE);
            if (@file_put_contents($new, $text) !== \strlen($text) || !@rename($new, $this->path)) {
                @unlink($new);
                throw new DiskFull("the file \"$this->path\" cannot be written");
            }
            return $this->content = $content;
        });
    }

    /**
     * Runs $work while no other request runs work or a change of this file. $work must not change this file.
     *
     * @template T
     * @param \Closure(): T $work
     * @return T what $work returns
     */
    public function alone(\Closure $work): mixed
    {
        $lock = $this->lock();
        try {
            return $work();
        } finally {
            fclose($lock);
        }
    }

    public function remove(): void
    {
        $this->content = null;
        @unlink($this->path);
        @unlink("$this->path.lock");
    }

    /** @return resource the lock, which the file does not lose when it is removed meanwhile */
    private function lock(): mixed
    {
        for ($tries = 0; $tries < self::LOCK_TRIES; ++$tries) {
            $lock = @fopen("$this->path.lock", 'c');
            if ($lock === false || !flock($lock, LOCK_EX)) {
                break;
            }
            clearstatcache(true, "$this->path.lock");
            if (fstat($lock)['ino'] === @fileinode("$this->path.lock")) {
                return $lock;
            }
            fclose($lock);  // another request has removed it
        }
        throw new DiskFull("the file \"$this->path.lock\" cannot be locked");
    }

    /** @return array<string, mixed> */
    private function readAgain(): array
    {
        // Most files that are asked for do not exist.
        $content = is_file($this->path) ? json_decode((string) @file_get_contents($this->path), true) : [];
        return \is_array($content) ? $content : [];
    }
}
