<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** What the server says may be done in an archive, whatever the rights of the web user. */
final class ArchiveProperties
{
    public function __construct(
        public readonly bool $canCreate,
        public readonly bool $canEdit,
        public readonly bool $canDelete,
        public readonly bool $canIndex,
        /** whose meaning the server alone knows */
        public readonly string $fifth,
    ) {
    }
}
