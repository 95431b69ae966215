<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A condition that documents must meet to be shown. */
final class DocumentCondition
{
    public function __construct(
        public readonly string $definition,
        public readonly string $fieldId,
        /** "=", "<", "LIKE", ... */
        public readonly string $comparison,
        public readonly string $value,
        /** "TXT", "NUM", ... */
        public readonly string $type,
    ) {
    }
}
