<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\Archive;
use Oxaqrycln\Document;
use Oxaqrycln\DocumentName;
use Oxaqrycln\FieldContent;
use Oxaqrycln\Mask;
use Portal\Output\Html;
use Portal\Search\SearchRestriction;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The form of a new document or a new version: a title, the fields of a mask, and files. */
final class DocumentForm
{
    private const TEXT = 1;

    /** @var list<Mask> with fields */
    private readonly array $masks;
    private readonly ?MaskForm $form;
    private readonly string $title;
    private readonly SearchRestriction $restriction;
    /** Whether several files become a document each. */
    private readonly bool $isEach;
    /** @var array<string, int> */
    private readonly array $ids;
    /** @var array<string, string> values of the document by the names of its fields */
    private readonly array $stored;
    /** Text of what is wrong with the form, its detail, what to do, and the answer's status. */
    private string $problem = '';
    private string $detail = '';
    private string $help = '';
    private int $status = 200;
    private string $titleProblem = '';
    /** @var list<array{string, string}> text and name */
    private array $fileProblems = [];
    /** Whether the archive may have stored the document although it has not said so. */
    private bool $isUncertain = false;
    /** @var list<Outcome> of the documents that were to be stored, when there were several */
    private array $outcomes = [];

    /** @param ?Document $document the one that is edited; null for a new one */
    public function __construct(
        private readonly Request $request,
        private readonly Visit $visit,
        private readonly Archive $archive,
        private readonly DocumentName $name,
        private readonly ?Document $document = null,
    ) {
        $this->masks = array_values(array_filter(
            $archive->masks($name->channel, $name->archive),
            static fn(Mask $mask): bool => $mask->fields !== [],
        ));
        $this->restriction = $visit->knownUser()->searchRestriction($name->channel, $name->archive);
        [$this->ids, $this->stored] = $this->fieldsOf($document);
        $given = $request->fields() === [] ? null : $request->fields();
        $mask = $this->chosenMask();
        $this->form = $mask === null ? null : MaskForm::forDocument($mask, $this->ids, $given, $this->stored);
        $this->title = $given === null ? (string) $document?->title : $request->field('title');
        $this->isEach = $document === null && $request->field('as') === 'each';
    }

    /**
     * Has the archive store what was sent, once, if anything has changed; goes on with the document then, or with the form,
     * which says why it was not stored.
     *
     * @param \Closure(string, list<FieldContent>): DocumentName $store takes title and fields
     */
    public function answer(string $heading, \Closure $store): Response
    {
        if ($this->request->method() === 'GET') {
            $made = $this->request->text('made');
            $this->outcomes = $made === '' ? [] : (new OneTimeForm($this->visit, $made))->outcomes() ?? [];
            return $this->page($heading);
        }
        $files = $this->request->files('files');
        $this->check($files);
        if ($this->problem !== '') {
            return $this->page($heading);
        }
        if ($this->document !== null && $files === [] && $this->texts() === [] && $this->storedTitle() === $this->document->title) {
            return Response::redirect(Html::plainUrl('/document', get_object_vars($this->document->name)));
        }
        $storage = new DocumentStorage($this->visit->settings, $this->restriction, $store, $this->texts(), $this->document);
        $isEach = $this->isEach && $files !== [];
        $form = OneTimeForm::sent($this->request, $this->visit);
        $this->outcomes = $form->carryOut(fn(): \Generator => $isEach
            ? $storage->each($this->storedTitle(), $files)
            : $storage->whole($this->storedTitle(), $files));
        return $this->result($heading, $form, $isEach ? \count($files) : 1);
    }

    /** @param int $count of the documents that were to be stored */
    private function result(string $heading, OneTimeForm $form, int $count): Response
    {
        $failed = array_values(array_filter($this->outcomes, static fn(Outcome $each): bool => $each->made === ''));
        $isWhole = \count($this->outcomes) === $count;
        if ($failed === [] && $isWhole) {
            return Response::redirect($count === 1 ? $this->outcomes[0]->made : Html::plainUrl('/create', [
                ...$this->state(),
                'made' => $form->id,
            ]));
        }
        $first = $failed[0] ?? new Outcome(problem: 'form-broken-off', status: 409, isUncertain: true);
        if ($count === 1) {
            $this->outcomes = [];
            $this->fail($first->problem, $first->status, $first->detail);
            [$this->help, $this->isUncertain] = [$first->help, $first->isUncertain];
        } else {
            $this->fail($isWhole ? 'made-in-part' : 'form-broken-off', $first->status);
            $this->isUncertain = !$isWhole;
        }
        return $this->page($heading);
    }

    private function page(string $heading): Response
    {
        $settings = $this->visit->settings;
        return $this->visit->page('document-form', $heading, [
            'heading' => $heading,
            'name' => $this->name,
            'isNew' => $this->document === null,
            'path' => $this->document === null ? '/create' : '/edit',
            'state' => $this->state(),
            'by' => $this->visit->knownUser()->id,
            'number' => OneTimeForm::newNumber(),
            'masks' => $this->masks,
            'form' => $this->form,
            'documentTitle' => $this->title,
            'isEach' => $this->isEach,
            'problem' => $this->problem,
            'detail' => $this->detail,
            'help' => $this->help,
            'titleProblem' => $this->titleProblem,
            'fileProblems' => $this->fileProblems,
            'isUncertain' => $this->isUncertain,
            'isChecked' => $this->status !== 200,
            'isKept' => $this->request->method() === 'GET' && $this->request->fields() !== [],
            'outcomes' => $this->outcomes,
            'left' => array_keys(array_filter($this->outcomes, static fn(Outcome $each): bool => $each->isWithoutEffect())),
            'largest' => Uploads::largest($settings),
            'largestForm' => Uploads::largestForm(),
            'mostFiles' => Uploads::mostFiles(),
            'texts' => $this->scriptTexts(),
        ], $this->status);
    }

    /** @return array<string, string> of the form's URL, besides the mask */
    private function state(): array
    {
        return $this->document === null
            ? ['in' => "{$this->name->channel}/{$this->name->archive}"]
            : get_object_vars($this->name);
    }

    /** The title to store: the document's own, when the form has only made it visible. */
    private function storedTitle(): string
    {
        $title = trim($this->title);
        $before = $this->document?->title;
        return $before !== null && self::isSame($title, trim($before)) ? $before : $title;
    }

    private function chosenMask(): ?Mask
    {
        foreach ($this->masks as $mask) {
            if ($mask->name === $this->request->text('mask')) {
                return $mask;
            }
        }
        return $this->masks[0] ?? null;
    }

    /** @return array{array<string, int>, array<string, string>} ids and texts of the fields by name */
    private function fieldsOf(?Document $document): array
    {
        [$ids, $texts] = [[], []];
        foreach ($this->visit->settings->fields as $id => $name) {
            if (!$this->restriction->isHidden((string) $id)) {
                $ids[strtolower($name)] = (int) $id;
            }
        }
        foreach ($document?->segments ?? [] as $segment) {
            if ($segment->type === self::TEXT) {
                $ids[strtolower($segment->name)] ??= $segment->fieldId;
            }
        }
        foreach ($document?->segments ?? [] as $segment) {
            $name = array_search($segment->fieldId, $ids, true);
            if ($segment->type === self::TEXT && $name !== false) {
                $text = $segment->text->text;
                $texts[$name] = isset($texts[$name]) ? "$texts[$name]\n$text" : $text;
            }
        }
        // A field without a text stays empty, whatever the mask's initial text says.
        return [$ids, $document === null ? [] : $texts + array_fill_keys(array_keys($ids), '')];
    }

    /** @param list<UploadedFile> $files */
    private function check(array $files): void
    {
        $this->checkFiles($files);
        $this->titleProblem = match (true) {
            trim($this->title) === '' => 'title-needed',
            ArchiveText::isStorable(trim($this->title)) => '',
            default => 'mask-characters',
        };
        if (array_diff_key(array_column($this->form?->entries ?? [], null, 'key'), $this->request->fields()) !== []) {
            $this->fail('form-incomplete', 422);
        } elseif ($this->titleProblem !== '' || ($this->form !== null && !$this->form->isValid())) {
            $this->fail('mask-problem', 422);
        } elseif ($this->fileProblems !== []) {
            $isLarge = \in_array('upload-large', array_column($this->fileProblems, 0), true);
            $this->fail('files-problem', $isLarge ? 413 : 422);
        } elseif ($this->request->hasTooManyFiles()) {
            $this->fail('upload-count', 413);
        }
    }

    /** @param list<UploadedFile> $files */
    private function checkFiles(array $files): void
    {
        foreach ($files as $file) {
            $problem = $file->problem();
            if ($problem === '' && filesize($file->path) > Uploads::largest($this->visit->settings)) {
                $problem = 'upload-large';
            }
            if ($problem !== '') {
                $this->fileProblems[] = [$problem, $file->name];
            }
        }
    }

    /** @return list<FieldContent> the values that differ from those that are stored */
    private function texts(): array
    {
        $texts = [];
        foreach ($this->form?->entries ?? [] as $entry) {
            $value = rtrim(str_replace("\r\n", "\n", $entry->value));
            $before = rtrim($this->stored[strtolower($entry->name)] ?? '');
            if (!self::isSame($value, $before)) {
                $texts[] = new FieldContent($this->ids[strtolower($entry->name)], str_replace("\n", "\r\n", $value));
            }
        }
        return $texts;
    }

    /** Whether a value is what a form shows of a stored one, which is then not to be changed. */
    private static function isSame(string $value, string $stored): bool
    {
        return $value === $stored || $value === Html::visible($stored);
    }

    private function fail(string $problem, int $status, string $detail = ''): void
    {
        [$this->problem, $this->status, $this->detail] = [$problem, $status, $detail];
    }

    /** @return array<string, string> what the script says */
    private function scriptTexts(): array
    {
        $keys = [
            'cancel',
            'upload-again',
            'upload-cancelled',
            'upload-count',
            'upload-drop',
            'upload-failed',
            'upload-large',
            'upload-progress',
            'upload-remove',
            'upload-total',
            'upload-unreadable',
        ];
        return array_combine($keys, array_map($this->visit->h->locale->text(...), $keys));
    }
}
