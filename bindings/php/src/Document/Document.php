<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A document with its segments and notes. */
final class Document
{
    public function __construct(
        /** with the version that was found */
        public readonly DocumentName $name,
        /** as the server counts it */
        public readonly int $length,
        /** local times; null when the server names no date */
        public readonly ?\DateTimeImmutable $created,
        public readonly ?\DateTimeImmutable $changed,
        public readonly string $title,
        /** fields in all, then those with a text, an image or a stored file */
        public readonly int $fieldCount,
        public readonly int $textCount,
        public readonly int $imageCount,
        public readonly int $fileCount,
        /** @var list<Segment> */
        public readonly array $segments = [],
        /** @var list<Note> */
        public readonly array $notes = [],
    ) {
    }
}
