<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The contents of one field of a new document or version. A line that begins with "@" gets a blank in front, because the
 * server would take it for the end of the field.
 */
final class FieldContent
{
    public function __construct(
        /** of the field in its archive, Segment::$fieldId */
        public readonly int $id,
        /** of an image or file field the name of a file in the blob directory */
        public readonly string $text,
        /** as the server numbers them, 1 for a text */
        public readonly int $type = 1,
    ) {
    }
}
