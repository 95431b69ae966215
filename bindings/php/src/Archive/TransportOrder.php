<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A transport order. */
final class TransportOrder
{
    public function __construct(
        public readonly string $id,
        public readonly string $status,
        /** id of the document that shows it */
        public readonly string $document,
        public readonly string $version,
        /** @var list<string> what the server adds */
        public readonly array $columns,
    ) {
    }
}
