<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\ColumnKind;
use Portal\Web\Failure;
use Portal\Web\Visit;

/** How a user wants to see the hit lists of an archive: which columns, in which order, how dense. */
final class ListView
{
    public const DENSITIES = ['comfortable', 'compact'];
    public const MOST_COLUMNS = 60;
    private const ARCHIVE = 'archive';
    /** archives of a user whose lists are remembered; the oldest are forgotten */
    private const KEPT = 200;
    private const LONGEST = 200;

    /** @param list<ListColumn> $columns in the user's order */
    private function __construct(public readonly array $columns, public readonly string $density)
    {
    }

    /** @param string $archiveTitle of the column with the archive's name */
    public static function of(Visit $visit, string $place, FoundHits $hits, string $archiveTitle): self
    {
        $chosen = $visit->state($visit->knownUser()->id)->read()['lists'][$place] ?? [];
        $ranks = array_flip($chosen['order'] ?? []);
        $hidden = array_flip($chosen['hidden'] ?? []);
        $columns = [];
        $seen = [];
        foreach ($hits->columns + [-1 => null] as $number => $title) {
            $isArchive = $title === null;
            $title ??= $archiveTitle;
            // Several columns may have one title.
            $seen[$title] = ($seen[$title] ?? 0) + 1;
            $key = $isArchive ? self::ARCHIVE : "$seen[$title] $title";
            $isFigure = !$isArchive && $hits->kindOf($number) !== ColumnKind::Text;
            $columns[] = new ListColumn($key, $isArchive ? null : $number, $title, $isFigure, !isset($hidden[$key]));
        }
        // A column that is new goes to the end.
        usort($columns, static fn(ListColumn $one, ListColumn $other): int =>
            ($ranks[$one->key] ?? PHP_INT_MAX) <=> ($ranks[$other->key] ?? PHP_INT_MAX));
        $density = $chosen['density'] ?? '';
        return new self($columns, \in_array($density, self::DENSITIES, true) ? $density : self::DENSITIES[0]);
    }

    /** @return non-empty-list<ListColumn> the first column when all are hidden */
    public function shown(): array
    {
        $shown = array_values(array_filter($this->columns, static fn(ListColumn $column): bool => $column->isShown));
        return $shown === [] ? [$this->columns[0]] : $shown;
    }

    /**
     * @param list<string> $order keys of the columns
     * @param list<string> $hidden keys of those that are not shown
     */
    public static function remember(Visit $visit, string $place, array $order, array $hidden, string $density): void
    {
        // Keeps the file small: only existing archives and known densities.
        [$channel, $archive] = explode('/', $place, 2) + ['', ''];
        $place === '' || $visit->requireArchive($channel, $archive);
        if (!\in_array($density, self::DENSITIES, true)) {
            throw new Failure('argument', 400);
        }
        $isUsable = static fn(string $key): bool => \strlen($key) <= self::LONGEST;
        $new = [$place => [
            'order' => array_values(array_filter($order, $isUsable)),
            'hidden' => array_values(array_filter($hidden, $isUsable)),
            'density' => $density,
        ]];
        $visit->state($visit->knownUser()->id)->change(static fn(array $state): array =>
            ['lists' => \array_slice($new + ($state['lists'] ?? []), 0, self::KEPT, true)] + $state);
    }

    public static function forget(Visit $visit, string $place): void
    {
        $visit->state($visit->knownUser()->id)->change(static fn(array $state): array =>
            ['lists' => array_diff_key($state['lists'] ?? [], [$place => true])] + $state);
    }
}
