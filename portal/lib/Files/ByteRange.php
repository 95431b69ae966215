<?php

declare(strict_types=1);

namespace Portal\Files;

/** The part of a file that the header Range asks for. */
final class ByteRange
{
    private function __construct(public readonly int $first, public readonly int $length)
    {
    }

    /** Null when the whole file is the answer: without the header, in another unit, malformed, and with several parts. */
    public static function of(string $header, int $size): ?self
    {
        if (!preg_match('/^bytes=[ \t]*(\d{0,18})-(\d{0,18})[ \t]*$/iD', $header, $part) || $part[1] . $part[2] === '') {
            return null;
        }
        if ($part[1] === '') {
            $length = min($size, (int) $part[2]);
            return new self($size - $length, $length);
        }
        $first = (int) $part[1];
        $last = $part[2] === '' ? $size - 1 : min($size - 1, (int) $part[2]);
        if ($part[2] !== '' && (int) $part[2] < $first) {
            return null;
        }
        return new self($first, max(0, $last - $first + 1));
    }

    /** False for a part behind the end, and for none. */
    public function isSatisfiable(): bool
    {
        return $this->length > 0;
    }
}
