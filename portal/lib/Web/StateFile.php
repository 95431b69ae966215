<?php

declare(strict_types=1);

namespace Portal\Web;

/** A small file of the portal's own data, as JSON, in a folder of the state directory. Several requests may use it at once. */
final class StateFile
{
    private readonly string $path;

    /** @param string $key any text; the file's name is made from it */
    public function __construct(Settings $settings, string $folder, string $key)
    {
        $this->path = self::directory($settings, $folder) . '/' . hash('sha256', $key) . '.json';
    }

    /** The path of a folder of the state directory, which is made if need be. */
    public static function directory(Settings $settings, string $folder): string
    {
        $directory = "$settings->stateDir/$folder";
        is_dir($directory) || @mkdir($directory, 0700) || is_dir($directory)
            || throw new \RuntimeException("the directory \"$directory\" cannot be made");
        return $directory;
    }

    /** @return array<string, mixed> empty without a file */
    public function read(): array
    {
        return self::decoded((string) @file_get_contents($this->path));
    }

    /**
     * Replaces the content by what $change makes of it, while no other request does.
     *
     * @param \Closure(array<string, mixed>): array<string, mixed> $change
     * @return array<string, mixed> the new content
     */
    public function change(\Closure $change): array
    {
        $lock = fopen("$this->path.lock", 'c');
        if ($lock === false || !flock($lock, LOCK_EX)) {
            throw new \RuntimeException("the file \"$this->path.lock\" cannot be locked");
        }
        try {
            $content = $change($this->read());
            $new = "$this->path." . bin2hex(random_bytes(8));
            $text = json_encode($content, JSON_THROW_ON_ERROR | JSON_UNESCAPED_UNICODE);
            if (@file_put_contents($new, $text) !== \strlen($text) || !rename($new, $this->path)) {
                @unlink($new);
                throw new DiskFull("the file \"$this->path\" cannot be written");
            }
            return $content;
        } finally {
            fclose($lock);
        }
    }

    public function remove(): void
    {
        @unlink($this->path);
        @unlink("$this->path.lock");
    }

    /** @return array<string, mixed> */
    private static function decoded(string $text): array
    {
        $content = json_decode($text, true);
        return \is_array($content) ? $content : [];
    }
}
