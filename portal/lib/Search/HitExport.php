<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Hit;
use Portal\Output\Locale;

/** A hit list as a table for other programs, written to the output row by row. */
final class HitExport
{
    private const NAMES = ['channel', 'archive', 'document', 'version'];

    /** @var list<ListColumn> without the one that names the archive, which comes as fields of their own */
    private readonly array $columns;

    /** @param list<ListColumn> $columns */
    public function __construct(
        private readonly FoundHits $hits,
        array $columns,
        private readonly ?Selection $selection,
        private readonly Locale $locale,
    ) {
        $this->columns = array_values(array_filter($columns, static fn(ListColumn $each): bool => $each->number !== null));
    }

    /** In UTF-8 with a byte order mark, without which spreadsheets assume another encoding. Every field is quoted. */
    public function writeCsv(): void
    {
        $titles = array_map(self::defused(...), array_column($this->columns, 'title'));
        echo "\u{FEFF}", $this->csvLine([...$titles, ...self::NAMES]);
        foreach ($this->rows() as $hit) {
            $values = [];
            foreach ($this->columns as $column) {
                $value = $hit->values[$column->number] ?? '';
                $values[] = $column->isFigure && preg_match('/^[-+]?[\d.,:]+$/D', $value) ? $value : self::defused($value);
            }
            $names = [$hit->channel, $hit->archive, $hit->id, $hit->version];
            echo $this->csvLine([...$values, ...array_map(self::defused(...), $names)]);
        }
    }

    public function writeJson(string $query): void
    {
        $isFirst = true;
        $titles = array_column($this->columns, 'title');
        echo '{"query":', self::json($query), ',"columns":', self::json($titles), ',"hits":[';
        foreach ($this->rows() as $hit) {
            $value = static fn(ListColumn $column): string => $hit->values[$column->number] ?? '';
            echo $isFirst ? "\n" : ",\n", self::json([
                'channel' => $hit->channel,
                'archive' => $hit->archive,
                'document' => $hit->id,
                'version' => $hit->version,
                'values' => array_map($value, $this->columns),
            ]);
            $isFirst = false;
        }
        echo "\n]}\n";
    }

    /** @return iterable<Hit> the whole list, or what is selected of it; without hits that the user may not see */
    public function rows(): iterable
    {
        foreach ($this->hits as $hit) {
            if ($hit !== null && ($this->selection === null || $this->selection->has($hit))) {
                yield $hit;
            }
        }
    }

    /** @param list<string> $values */
    private function csvLine(array $values): string
    {
        $quoted = array_map(static fn(string $value): string => '"' . str_replace('"', '""', $value) . '"', $values);
        return implode($this->locale->text('csv-separator'), $quoted) . "\r\n";
    }

    /** A text that a spreadsheet would take for a formula gets an apostrophe in front. */
    private static function defused(string $value): string
    {
        $formula = '/^[\p{Z}\p{C}]*[=+\-@|\x{FF1D}\x{FF0B}\x{FF0D}\x{FF20}]|^[\t\r\n]/u';
        return preg_match($formula, $value) === 0 ? $value : "'$value";
    }

    private static function json(mixed $value): string
    {
        $form = JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE;
        return json_encode($value, JSON_THROW_ON_ERROR | $form);
    }
}
