<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A segment of a document. */
final class Segment
{
    public function __construct(
        /** names the segment in Content::ofSegment */
        public readonly int $index,
        /** as FieldContent names the field */
        public readonly int $fieldId,
        public readonly string $name,
        public readonly string $title,
        /** as the server numbers them */
        public readonly int $type,
        public readonly MarkedText $text,
        public readonly int $hitCount,
        /** in characters */
        public readonly int $textLength,
        /** of the stored content in bytes; 0 without any */
        public readonly int $contentLength,
        public readonly string $extension,
        public readonly string $fileName,
        public readonly int $status,
        public readonly string $layout,
        public readonly int $thumbnailSize,
    ) {
    }
}
