<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A tree of predefined searches. */
final class Outliner
{
    public function __construct(
        public readonly string $id,
        public readonly string $name,
    ) {
    }
}
