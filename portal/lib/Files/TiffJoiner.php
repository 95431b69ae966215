<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\DiskFull;
use Portal\Web\Failure;

/**
 * Puts TIFF files together as one with all their pages, by the program tiffcp, which keeps one strip of a page in memory.
 * The program sees each file by itself first, so that a damaged one leaves the others as they are.
 */
final class TiffJoiner
{
    private const COPY = '/usr/bin/tiffcp';
    private const LIMIT = '/usr/bin/prlimit';
    /** Of the joined file: many programs read no larger one. */
    private const LARGEST = 2147483647;
    /** For each file; the bytes are of memory. */
    private const SECONDS = 60;
    private const MEMORY = 1073741824;
    private const SIGNATURES = ["II*\0", "MM\0*"];

    /**
     * Raises Failure when the program is not installed.
     *
     * @param resource $out an empty file of tmpfile()
     */
    public function __construct(private readonly mixed $out)
    {
        foreach ([self::COPY, self::LIMIT] as $program) {
            is_executable($program) || throw Failure::notInstalled('libtiff-tools, util-linux');
        }
    }

    /**
     * @param resource $file of tmpfile()
     * @return bool false, with nothing added, for a file that is damaged, no TIFF file, or does not fit any more
     */
    public function add(mixed $file): bool
    {
        rewind($file);
        $checked = tmpfile();
        if ($checked === false) {
            throw new DiskFull('no temporary file can be made');
        }
        if (!\in_array(fread($file, 4), self::SIGNATURES, true) || !self::copy($file, $checked)) {
            return false;
        }
        if (self::size($this->out) + self::size($checked) > self::LARGEST) {
            return false;
        }
        return self::copy($checked, $this->out, '-a') || throw new DiskFull('the image file cannot be written');
    }

    /**
     * @param resource $from
     * @param resource $to
     */
    private static function copy(mixed $from, mixed $to, string ...$options): bool
    {
        $limits = ['--cpu=' . self::SECONDS, '--as=' . self::MEMORY, '--fsize=' . self::LARGEST, '--core=0'];
        $nothing = ['file', '/dev/null', 'r+'];
        // Without their directory, because the program takes what follows a comma for page numbers.
        [$source, $target] = array_map('basename', [self::path($from), self::path($to)]);
        $program = proc_open(
            [self::LIMIT, ...$limits, self::COPY, ...$options, $source, $target],
            [$nothing, $nothing, $nothing],
            $pipes,
            \dirname(self::path($to)),
            [],
        );
        return $program !== false && proc_close($program) === 0;
    }

    /** @param resource $file */
    private static function size(mixed $file): int
    {
        return (int) fstat($file)['size'];
    }

    /** @param resource $file */
    private static function path(mixed $file): string
    {
        return stream_get_meta_data($file)['uri'];
    }
}
