<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\Mask;
use Oxaqrycln\MaskField;
use Portal\Search\QueryText;
use Portal\Search\SearchRestriction;

/** A mask of an archive as a form, for a search or for a document. */
final class MaskForm
{
    /** @param list<MaskEntry> $entries */
    private function __construct(public readonly string $name, public readonly array $entries)
    {
    }

    /**
     * Without hidden fields and without fields with a fixed value, where an entry would have no effect.
     *
     * @param ?array<string, string> $given by the keys of the fields; null for the initial texts
     */
    public static function forSearch(Mask $mask, SearchRestriction $restriction, ?array $given): self
    {
        $isOffered = static fn(MaskField $field): bool =>
            !$restriction->isHidden($field->name) && !$restriction->isFixed($field->name);
        return self::of($mask, $isOffered, $given, [], $restriction->hasMatchcode(...));
    }

    /**
     * Only with fields that can be stored.
     *
     * @param array<string, int> $ids of the archive's fields by name
     * @param ?array<string, string> $given as forSearch() takes it
     * @param array<string, string> $stored values by the names of the fields, in place of the initial texts
     */
    public static function forDocument(Mask $mask, array $ids, ?array $given, array $stored = []): self
    {
        $isOffered = static fn(MaskField $field): bool => isset($ids[strtolower($field->name)]);
        return self::of($mask, $isOffered, $given, $stored, static fn(): bool => true);
    }

    /** Whether every value is one that the mask allows. */
    public function isValid(): bool
    {
        foreach ($this->entries as $entry) {
            if ($entry->problem() !== '') {
                return false;
            }
        }
        return true;
    }

    /** The query for the values that were entered; "" without any. */
    public function query(): string
    {
        $conditions = [];
        foreach ($this->entries as $entry) {
            if (trim($entry->value, " \t\r\n*") !== '') {
                $conditions[] = QueryText::condition($entry->name, $entry->value);
            }
        }
        return implode(' AND ', $conditions);
    }

    /**
     * @param \Closure(MaskField): bool $isOffered
     * @param ?array<string, string> $given
     * @param array<string, string> $stored
     * @param \Closure(string): bool $hasChoices
     */
    private static function of(Mask $mask, \Closure $isOffered, ?array $given, array $stored, \Closure $hasChoices): self
    {
        $entries = [];
        $fields = $mask->fields;
        usort($fields, static fn(MaskField $one, MaskField $other): int => $one->tabIndex <=> $other->tabIndex);
        foreach (array_values(array_filter($fields, $isOffered)) as $number => $field) {
            $key = "f$number";
            $choices = $hasChoices($field->name) ? preg_split('/\s*;\s*/', $field->list, -1, PREG_SPLIT_NO_EMPTY) : [];
            $before = $stored[strtolower($field->name)] ?? '';
            if ($before !== '' && $choices !== [] && !\in_array($before, $choices, true)) {
                $choices[] = $before;  // what a document has already may stay
            }
            $entries[] = new MaskEntry(
                $key,
                $field->name,
                $given === null ? $stored[strtolower($field->name)] ?? $field->initialText : $given[$key] ?? '',
                $choices,
                $field->isListOnly && $choices !== [],
                $field->isMandatory,
                $field->width,
                strtoupper($field->align) === 'R',
            );
        }
        return new self($mask->name, $entries);
    }
}
