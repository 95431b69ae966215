<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A note at a document; the lines of its text end with "\n". */
final class Note
{
    public function __construct(
        /** "" when the server's header cannot be told from the text, which then begins with it */
        public readonly string $author,
        /** null likewise */
        public readonly ?\DateTimeImmutable $time,
        public readonly string $text,
    ) {
    }
}
