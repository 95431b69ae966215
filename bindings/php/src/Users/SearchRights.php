<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** What restricts a user's searches in an archive. */
final class SearchRights
{
    public function __construct(
        /** @var list<array{string, string}> field id and the value that a search must have */
        public readonly array $fixedValues,
        /** @var list<string> */
        public readonly array $hiddenFields,
        /** @var list<string> */
        public readonly array $fieldsWithoutMatchcode,
    ) {
    }
}
