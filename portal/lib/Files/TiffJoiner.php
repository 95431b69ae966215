<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\DiskFull;

/** Puts TIFF files together as one with all their pages. Each is copied by itself first, so that no damaged one gets in. */
final class TiffJoiner
{
    /** Of the joined file: many programs read no larger one. */
    private const LARGEST = 2147483647;

    /**
     * Raises Failure when the program for it is not installed.
     *
     * @param resource $out an empty temporary file
     */
    public function __construct(private readonly mixed $out)
    {
        TiffCopy::require();
    }

    /**
     * @param resource $file a temporary file
     * @return bool false, with nothing added, for a file that is damaged, no TIFF file, or does not fit any more
     */
    public function add(mixed $file): bool
    {
        $checked = TemporaryFile::open();
        $room = self::LARGEST - (int) fstat($this->out)['size'];
        if (!TiffCopy::run($file, $checked, max(1, $room)) || fstat($checked)['size'] > $room) {
            return false;
        }
        return TiffCopy::run($checked, $this->out, self::LARGEST, null, '-a')
            || throw new DiskFull('the image file cannot be written');
    }
}
