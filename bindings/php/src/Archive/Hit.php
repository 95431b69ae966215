<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A hit of a search: the name of its document, and the values of the display columns. */
final class Hit extends DocumentName
{
    /** @param list<string> $values of the display columns; a row may have fewer than there are columns */
    public function __construct(
        string $channel,
        string $archive,
        string $id,
        string $version,
        public readonly array $values,
        private HitList $list,
    ) {
        parent::__construct($channel, $archive, $id, $version);
    }

    /** The value of a column, counted from 0 or named by its title; "" when the row lacks it. */
    public function value(int|string $column): string
    {
        return $this->values[\is_int($column) ? $column : $this->list->column($column)] ?? '';
    }
}
