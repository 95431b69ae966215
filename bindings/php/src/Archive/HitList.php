<?php

declare(strict_types=1);

namespace Oxaqrycln;

use Oxaqrycln\Raw\Query;
use Oxaqrycln\Raw\Rows;

/**
 * The hits of a search. A hit list owns its rows: it outlives its archive, and other requests do not change it. It makes a
 * Hit of a row when that is asked for. A clone is a list of its own.
 *
 * What reads hits or columns raises Error when the answer cannot be read. Positions of hits and columns count from 0.
 *
 * @implements \IteratorAggregate<int, Hit>
 * @implements \ArrayAccess<int, Hit>
 */
final class HitList implements \ArrayAccess, \Countable, \IteratorAggregate
{
    private const FIELDS_IN_FRONT = 3;  // reference, document and version
    private const FLAG_LINES = 4;  // the last of them says what the columns hold
    private const DATE = 0x400;
    private const NUMBER = 0x200;
    private const LINE_END = "\r\n";

    /** The row with the titles, then those of the hits; null while they are not read. */
    private ?Rows $rows = null;
    private string $flags = '';
    private array $columns = [];
    /** @var list<int>|null the row of each hit; null: hit number i is in row i + 1 */
    private ?array $places = null;
    private int $size;
    /** Why the rows cannot be read. */
    private ?\Throwable $failure = null;

    /**
     * @internal
     *
     * @param ?QueryAccess $access that has made the search; null for a list without hits
     * @param int $rowCount that it counted
     * @param int $total how many hits the query has; more than there are here when a limit cut the list
     * @param array<string, string> $layout value of each field of the layout by its key, in the server's order
     * @param bool $isMultiPageImage whether the server can put the hits together as one image file
     */
    public function __construct(
        private ?QueryAccess $access = null,
        private readonly int $rowCount = 0,
        public readonly int $total = 0,
        public readonly array $layout = [],
        public readonly bool $isMultiPageImage = false,
    ) {
        $this->size = max(0, $rowCount - 1);
        $access?->readLater($this);
    }

    public function __clone()
    {
        $this->read();
    }

    public function __serialize(): array
    {
        throw new BadArgument('a hit list cannot be serialized, for a session or a cache: keep its hits, [...$hits]');
    }

    public function __debugInfo(): array
    {
        return ['size' => $this->size, 'total' => $this->total, 'columns' => $this->columns];
    }

    /** @return list<string> the titles of the display columns */
    public function columns(): array
    {
        $this->open();
        return $this->columns;
    }

    /**
     * The position, counted from 0, of the column of a title, whatever its letter case; "1" is the first column when
     * none has that title.
     *
     * @throws BadArgument which lists the columns, when there is none or several
     */
    public function column(string $title): int
    {
        return self::position($this->columns(), $title);
    }

    /** @internal The same for the titles of a list. */
    public static function position(array $columns, string $title): int
    {
        $found = array_keys(array_filter($columns, static fn(string $each): bool => Text::isTitle($title, $each)));
        if ($found === []) {
            $found = array_filter(array_keys($columns), static fn(int $at): bool => $title === (string) ($at + 1));
        }
        if (\count($found) === 1) {
            return reset($found);
        }
        $wrong = $found === []
            ? "there is no column \"$title\""
            : "there are several columns \"$title\": give the number of one";
        foreach ($columns as $at => $each) {
            $wrong .= ($at === 0 ? '; the columns are ' : ', ') . $at + 1 . " $each";
        }
        throw new BadArgument($wrong);
    }

    public function kindOf(int $column): ColumnKind
    {
        $this->checkColumn($column);
        $flags = (int) trim(Text::fields($this->flags)[$column + self::FIELDS_IN_FRONT] ?? '');
        return match (true) {
            ($flags & self::DATE) !== 0 => ColumnKind::Date,
            ($flags & self::NUMBER) !== 0 => ColumnKind::Number,
            default => ColumnKind::Text,
        };
    }

    /** Sorts by a column, counted from 0, as its kind asks for; equal hits keep their order. Makes no request. */
    public function sort(int $column, Order $order = Order::Ascending): void
    {
        $this->checkColumn($column);
        $places = $this->places();
        $head = $this->flags . self::LINE_END . $this->sortLine(0, 0);
        $lines = $head;
        foreach ($places as $number => $row) {
            $lines .= $this->sortLine($number, $row);
        }
        // The first sort of an instance turns the order of the data round; without any hits that leaves it descending,
        // and each further sort turns it again.
        $sorter = new Query();
        $sorter->TELOSortHitlist2Init($head, $column + 1);
        for ($i = $order === Order::Descending ? 2 : 1; $i > 0; --$i) {
            $count = $sorter->TELOSortHitlist2Init($lines, $column + 1);
        }
        if ($count !== $this->size + 1) {
            throw new Error('the hit list cannot be sorted');
        }
        $sorted = $sorter->fetchRows('TELOSortHitlist2Next', $count);
        $this->places = [];
        for ($i = 1; $i < $count; ++$i) {
            $this->places[] = $places[(int) substr($sorted->text($i), 1)] ?? throw new Error('a sorted hit has no number');
        }
    }

    /** Removes a hit, counted from 0. */
    public function remove(int $position): void
    {
        if (!$this->offsetExists($position)) {
            throw new BadArgument("there is no hit $position");
        }
        $this->places = $this->places();
        array_splice($this->places, $position, 1);
        --$this->size;
    }

    /**
     * For a page of a longer list.
     *
     * @param ?int $length the most hits, null for all from the first one on
     * @return list<Hit> empty behind the end of the list
     */
    public function slice(int $first, ?int $length = null): array
    {
        if ($first < 0 || ($length ?? 0) < 0) {
            throw new BadArgument('the position and the length of a part of a hit list are 0 or more');
        }
        $end = $length === null ? $this->size : min($this->size, $first + $length);
        return iterator_to_array($this->hits($this->order(), $first, $end), false);
    }

    /** How many hits the list has now; $total is how many the query has. */
    public function count(): int
    {
        return $this->size;
    }

    /** @return \Generator<int, Hit> the hits as they are now, whatever is sorted or removed meanwhile */
    public function getIterator(): \Generator
    {
        return $this->hits($this->order(), 0, $this->size);
    }

    public function offsetExists(mixed $offset): bool
    {
        return \is_int($offset) && $offset >= 0 && $offset < $this->size;
    }

    public function offsetGet(mixed $offset): Hit
    {
        if (!$this->offsetExists($offset)) {
            throw new BadArgument('there is no hit ' . (\is_int($offset) ? $offset : get_debug_type($offset)));
        }
        return $this->hits($this->order(), $offset, $offset + 1)->current();
    }

    public function offsetSet(mixed $offset, mixed $value): void
    {
        throw new BadArgument('a hit list cannot be assigned to');
    }

    public function offsetUnset(mixed $offset): void
    {
        throw new BadArgument('a hit list cannot be assigned to: see remove()');
    }

    /**
     * @internal Reads the rows from the component, before another request replaces them there. A failure is for whoever
     *     asks for the hits, not for the method that makes the other request.
     */
    public function read(): void
    {
        if ($this->access === null) {
            return;
        }
        [$access, $this->access] = [$this->access, null];
        try {
            $query = $access->query();
            // Back to the first line, for the one with the flags of the columns; the rows follow it.
            $query->TELOGetAllArchivesExtFirst();
            $this->flags = $query->fetchRows('TELOGetAllArchivesNext', self::FLAG_LINES)->text(self::FLAG_LINES - 1);
            $this->rows = $access->rows('TELOQueryArchiveNext', $this->rowCount, 'hit', [0, 1, 2, 3]);
            $this->columns = $this->rowCount === 0 ? [] : Text::fields($this->rows->text(0));
        } catch (\Throwable $error) {
            $this->failure = $error;
        }
    }

    /** @internal Whether the first hit comes behind the last one in ascending order. */
    public function beginsGreater(int $column): bool
    {
        if ($this->size < 2) {
            return false;
        }
        $ends = clone $this;
        $ends->places = [$this->places()[0], $this->places()[$this->size - 1]];
        $ends->size = 2;
        $before = $ends->places;
        $ends->sort($column);
        return $ends->places !== $before;
    }

    /**
     * Cuts the hits out of the block, where columns, channel, archive, id and version of a row stand one after the other.
     * In one function, because a call costs as much as two texts.
     */
    private function hits(?array $places, int $first, int $end): \Generator
    {
        [$block, $offsets, $columns] = [$this->rows?->block, $this->rows?->offsets, $this->columns];
        for ($position = $first; $position < $end; ++$position) {
            $at = ($places === null ? $position + 1 : $places[$position]) * 5;
            $start = $offsets[$at];
            $channel = $offsets[++$at];
            $archive = $offsets[++$at];
            $id = $offsets[++$at];
            $version = $offsets[++$at];
            yield $position => new Hit(
                \substr($block, $channel, $archive - $channel),
                \substr($block, $archive, $id - $archive),
                \substr($block, $id, $version - $id),
                \substr($block, $version, $offsets[++$at] - $version),
                // "^column^,^column^", as a rule.
                $channel > $start + 1 && $block[$start] === '^' && $block[$channel - 1] === '^'
                    ? \explode('^,^', \substr($block, $start + 1, $channel - $start - 2))
                    : Text::fields(\substr($block, $start, $channel - $start)),
                $columns,
            );
        }
    }

    private function open(): void
    {
        $this->read();
        if ($this->failure !== null) {
            throw $this->failure;
        }
    }

    /** @return list<int>|null as $places, of a list that has been read */
    private function order(): ?array
    {
        $this->open();
        return $this->places;
    }

    /** @return list<int> */
    private function places(): array
    {
        return $this->order() ?? ($this->size === 0 ? [] : range(1, $this->size));
    }

    /** A row as a line of the component, with a number in the place of the hit's reference. */
    private function sortLine(int $number, int $row): string
    {
        $columns = $this->rows->text($row);
        return "^$number^,^0^,^0^" . ($columns === '' ? '' : ",$columns") . self::LINE_END;
    }

    private function checkColumn(int $column): void
    {
        if ($column < 0 || $column >= \count($this->columns())) {
            throw new BadArgument("there is no column $column");
        }
    }
}
