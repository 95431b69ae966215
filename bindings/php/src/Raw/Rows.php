<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/** The rows of a list in UTF-8, which one call has read. Row and column count from 0; column 0 is the result of the method. */
final class Rows extends Owned implements \Countable
{
    public readonly int $columnCount;
    /** All texts one after the other, in UTF-8. */
    public readonly string $block;
    /** Where they begin and end: text number i is between $offsets[i] and $offsets[i + 1]. */
    public readonly \FFI\CData $offsets;
    private readonly int $rowCount;

    /** Takes the handle over, and frees it as soon as it is read. */
    public function __construct(\FFI\CData $handle)
    {
        $this->library = Library::get();
        $this->kind = 'rows';
        $this->hold($handle);
        try {
            $this->readAll();
        } finally {
            $this->free();  // also of an object whose constructor fails, which PHP does not destroy
        }
    }

    public function count(): int
    {
        return $this->rowCount;
    }

    /** @throws BadArgument when there is no such text */
    public function text(int $row, int $column = 0): string
    {
        if ($row < 0 || $row >= $this->rowCount || $column < 0 || $column >= $this->columnCount) {
            throw new BadArgument("there is no text $column of row $row");
        }
        $at = $row * $this->columnCount + $column;
        return substr($this->block, $this->offsets[$at], $this->offsets[$at + 1] - $this->offsets[$at]);
    }

    /**
     * @return list<string> the texts of all columns
     *
     * @throws BadArgument when there is no such row
     */
    public function row(int $row): array
    {
        $texts = [];
        for ($column = 0; $column < $this->columnCount; ++$column) {
            $texts[] = $this->text($row, $column);
        }
        return $texts;
    }

    private function readAll(): void
    {
        $library = $this->library;
        $offsets = $library->place('const uint32_t*');
        $library->check($library->ffi->oxaqry_rows_read(
            $this->handle,
            $library->number,
            $library->number2,
            $library->text,
            $offsets,
        ));
        $this->rowCount = $library->number[0];
        $this->columnCount = $library->number2[0];
        $count = $this->rowCount * $this->columnCount + 1;
        $this->offsets = $library->ffi->new("uint32_t[$count]");
        \FFI::memcpy($this->offsets, $offsets[0], $count * 4);
        $byteCount = $this->offsets[$count - 1];
        $this->block = $byteCount === 0 ? '' : \FFI::string($library->text[0], $byteCount);
    }
}
