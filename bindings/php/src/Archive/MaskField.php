<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A field of a mask. */
final class MaskField
{
    public function __construct(
        public readonly int $tabIndex,
        public readonly int $width,
        public readonly string $align,
        public readonly string $name,
        public readonly bool $isMandatory,
        public readonly string $initialText,
        public readonly bool $isListOnly,
        public readonly string $list,
    ) {
    }
}
