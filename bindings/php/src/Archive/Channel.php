<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A channel of the archive. */
final class Channel
{
    public function __construct(
        public readonly string $name,
        public readonly string $description,
        /** @var list<ArchiveEntry> filled by Archive::archives() only */
        public readonly array $archives = [],
    ) {
    }
}
