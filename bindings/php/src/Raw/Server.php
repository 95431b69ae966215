<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/** A query server of this process. */
final class Server
{
    public function __construct(
        public readonly string $host,
        public readonly int $port,
        public readonly bool $takesPrintRequests,
        /** a request of this process uses it */
        public readonly bool $isBusy,
        /** the local time from which on it is busy; null while it is not */
        public readonly ?\DateTimeImmutable $since,
        /** for which it is busy; "" while it is not */
        public readonly string $session,
        /** how many of its last connects and requests failed, one after the other */
        public readonly int $failures,
    ) {
    }
}
