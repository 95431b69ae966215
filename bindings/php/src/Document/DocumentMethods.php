<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The methods of Archive that read and change documents. */
trait DocumentMethods
{
    /** The document without its segments and notes. Raises Refused when there is no such document. */
    public function describe(DocumentName $name): Document
    {
        return $this->readDocument($name, false, '');
    }

    /** $query marks its hits in the texts. Raises Refused when there is no such document. */
    public function document(DocumentName $name, string $query = ''): Document
    {
        return $this->readDocument($name, true, $query);
    }

    /** @return list<Note> of the document, in the server's order */
    public function notes(DocumentName $name): array
    {
        $access = $this->access;
        $key = $this->key($name);
        $count = $access->count($access->query()->TELOGetNotesInit(...$key, strParamStatus: $access->status()));
        return $this->map($access->rows('TELOGetNotesNext', $count, 'note'), fn(array $row): Note => $this->note($row[0]));
    }

    /**
     * Makes a new document. Writes an import file under a name of its own into the blob directory, and removes it.
     *
     * @param list<FieldContent> $fields
     * @return DocumentName with id and version
     */
    public function create(string $channel, string $archive, string $title, array $fields = []): DocumentName
    {
        return $this->import($channel, $archive, $title, $fields, function (string $path): string {
            $access = $this->access;
            $access->count($access->query()->TELOCreateDocument($path, $idVersion, $access->status()));
            return $idVersion;
        });
    }

    /**
     * Makes a new version, in place of the newest one, which $name states. Writes an import file as create() does.
     *
     * @param list<FieldContent> $fields
     * @return DocumentName with the new version
     */
    public function edit(DocumentName $name, string $title, array $fields = []): DocumentName
    {
        [$channel, $archive, $id, $version] = $this->key($name);
        $idVersion = $version === '' ? $id : "$id,$version";
        return $this->import($channel, $archive, $title, $fields, function (string $path) use ($idVersion): string {
            $access = $this->access;
            $access->count($access->query()->TELOEditDocument($path, $idVersion, $access->status()));
            return $idVersion;
        });
    }

    /** Deletes all versions when the name has none. */
    public function delete(DocumentName $name): void
    {
        $access = $this->access;
        $key = $this->key($name);
        $access->count($access->query()->TELODeleteDocument(...$key, strParamStatus: $access->status()));
    }

    /** @param string $text at most 8000 characters, with any line ends */
    public function addNote(DocumentName $name, string $text): void
    {
        $access = $this->access;
        $key = $this->key($name);
        $note = Text::withNetworkLineEnds(Text::request($text, 'the note'));
        if (\strlen($note) - preg_match_all('/[\x80-\xBF]/', $note) > 8000) {
            throw new BadArgument('a note has at most 8000 characters');
        }
        $access->count($access->query()->TELOWriteNote(...$key, strNote: $note, strParamStatus: $access->status()));
    }

    /** All notes of the document. */
    public function deleteNotes(DocumentName $name): void
    {
        $access = $this->access;
        $key = $this->key($name);
        $access->count($access->query()->TELODeleteNotes(...$key, strParamStatus: $access->status()));
    }

    private function readDocument(DocumentName $name, bool $isWhole, string $words): Document
    {
        $access = $this->access;
        $key = $this->key($name);
        $words = Text::request($words, 'the query');
        $lineCount = $access->count($access->query()->TELOGetDocumentInfo(
            ...$key,
            lngLaenge: $length,
            strErstelldat: $created,
            strAenderDat: $changed,
            strTitel: $title,
            intFelderGes: $fields,
            intTextFelder: $texts,
            intBildFelder: $images,
            intBlobFelder: $files,
            strParamStatus: $access->status(),
        ));
        if ($lineCount === 0) {
            throw new Refused('there is no such document');
        }
        $access->checkOwn('the information about the document cannot be read');
        [$segments, $notes, $found] = $isWhole ? $this->segments($name, $words) : [[], [], $name];
        return new Document(
            $found,
            Text::number($length),
            Text::date((string) $created),
            Text::date((string) $changed),
            (string) $title,
            Text::number($fields),
            Text::number($texts),
            Text::number($images),
            Text::number($files),
            $segments,
            $notes,
        );
    }

    /** @return array{list<Segment>, list<Note>, DocumentName} the name with the version that was found */
    private function segments(DocumentName $name, string $words): array
    {
        $access = $this->access;
        $count = $access->count($access->query()->TELOGetSegmentsInit(
            ...$this->key($name),
            strQuery: $words,
            strMarkOn: MarkedText::MARK_ON,
            strMarkOff: MarkedText::MARK_OFF,
            strParamCRLF: "\n",
            lngNotes: $noteCount,
            strParamStatus: $access->status(),
        ));
        $rows = $access->rows('TELOGetSegmentsNext', $count, 'segment', range(0, 16));
        $version = $name->version;
        if ($version === '' && $count > 0) {
            $version = $rows->text(0, 4);
        }
        $found = new DocumentName($name->channel, $name->archive, $name->id, $version);
        $segments = $this->map($rows, fn(array $row): Segment => $this->segment($row));
        return [$segments, Text::number($noteCount) > 0 ? $this->notes($found) : [], $found];
    }

    /** @param list<string> $row the text, then the outputs of TELOGetSegmentsNext */
    private function segment(array $row): Segment
    {
        return new Segment(
            index: Text::number($row[5]),
            fieldId: Text::number($row[6]),
            name: $row[7],
            title: $row[13],
            type: Text::number($row[12]),
            text: new MarkedText($row[0]),
            hitCount: Text::number($row[9]),
            textLength: Text::number($row[8]),
            contentLength: Text::number($row[10]),
            extension: $row[11],
            fileName: $row[14],
            status: Text::number($row[15]),
            layout: $row[16],
            thumbnailSize: Text::number($row[17]),
        );
    }

    /** "author,date time,text": the header ends with the time. */
    private function note(string $text): Note
    {
        $line = substr($text, 0, strcspn($text, "\r\n"));
        for ($at = strpos($line, ','); $at !== false; $at = strpos($line, ',', $at + 1)) {
            $time = substr($line, $at + 1, strcspn($line, ',', $at + 1));
            $date = Text::date($time);
            if ($date !== null) {
                $rest = substr($text, $at + 1 + \strlen($time) + 1);
                return new Note(substr($text, 0, $at), $date, str_replace("\r", '', $rest));
            }
        }
        return new Note('', null, str_replace("\r", '', $text));
    }

    /**
     * Has the server create a document from an import file, which is removed then.
     *
     * @param list<FieldContent> $fields
     * @param \Closure(string): string $ask gives id and version for the path of the file as the server reaches it
     */
    private function import(string $channel, string $archive, string $title, array $fields, \Closure $ask): DocumentName
    {
        [$types, $ids, $contents] = [[], [], ''];
        foreach ($fields as $field) {
            $types[] = $field->type;
            $ids[] = $field->id;
            $contents .= "@FIELD,$field->id\r\n" . Text::content($field) . "\r\n";
        }
        $lines = [Text::line($channel, 'the channel'), Text::line($archive, 'the archive'), Text::title($title)];
        $file = 'client-' . bin2hex(random_bytes(16)) . '.import';
        $path = $this->blobDirectory() . "/$file";
        $query = $this->access->query();
        Raw\Owned::keepForRemoval($path);
        try {
            $written = $query->CreateImportFile($path, ...$lines, ...[implode(',', $types), implode(',', $ids), $contents]);
            if ($written < 0) {
                $this->access->checkFile('the import file cannot be written');
            }
            [$id, $version] = explode(',', $ask("$query->strBlobPathRemote\\$file"), 2) + ['', ''];
        } finally {
            Raw\Owned::removeFile($path);
        }
        return new DocumentName($channel, $archive, $id, $version);
    }

    /** @return array{string, string, string, string} as the methods of the component take it */
    private function key(DocumentName $name): array
    {
        return [
            Text::request($name->channel, 'the channel'),
            Text::request($name->archive, 'the archive'),
            Text::request($name->id, 'the document'),
            Text::request($name->version, 'the version'),
        ];
    }
}
