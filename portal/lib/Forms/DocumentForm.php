<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\Archive;
use Oxaqrycln\Document;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Error;
use Oxaqrycln\FieldContent;
use Oxaqrycln\Mask;
use Oxaqrycln\Refused;
use Portal\Output\Html;
use Portal\Search\SearchRestriction;
use Portal\Web\DiskFull;
use Portal\Web\FailurePage;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The form of a new document or a new version: a title, the fields of a mask, and files. */
final class DocumentForm
{
    private const TEXT = 1;
    private const IMAGE = 2;
    private const FILE = 3;

    /** @var list<Mask> with fields */
    private readonly array $masks;
    private readonly ?MaskForm $form;
    private readonly string $title;
    private readonly SearchRestriction $restriction;
    /** @var array<string, int> */
    private readonly array $ids;
    /** @var array<string, string> values of the document by the names of its fields */
    private readonly array $stored;
    /** Text of what is wrong with the form, its detail, what to do, and the answer's status. */
    private string $problem = '';
    private string $detail = '';
    private string $help = '';
    private int $status = 200;
    /** Whether the archive may have stored the document although it has not said so. */
    private bool $isUncertain = false;

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
    }

    /**
     * Has the archive store what was sent, if anything has changed. Null when it was not stored; the page then says why.
     *
     * @param \Closure(string, list<FieldContent>): DocumentName $store takes title and fields
     */
    public function stored(\Closure $store): ?DocumentName
    {
        $files = $this->request->files('files');
        $this->check($files);
        if ($this->problem !== '') {
            return null;
        }
        $title = trim($this->title);
        if ($this->document !== null && self::isSame($title, trim($this->document->title))) {
            if ($files === [] && $this->texts() === []) {
                return $this->document->name;
            }
            $title = $this->document->title;
        }
        $uploads = new Uploads($this->visit->settings);
        try {
            return $store($title, [...$this->texts(), ...$this->placed($files, $uploads)]);
        } catch (Error | DiskFull $error) {
            $failure = FailurePage::failureOf($error);
            $this->fail("failure-$failure->kind", $failure->status, $failure->detail);
            // The others speak of a query.
            $hasHelp = !\in_array($failure->kind, ['refused', 'timed-out'], true);
            $this->help = $hasHelp ? "failure-$failure->kind-help" : '';
            $this->isUncertain = $error instanceof Error && !$error instanceof Refused && $error->request->wasSent;
            return null;
        } finally {
            $uploads->remove();
        }
    }

    public function page(string $heading): Response
    {
        $settings = $this->visit->settings;
        $path = $this->document === null ? '/create' : '/edit';
        $state = $this->document === null
            ? ['in' => "{$this->name->channel}/{$this->name->archive}"]
            : get_object_vars($this->name);
        return $this->visit->page('document-form', $heading, [
            'heading' => $heading,
            'name' => $this->name,
            'isNew' => $this->document === null,
            'path' => $path,
            'state' => $state,
            'masks' => $this->masks,
            'form' => $this->form,
            'documentTitle' => $this->title,
            'problem' => $this->problem,
            'detail' => $this->detail,
            'help' => $this->help,
            'isUncertain' => $this->isUncertain,
            'isChecked' => $this->status !== 200,
            'isKept' => $this->request->method() === 'GET' && $this->request->fields() !== [],
            'largest' => Uploads::largest($settings),
            'largestForm' => Uploads::largestForm(),
            'mostFiles' => Uploads::mostFiles(),
            'texts' => $this->scriptTexts(),
        ], $this->status);
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
        if (trim($this->title) === '') {
            $this->fail('title-needed', 422);
        } elseif (array_diff_key(array_column($this->form?->entries ?? [], null, 'key'), $this->request->fields()) !== []) {
            $this->fail('form-incomplete', 422);
        } elseif ($this->form !== null && !$this->form->isValid()) {
            $this->fail('mask-problem', 422);
        } elseif ($this->request->hasTooManyFiles()) {
            $this->fail('upload-count', 413);
        }
        foreach ($files as $file) {
            $problem = $file->problem();
            if ($problem === '' && filesize($file->path) > Uploads::largest($this->visit->settings)) {
                $problem = 'upload-large';
            }
            if ($problem !== '') {
                $this->fail($problem, $problem === 'upload-large' ? 413 : 422, $file->name);
                return;
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

    /**
     * @param list<UploadedFile> $files
     * @return list<FieldContent>
     */
    private function placed(array $files, Uploads $uploads): array
    {
        $settings = $this->visit->settings;
        $fields = [];
        foreach ($files as $file) {
            $type = $file->isImage() ? self::IMAGE : self::FILE;
            $first = $type === self::IMAGE ? $settings->imageField : $settings->fileField;
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

    private function fail(string $problem, int $status, string $detail = ''): void
    {
        [$this->problem, $this->status, $this->detail] = [$problem, $status, $detail];
    }

    /** @return array<string, string> what the script says */
    private function scriptTexts(): array
    {
        $keys = [
            'form-unknown',
            'upload-count',
            'upload-drop',
            'upload-failed',
            'upload-large',
            'upload-progress',
            'upload-remove',
            'upload-total',
        ];
        return array_combine($keys, array_map($this->visit->h->locale->text(...), $keys));
    }
}
