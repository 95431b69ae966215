<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\Failure;

/**
 * Copies TIFF files with the program tiffcp, which refuses damaged ones, and keeps one strip of a page in memory. What it reads
 * may come from anyone, so its time, its memory and the length of what it writes are limited.
 */
final class TiffCopy
{
    private const PROGRAMS = ['/usr/bin/prlimit', '/usr/bin/tiffcp'];
    private const SECONDS = 60;
    private const MEMORY = 1073741824;

    /** Raises Failure when the program is not installed. */
    public static function require(): void
    {
        foreach (self::PROGRAMS as $program) {
            is_executable($program) || throw Failure::notInstalled('libtiff-tools, util-linux');
        }
    }

    /**
     * @param resource $from a temporary file, as the others
     * @param resource $to
     * @param int $largest bytes of $to
     * @param ?int $page the only one to copy, counted from 1
     * @return bool false for a file that is damaged or too large; $to has anything then
     */
    public static function run(mixed $from, mixed $to, int $largest, ?int $page = null, string ...$options): bool
    {
        rewind($from);
        if (!\in_array(fread($from, 4), ["II*\0", "MM\0*"], true)) {
            return false;
        }
        [$limit, $copy] = self::PROGRAMS;
        $limits = ['--cpu=' . self::SECONDS, '--as=' . self::MEMORY, "--fsize=$largest", '--core=0'];
        $nothing = ['file', '/dev/null', 'r+'];
        // Without their directory, because the program takes what follows a comma for page numbers.
        [$source, $target] = [basename(TemporaryFile::path($from)), basename(TemporaryFile::path($to))];
        $program = proc_open(
            [$limit, ...$limits, $copy, ...$options, $page === null ? $source : $source . ',' . ($page - 1), $target],
            [$nothing, $nothing, $nothing],
            $pipes,
            \dirname(TemporaryFile::path($to)),
            [],
        );
        return $program !== false && proc_close($program) === 0;
    }
}
