<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\Document;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Error;
use Oxaqrycln\FieldContent;
use Portal\Search\SearchRestriction;
use Portal\Web\DiskFull;
use Portal\Web\Settings;

/** Has the archive store what the form of a document has sent. */
final class DocumentStorage
{
    private const IMAGE = 2;
    private const FILE = 3;

    /**
     * @param \Closure(string, list<FieldContent>): DocumentName $store takes title and fields
     * @param list<FieldContent> $texts
     * @param ?Document $document the one that gets a new version; null for a new one
     */
    public function __construct(
        private readonly Settings $settings,
        private readonly SearchRestriction $restriction,
        private readonly \Closure $store,
        private readonly array $texts,
        private readonly ?Document $document = null,
    ) {
    }

    /**
     * One document with all files.
     *
     * @param list<UploadedFile> $files
     * @return \Generator<int, Outcome>
     */
    public function whole(string $title, array $files): \Generator
    {
        yield $this->stored($title, $files, '');
    }

    /**
     * A document for each file. A failure that is not about the file itself ends it; the files after it are not tried.
     *
     * @param list<UploadedFile> $files
     * @return \Generator<int, Outcome>
     */
    public function each(string $title, array $files): \Generator
    {
        $isOver = false;
        foreach ($files as $file) {
            $outcome = $isOver
                ? new Outcome($file->name, '', 'upload-not-tried', status: 503)
                : $this->stored($title . ': ' . StoredName::of($file->name), [$file], $file->name);
            $isOver = $isOver || $outcome->status >= 500;
            yield $outcome;
        }
    }

    /** @param list<UploadedFile> $files */
    private function stored(string $title, array $files, string $name): Outcome
    {
        $uploads = new Uploads($this->settings);
        try {
            $made = ($this->store)($title, [...$this->texts, ...$this->placed($files, $uploads)]);
            return Outcome::ofDocument($made, $name);
        } catch (Error | DiskFull $error) {
            return Outcome::ofError($error, $name);
        } finally {
            $uploads->remove();
        }
    }

    /**
     * @param list<UploadedFile> $files
     * @return list<FieldContent>
     */
    private function placed(array $files, Uploads $uploads): array
    {
        $fields = [];
        foreach ($files as $file) {
            $type = $file->isImage() ? self::IMAGE : self::FILE;
            $first = $type === self::IMAGE ? $this->settings->imageField : $this->settings->fileField;
            $fields[] = new FieldContent($this->freeField($first), $uploads->place($file), $type);
        }
        return $fields;
    }

    /** The archive replaces the segments of a field that is sent, so that what the document has stays under other fields. */
    private function freeField(int $first): int
    {
        $used = [];
        foreach ($this->document?->segments ?? [] as $segment) {
            $used[$segment->fieldId] = true;
        }
        while (isset($used[$first]) || $this->restriction->isHidden((string) $first)) {
            ++$first;
        }
        return $first;
    }
}
