<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** Names a document. An empty version is the newest one. */
class DocumentName
{
    public function __construct(
        public readonly string $channel,
        public readonly string $archive,
        public readonly string $id,
        public readonly string $version = '',
    ) {
    }
}
