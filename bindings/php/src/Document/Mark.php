<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A hit of the query in a text: its first character, counted from 0, and its length in characters. */
final class Mark
{
    public function __construct(
        public readonly int $start,
        public readonly int $length,
    ) {
    }
}
