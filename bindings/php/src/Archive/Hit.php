<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A hit of a search: the name of its document, and the values of the display columns. Plain data, which a session may keep. */
final class Hit extends DocumentName
{
    /**
     * @internal
     *
     * @param list<string> $values of the display columns; a row may have fewer than there are columns
     * @param list<string> $columns their titles
     */
    public function __construct(
        string $channel,
        string $archive,
        string $id,
        string $version,
        public readonly array $values,
        private readonly array $columns,
    ) {
        parent::__construct($channel, $archive, $id, $version);
    }

    /**
     * The value of a column, counted from 0, or named as HitList::column() takes it; "" when the row lacks it.
     *
     * @throws BadArgument for a title that is none of a column
     */
    public function value(int|string $column): string
    {
        return $this->values[\is_int($column) ? $column : HitList::position($this->columns, $column)] ?? '';
    }
}
