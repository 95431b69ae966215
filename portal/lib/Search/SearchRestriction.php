<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Document;
use Oxaqrycln\SearchRights;
use Oxaqrycln\Segment;
use Portal\Web\Failure;

/**
 * How the user's search rights restrict the searches in an archive: conditions that are added to every query, and fields that
 * no query may name.
 */
final class SearchRestriction
{
    /** the name of the field that is the title of a document */
    private const TITLE = 'title';

    /** @param array<int|string, string> $names of the archive's fields by id */
    public function __construct(private readonly SearchRights $rights, private readonly array $names)
    {
    }

    /** Equal for restrictions that have the same effect on every query; "" for none. */
    public function key(): string
    {
        $parts = [$this->rights->fixedValues, $this->rights->hiddenFields];
        return $parts === [[], []] ? '' : serialize($parts);
    }

    public function restricts(): bool
    {
        return $this->key() !== '' || $this->rights->fieldsWithoutMatchcode !== [];
    }

    /** A format searches some fields alone: hidden ones, or ones where the fixed values of others are never found. */
    public function allowsFormats(): bool
    {
        return $this->rights->fixedValues === [] && !$this->hidesFields();
    }

    /** @return list<array{string, string}> name of the field, or its id where no setting names it, and its fixed value */
    public function fixedValues(): array
    {
        return array_map(fn(array $pair): array => [$this->names[$pair[0]] ?? $pair[0], $pair[1]], $this->rights->fixedValues);
    }

    public function isFixed(string $field): bool
    {
        return $this->holds(array_column($this->rights->fixedValues, 0), $field);
    }

    public function isHidden(string $field): bool
    {
        return $this->holds($this->rights->hiddenFields, $field);
    }

    public function hidesFields(): bool
    {
        return $this->rights->hiddenFields !== [];
    }

    /** Whether a column of a hit list may be shown. Where fields are hidden, one of an unknown title could be theirs. */
    public function showsColumn(string $title): bool
    {
        return !$this->hidesFields() || (!$this->isHidden($title) && $this->isKnown($title));
    }

    public function hides(Segment $segment): bool
    {
        return $this->isHidden((string) $segment->fieldId) || $this->isHidden($segment->name);
    }

    /** Whether the title is not a hidden field, and does not repeat the text of one. */
    public function showsTitle(Document $document): bool
    {
        if ($this->isHidden(self::TITLE)) {
            return false;
        }
        $isTitle = static fn(Segment $segment): bool => trim($segment->text->text) === trim($document->title);
        return array_filter(array_filter($document->segments, $this->hides(...)), $isTitle) === [];
    }

    /** The document without hidden fields. A title that repeats the text of such a field is replaced by the document's ID. */
    public function shownOf(Document $document): Document
    {
        if (!$this->hidesFields()) {
            return $document;
        }
        $hidden = array_filter($document->segments, $this->hides(...));
        $segments = array_values(array_diff_key($document->segments, $hidden));
        $isText = static fn(Segment $segment): bool => $segment->textLength > 0;
        return new Document(
            $document->name,
            $document->length,
            $document->created,
            $document->changed,
            $this->showsTitle($document) ? $document->title : $document->name->id,
            $document->fieldCount - \count($hidden),
            $document->textCount - \count(array_filter($hidden, $isText)),
            $document->imageCount,
            $document->fileCount,
            $segments,
            $document->notes,
        );
    }

    public function hasMatchcode(string $field): bool
    {
        return !$this->holds($this->rights->fieldsWithoutMatchcode, $field);
    }

    /** The query with the fixed values. Raises Failure for a query that names a hidden field, or that could get around them. */
    public function applied(string $query): string
    {
        $this->check($query);
        $conditions = [];
        foreach ($this->rights->fixedValues as [$field, $value]) {
            $conditions[] = QueryText::condition($field, $value);
        }
        if ($conditions === []) {
            return $query;
        }
        return implode(' AND ', trim($query) === '*' ? $conditions : [...$conditions, "($query)"]);
    }

    /** Raises Failure as applied() does. */
    public function check(string $query): void
    {
        if ($this->rights->fixedValues !== [] && !QueryText::isClosed($query)) {
            throw new Failure('query-open', 422);
        }
        if (!$this->hidesFields()) {
            return;
        }
        foreach (QueryText::fields($query) as $field) {
            // A field that no setting names could be a hidden one under its name.
            if ($this->isHidden($field) || !$this->isKnown($field)) {
                throw new Failure('query-field', 422, $field);
            }
        }
    }

    /** @param list<string> $ids */
    private function holds(array $ids, string $field): bool
    {
        foreach ($ids as $id) {
            if ($id === $field || self::isSame($this->names[$id] ?? $id, $field)) {
                return true;
            }
        }
        return false;
    }

    private function isKnown(string $field): bool
    {
        return $this->holds(array_map(strval(...), array_keys($this->names)), $field);
    }

    private static function isSame(string $one, string $other): bool
    {
        return preg_match('/^' . preg_quote($one, '/') . '$/iuD', $other) === 1;
    }
}
