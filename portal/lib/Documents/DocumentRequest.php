<?php

declare(strict_types=1);

namespace Portal\Documents;

use Oxaqrycln\Document;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Refused;
use Portal\Search\SearchRestriction;
use Portal\Web\Failure;
use Portal\Web\Request;
use Portal\Web\Visit;

/** A document as a URL names it, with the way back to the hit list that it was opened from. */
final class DocumentRequest
{
    private function __construct(
        /** an empty version is the newest one */
        public readonly DocumentName $name,
        /** whose hits are marked */
        public readonly string $query,
        /** of the hit list; "" without one */
        public readonly string $back,
        /** position in the hit list, counted from 1, and its length, as the list was when the link was made; 0 without one */
        public readonly int $at,
        public readonly int $of,
    ) {
    }

    public static function of(Request $request): self
    {
        $back = $request->text('back');
        $isList = Request::isLocal($back) && Request::ofUrl($back)->path() === '/hits';
        return new self(
            new DocumentName(
                $request->text('channel'),
                $request->text('archive'),
                $request->text('id'),
                $request->text('version'),
            ),
            $request->text('q'),
            $isList ? $back : '',
            $isList ? $request->number('at', 0, 0, 999999999) : 0,
            $isList ? $request->number('of', 0, 0, 999999999) : 0,
        );
    }

    /** A document without a hit list, as another class names it. */
    public static function ofName(DocumentName $name): self
    {
        return new self($name, '', '', 0, 0);
    }

    /**
     * The query of its URL, with changes.
     *
     * @param array<string, string|int> $changes
     * @return array<string, string|int>
     */
    public function with(array $changes = []): array
    {
        return $changes + [
            'channel' => $this->name->channel,
            'archive' => $this->name->archive,
            'id' => $this->name->id,
            'version' => $this->name->version,
            'q' => $this->query,
            'back' => $this->back,
            'at' => $this->at === 0 ? '' : $this->at,
            'of' => $this->of === 0 ? '' : $this->of,
        ];
    }

    /** The URL of the hit list with the place of this document; "" without a list. */
    public function backUrl(): string
    {
        return $this->back === '' ? '' : strtok($this->back, '#') . ($this->at === 0 ? '' : "#hit-$this->at");
    }

    /**
     * The document, when the user may see it, with the hits of $query marked and without the fields that his search rights
     * hide. Raises Failure.
     */
    public function read(Visit $visit, string $query = ''): Document
    {
        return $this->restriction($visit)->shownOf($this->readWhole($visit, $query));
    }

    /**
     * The same with the hits of the URL's query marked, or with none when the server does not take that query.
     *
     * @return array{Document, string} and what the server says then; "" when it does take it
     */
    public function readMarked(Visit $visit): array
    {
        try {
            return [$this->read($visit, $this->query), ''];
        } catch (Failure $failure) {
            if ($this->query === '' || $failure->detail === '') {
                throw $failure;
            }
            return [$this->read($visit), $failure->detail];
        }
    }

    /** The same as read() to change it. The user may not when its title, which comes with each change, is hidden from him. */
    public function readToEdit(Visit $visit): Document
    {
        $document = $this->readWhole($visit);
        $restriction = $this->restriction($visit);
        return $restriction->showsTitle($document) ? $restriction->shownOf($document) : throw Failure::forbidden();
    }

    /** Raises Failure when the user may not see the document. Reads it only if that depends on what is in it. */
    public function check(Visit $visit): void
    {
        if ($this->conditions($visit) !== []) {
            $this->readWhole($visit);
        }
    }

    /**
     * The same for a file of the document.
     *
     * @param ?int $segment whose content it is; null for one made of several, which no hidden field may be part of
     * @param bool $hasTexts whether the texts of the fields are part of it as well
     */
    public function checkFile(Visit $visit, ?int $segment, bool $hasTexts = false): void
    {
        $this->check($visit);
        $restriction = $this->restriction($visit);
        foreach ($restriction->hidesFields() ? $this->readWhole($visit)->segments : [] as $each) {
            $isPart = $segment === null ? $hasTexts || $each->contentLength > 0 : $each->index === $segment;
            if ($isPart && $restriction->hides($each)) {
                throw Failure::noFile();
            }
        }
    }

    private function readWhole(Visit $visit, string $query = ''): Document
    {
        $conditions = $this->conditions($visit);
        try {
            $document = $visit->archive()->document($this->name, $query);
        } catch (Refused $refused) {
            // Where conditions withhold documents, the server's text would tell those from documents that do not exist. It is
            // kept for a query that may be what the server refuses; readMarked() reads the document without it.
            throw new Failure('no-document', 404, $conditions === [] || $query !== '' ? $refused->getMessage() : '');
        }
        if (!DocumentConditions::areMet($conditions, $document)) {
            throw Failure::noDocument();
        }
        return $document;
    }

    /** Whether the user may write and delete notes. */
    public function mayAnnotate(Visit $visit): bool
    {
        return $visit->knownUser()->mayEdit($this->name->channel, $this->name->archive);
    }

    public function changeRights(Visit $visit): ChangeRights
    {
        return new ChangeRights($visit, $this->name->channel, $this->name->archive);
    }

    private function restriction(Visit $visit): SearchRestriction
    {
        return $visit->knownUser()->searchRestriction($this->name->channel, $this->name->archive);
    }

    /**
     * Raises Failure for an archive that the user may not see: the name comes from the browser, so his rights decide, not
     * the hit list that he was shown.
     *
     * @return list<\Oxaqrycln\DocumentCondition>
     */
    private function conditions(Visit $visit): array
    {
        if ($this->name->id === '') {
            throw Failure::noDocument();
        }
        $visit->requireArchive($this->name->channel, $this->name->archive);
        return $visit->knownUser()->documentConditions($this->name->channel, $this->name->archive);
    }
}
