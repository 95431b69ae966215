<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\DiskFull;

/**
 * Puts TIFF files together as one with all their pages. The files are copied as they are, one behind the other; then the
 * positions in their directories are moved by where the copy begins. Memory does not grow with the files.
 */
final class TiffJoiner
{
    private const LARGEST = 0xFFFFFFFF;
    private const MOST_PAGES = 1000;
    private const MOST_ENTRIES = 1000;
    private const MOST_VALUES = 1000000;
    /** bytes of a value of each type */
    private const SIZES = [0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8];
    private const SHORT = 3;
    private const LONG = 4;
    /** entries whose values are positions: strips, tiles, JPEG data */
    private const POSITIONS = [273, 324, 513];
    /** entries that lead to further directories, or to tables with positions of their own */
    private const NESTED = [288, 330, 519, 520, 521, 34665, 34853];

    private string $order = '';
    /** where the position of the next directory is to be written */
    private int $link = 4;
    private int $end = 0;
    private int $pages = 0;

    /** @param resource $out an empty file */
    public function __construct(private readonly mixed $out)
    {
    }

    public function pages(): int
    {
        return $this->pages;
    }

    /**
     * @param resource $file
     * @return bool false, with nothing added, for a file that cannot be joined to those before
     */
    public function add(mixed $file): bool
    {
        $length = (int) fstat($file)['size'];
        rewind($file);
        $head = (string) fread($file, 8);
        $order = substr($head, 0, 2);
        if (\strlen($head) < 8 || !\in_array($order, ['II', 'MM'], true) || !\in_array($this->order, ['', $order], true)) {
            return false;
        }
        $base = $this->end === 0 ? 0 : $this->end + 15 & ~15;
        if ($base + $length >= self::LARGEST || self::number($order, substr($head, 2, 2)) !== 42) {
            return false;
        }
        $first = self::number($order, substr($head, 4));
        $patches = self::patches($file, $order, $length, $first, $base, $last, $pages);
        if ($patches === null) {
            return false;
        }
        ftruncate($this->out, $base);
        fseek($this->out, $base);
        rewind($file);
        if (stream_copy_to_stream($file, $this->out) !== $length) {
            throw new DiskFull('the image file cannot be written');
        }
        foreach ($patches as $at => $bytes) {
            $this->patch($base + $at, $bytes);
        }
        $this->patch($this->link, pack($order === 'II' ? 'V' : 'N', $base + $first));
        [$this->order, $this->link, $this->end] = [$order, $base + $last, $base + $length];
        $this->pages += $pages;
        return true;
    }

    /**
     * What to change in a file that is moved.
     *
     * @param resource $file
     * @param ?int $last position in the file of what links its last directory to the next
     * @return array<int, string>|null by their position; null for a file that cannot be moved
     */
    private static function patches(
        mixed $file,
        string $order,
        int $length,
        int $first,
        int $base,
        ?int &$last,
        ?int &$pages,
    ): ?array {
        $patches = [];
        for ($pages = 0, $at = $first; $at !== 0; ++$pages, $at = $next) {
            $count = self::number($order, self::bytes($file, $at, 2));
            $directory = self::bytes($file, $at + 2, $count * 12 + 4);
            $isUsual = $count > 0 && $count <= self::MOST_ENTRIES && $pages < self::MOST_PAGES;
            if (!$isUsual || \strlen($directory) !== $count * 12 + 4) {
                return null;
            }
            for ($entry = 0; $entry < $count; ++$entry) {
                $bytes = substr($directory, $entry * 12, 12);
                $of = self::entryPatches($file, $order, $length, $at + 2 + $entry * 12, $bytes, $base);
                if ($of === null) {
                    return null;
                }
                $patches += $of;
            }
            $next = self::number($order, substr($directory, $count * 12));
            $last = $at + 2 + $count * 12;
            if ($next !== 0) {
                $patches[$last] = self::position($order, $next + $base);
            }
        }
        return $pages === 0 ? null : $patches;
    }

    /**
     * @param resource $file
     * @return array<int, string>|null
     */
    private static function entryPatches(mixed $file, string $order, int $length, int $at, string $entry, int $base): ?array
    {
        [$tag, $type] = [self::number($order, substr($entry, 0, 2)), self::number($order, substr($entry, 2, 2))];
        [$count, $value] = [self::number($order, substr($entry, 4, 4)), self::number($order, substr($entry, 8))];
        $size = (self::SIZES[$type] ?? 0) * $count;
        if ($size === 0 || \in_array($tag, self::NESTED, true)) {
            return $size === 0 && !\in_array($tag, self::POSITIONS, true) ? [] : null;
        }
        $isPositions = \in_array($tag, self::POSITIONS, true);
        if ($size <= 4) {
            if (!$isPositions) {
                return [];
            }
            if ($count !== 1 || !\in_array($type, [self::SHORT, self::LONG], true)) {
                return null;
            }
            $position = $type === self::LONG ? $value : self::number($order, substr($entry, 8, 2));
            $long = pack($order === 'II' ? 'v' : 'n', self::LONG);
            return [$at + 2 => $long, $at + 8 => self::position($order, $position + $base)];
        }
        if ($value + $size > $length) {
            return null;
        }
        $patches = [$at + 8 => self::position($order, $value + $base)];
        if ($isPositions) {
            if ($type !== self::LONG || $count > self::MOST_VALUES) {
                return null;
            }
            $moved = '';
            foreach (unpack($order === 'II' ? 'V*' : 'N*', self::bytes($file, $value, $size)) as $position) {
                $moved .= self::position($order, $position + $base);
            }
            $patches[$value] = $moved;
        }
        return $patches;
    }

    /** @param resource $file */
    private static function bytes(mixed $file, int $at, int $length): string
    {
        return $length > 0 && fseek($file, $at) === 0 ? (string) stream_get_contents($file, $length) : '';
    }

    private static function number(string $order, string $bytes): int
    {
        return match (\strlen($bytes)) {
            2 => unpack($order === 'II' ? 'v' : 'n', $bytes)[1],
            4 => unpack($order === 'II' ? 'V' : 'N', $bytes)[1],
            default => 0,
        };
    }

    private static function position(string $order, int $position): string
    {
        return pack($order === 'II' ? 'V' : 'N', $position);
    }

    private function patch(int $at, string $bytes): void
    {
        fseek($this->out, $at);
        if (fwrite($this->out, $bytes) !== \strlen($bytes)) {
            throw new DiskFull('the image file cannot be written');
        }
    }
}
