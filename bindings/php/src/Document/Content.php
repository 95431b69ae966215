<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** Which content of a document is fetched. */
final class Content
{
    private function __construct(
        /** @internal */
        public readonly string $method,
        /** @internal */
        public readonly string $argument,
    ) {
    }

    public static function ofSegment(int $index): self
    {
        return new self('TELOGetSegmentData', (string) $index);
    }

    /** The first stored file, of an extension when one is given. */
    public static function firstFile(string $extension = ''): self
    {
        return new self('TELOGetSegmentFirstBLOB', $extension);
    }

    /** A file to print, from a query server with the print flag. */
    public static function printable(string $fieldId): self
    {
        return new self('TELOGetSegmentPrintfile', $fieldId);
    }

    /** One image file of several pages, "1;4-6". */
    public static function pages(string $pages): self
    {
        return new self('TELOGetSegmentMultiTIF', $pages);
    }
}
