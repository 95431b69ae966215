<?php

declare(strict_types=1);

namespace Portal\Search;

/** A column of a hit list as the user has arranged it. */
final class ListColumn
{
    public function __construct(
        /** names the column among those of the list, also in later lists of the same archive */
        public readonly string $key,
        /** of the archive's columns, counted from 0; null for the column with the archive's name */
        public readonly ?int $number,
        public readonly string $title,
        public readonly bool $isFigure,
        public readonly bool $isShown,
    ) {
    }
}
