<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** What a user may do in an archive. */
final class EditRight
{
    public function __construct(
        public readonly string $archive,
        public readonly bool $canCreate,
        public readonly bool $canEdit,
        public readonly bool $canDelete,
    ) {
    }
}
