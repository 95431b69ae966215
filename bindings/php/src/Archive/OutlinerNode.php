<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A node of an outliner. */
final class OutlinerNode
{
    public function __construct(
        public readonly int $id,
        public readonly int $level,
        public readonly string $content,
        public readonly string $fieldId,
        public readonly string $description,
        public readonly string $dataType,
        public readonly bool $isExpanded,
        public readonly int $childCount,
    ) {
    }
}
