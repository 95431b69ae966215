<?php

declare(strict_types=1);

namespace Portal\Administration;

/** A page of a list, as the URL asks for it: a page beyond the end becomes the last one. */
final class Paging
{
    public int $count = 0;
    public int $page;
    public int $pageCount = 1;
    public bool $wasBeyond = false;

    public function __construct(int $page, public readonly int $size)
    {
        $this->page = $page;
    }

    /** The number of the first entry to show, from 0 on. */
    public function first(int $count): int
    {
        $this->count = $count;
        $this->pageCount = max(1, intdiv($count + $this->size - 1, $this->size));
        $this->wasBeyond = $this->page > $this->pageCount;
        $this->page = min($this->page, $this->pageCount);
        return ($this->page - 1) * $this->size;
    }
}
