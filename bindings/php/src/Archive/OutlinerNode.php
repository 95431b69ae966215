<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A node of an outliner. */
final class OutlinerNode
{
    public function __construct(
        public readonly int $id,
        /** in its tree, as the database numbers levels */
        public readonly int $level,
        public readonly string $content,
        /** what the outliner says of the level, as the next two; "" when it says nothing */
        public readonly string $fieldId,
        public readonly string $description,
        public readonly string $dataType,
        public readonly bool $isExpanded,
        public readonly int $childCount,
    ) {
    }
}
