<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A part of a text between the edges of its marks. */
final class TextPiece
{
    public function __construct(
        public readonly string $text,
        public readonly bool $isMarked,
    ) {
    }
}
