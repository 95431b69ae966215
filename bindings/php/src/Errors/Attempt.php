<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** One attempt to carry a request out. */
final class Attempt
{
    public function __construct(
        public readonly string $host,
        public readonly int $port,
        /** "10061 - ...", "no answer", ...; "" when the server answered */
        public readonly string $error,
        public readonly int $milliseconds,
    ) {
    }
}
