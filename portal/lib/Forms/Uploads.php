<?php

declare(strict_types=1);

namespace Portal\Forms;

use Portal\Web\DiskFull;
use Portal\Web\Settings;

/**
 * Files on their way into a document. They are in the blob directory for as long as the archive needs to take them over, under
 * names that no other file there has, until remove() is called or the page is broken off.
 */
final class Uploads
{
    /** @var list<string> */
    private array $paths = [];

    public function __construct(private readonly Settings $settings)
    {
        // An aborted page runs its shutdown functions, but not the rest of its code.
        register_shutdown_function($this->remove(...));
    }

    /** The largest size of a file in bytes. */
    public static function largest(Settings $settings): int
    {
        $bytes = $settings->uploadMegabytes << 20;
        foreach ([self::bytes('upload_max_filesize'), self::largestForm()] as $limit) {
            $bytes = $limit > 0 ? min($bytes, $limit) : $bytes;
        }
        return $bytes;
    }

    /** The largest size of a form with its files in bytes; 0 for no limit. */
    public static function largestForm(): int
    {
        return self::bytes('post_max_size');
    }

    public static function mostFiles(): int
    {
        return (int) ini_get('max_file_uploads');
    }

    /** Puts a file into the blob directory and returns its name there. */
    public function place(UploadedFile $file): string
    {
        $wanted = StoredName::of($file->name) ?? throw new \LogicException('the name was not checked');
        $name = $wanted;
        for ($attempt = 0; $attempt < 8; ++$attempt) {
            $path = "{$this->settings->blobLocal}/$name";
            $to = @fopen($path, 'xb');
            if ($to !== false) {
                $this->paths[] = $path;
                $from = fopen($file->path, 'rb');
                $isCopied = $from !== false && @stream_copy_to_stream($from, $to) === filesize($file->path);
                if (!@fclose($to) || !$isCopied) {
                    throw new DiskFull("the file \"$path\" cannot be written");
                }
                return $name;
            }
            $name = StoredName::another($wanted);
        }
        throw new DiskFull("no file can be made in \"{$this->settings->blobLocal}\"");
    }

    /** Removes the files that were placed. */
    public function remove(): void
    {
        foreach ($this->paths as $path) {
            @unlink($path);
        }
        $this->paths = [];
    }

    /** The bytes of a PHP setting such as "8M". */
    private static function bytes(string $setting): int
    {
        $text = trim((string) ini_get($setting));
        return (int) $text << (['k' => 10, 'm' => 20, 'g' => 30][strtolower(substr($text, -1))] ?? 0);
    }
}
