<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\ColumnKind;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Hit;
use Oxaqrycln\HitList;
use Oxaqrycln\Order;
use Portal\Documents\DocumentRights;
use Portal\Web\Failure;

/**
 * The hits of a search as their user may see them: without the columns of fields that his search rights hide, and with null
 * in place of a hit whose document his document rights withhold. The count includes those. Positions count from 0.
 *
 * @implements \IteratorAggregate<int, ?Hit>
 */
final class FoundHits implements \Countable, \IteratorAggregate
{
    public readonly int $total;
    public readonly bool $isMultiPageImage;
    /** @var array<int, string> titles of the columns that the user may see, by their number in the archive's list */
    public readonly array $columns;
    private readonly bool $hidesColumns;

    public function __construct(
        private readonly HitList $hits,
        SearchRestriction $restriction,
        private readonly DocumentRights $rights,
    ) {
        [$this->total, $this->isMultiPageImage] = [$hits->total, $hits->isMultiPageImage];
        $this->columns = array_filter($hits->columns(), $restriction->showsColumn(...));
        $this->hidesColumns = \count($this->columns) < \count($hits->columns());
    }

    /** @param string $column its title, or its number counted from 1. Raises Failure for one that the user has not. */
    public function sort(string $column, Order $order): void
    {
        if (\count($this->hits) > 0) {
            $number = HitList::position($this->hits->columns(), $column);
            isset($this->columns[$number]) || throw new Failure('column', 422, $column);
            $this->hits->sort($number, $order);
        }
    }

    public function kindOf(int $column): ColumnKind
    {
        return $this->hits->kindOf($column);
    }

    public function count(): int
    {
        return \count($this->hits);
    }

    /** Which document a hit is, also of one that is withheld; null where the list has none. */
    public function name(int $position): ?DocumentName
    {
        return isset($this->hits[$position]) ? $this->hits[$position] : null;
    }

    /** Whether the hit may be shown. */
    public function isShown(int $position): bool
    {
        return $this->rights->maySee($this->hits[$position]);
    }

    /** Finds out for every hit whether it may be shown, which asks the archive where document rights apply. */
    public function checkRights(): void
    {
        foreach ($this->hits as $hit) {
            $this->rights->maySee($hit);
        }
    }

    /** @return list<?Hit> for a page of the list; empty behind its end */
    public function slice(int $first, int $length): array
    {
        return array_map($this->shown(...), $this->hits->slice($first, $length));
    }

    /** @return \Generator<int, ?Hit> */
    public function getIterator(): \Generator
    {
        foreach ($this->hits as $position => $hit) {
            yield $position => $this->shown($hit);
        }
    }

    private function shown(Hit $hit): ?Hit
    {
        if (!$this->rights->maySee($hit)) {
            return null;
        }
        if (!$this->hidesColumns) {
            return $hit;
        }
        $values = $hit->values;
        foreach (array_keys(array_diff_key($values, $this->columns)) as $number) {
            $values[$number] = '';
        }
        return new Hit($hit->channel, $hit->archive, $hit->id, $hit->version, $values, $this->hits->columns());
    }
}
