<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** An archive of a channel. */
final class ArchiveEntry
{
    public function __construct(
        public readonly string $name,
        public readonly string $comment,
    ) {
    }
}
