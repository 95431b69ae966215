<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** What became of a request. Empty for an error that came before any request. */
final class RequestReport
{
    public function __construct(
        /** @var list<Attempt> in the order in which the servers were tried */
        public readonly array $attempts = [],
        public readonly int $milliseconds = 0,
        /** a server may have carried the request out */
        public readonly bool $wasSent = false,
    ) {
    }
}
