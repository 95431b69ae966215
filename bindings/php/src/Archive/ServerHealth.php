<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A query server, as a check found it and as this process uses it. */
final class ServerHealth
{
    public function __construct(
        public readonly string $host,
        public readonly int $port,
        public readonly bool $isAlive,
        /** the server's answer, or the error */
        public readonly string $text,
        public readonly int $milliseconds,
        /** in use by a request of this process */
        public readonly bool $isBusy,
        /** of that request */
        public readonly string $session,
    ) {
    }
}
