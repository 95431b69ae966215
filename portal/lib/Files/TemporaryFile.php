<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\DiskFull;

/** Files in PHP's temporary directory that are removed when their stream is closed, at the latest when the page ends. */
final class TemporaryFile
{
    /** @return resource an empty file */
    public static function open(): mixed
    {
        $file = tmpfile();
        return $file !== false ? $file : throw new DiskFull('no temporary file can be made');
    }

    /** @param resource $file any open file */
    public static function path(mixed $file): string
    {
        return stream_get_meta_data($file)['uri'];
    }
}
