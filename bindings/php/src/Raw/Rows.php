<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/** The rows of a list, which one call has read. Row and column count from 0; column 0 is the result of the method. */
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
        $this->readAll();
        $this->free();
    }

    public function count(): int
    {
        return $this->rowCount;
    }

    public function text(int $row, int $column = 0): string
    {
        if ($row < 0 || $row >= $this->rowCount || $column < 0 || $column >= $this->columnCount) {
            throw new BadArgument("there is no text $column of row $row");
        }
        $at = $row * $this->columnCount + $column;
        return substr($this->block, $this->offsets[$at], $this->offsets[$at + 1] - $this->offsets[$at]);
    }

    /** @return list<string> */
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
        $rowCount = $library->ffi->new('int32_t[1]');
        $offsets = $library->ffi->new('const uint32_t*[1]');
        $library->check($library->ffi->oxaqry_rows_read(
            $this->handle,
            $rowCount,
            $library->number,
            $library->text,
            $offsets,
        ));
        $this->rowCount = $rowCount[0];
        $this->columnCount = $library->number[0];
        $count = $this->rowCount * $this->columnCount + 1;
        $this->offsets = $library->ffi->new("uint32_t[$count]");
        \FFI::memcpy($this->offsets, $offsets[0], $count * 4);
        $byteCount = $this->offsets[$count - 1];
        $this->block = $byteCount === 0 ? '' : \FFI::string($library->text[0], $byteCount);
    }
}
