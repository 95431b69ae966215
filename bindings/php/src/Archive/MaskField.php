<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A field of a mask. */
final class MaskField
{
    public function __construct(
        /** its place in the order of the fields */
        public readonly int $tabIndex,
        /** as the server counts it */
        public readonly int $width,
        /** as the server writes it */
        public readonly string $align,
        public readonly string $name,
        public readonly bool $isMandatory,
        public readonly string $initialText,
        /** no other value than one of $list may be entered */
        public readonly bool $isListOnly,
        /** the values to choose from, as the server writes them */
        public readonly string $list,
    ) {
    }
}
