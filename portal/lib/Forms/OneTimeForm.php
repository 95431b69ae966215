<?php

declare(strict_types=1);

namespace Portal\Forms;

use Portal\Web\DiskFull;
use Portal\Web\Failure;
use Portal\Web\Request;
use Portal\Web\StateFile;
use Portal\Web\Visit;

/**
 * A form that is carried out once, however often it is sent: by a double click, a reload, or again because the answer was
 * lost. Each form that is shown has a number of its own in the field FIELD.
 */
final class OneTimeForm
{
    public const FIELD = 'number';
    /** forms of a user whose outcomes are remembered */
    private const KEPT = 20;

    private readonly StateFile $file;
    /** Locked while the form is carried out. A user has several locks, so that forms rarely wait for each other. */
    private readonly StateFile $turn;
    private readonly string $key;

    /**
     * Raises Failure for an ID that no form can have.
     *
     * @param string $id number and fingerprint of the form
     */
    public function __construct(Visit $visit, public readonly string $id)
    {
        preg_match('/^[0-9a-f]{16}-[0-9a-f]{16}$/D', $id) || throw new Failure('form', 403);
        $files = $visit->files($visit->knownUser()->id);
        $this->file = $files->forms();
        $this->turn = $files->turn($id[0]);
        $this->key = "form $id";
    }

    /** A form with the same number but other texts or files is another form, so that nothing that was typed is lost. */
    public static function sent(Request $request, Visit $visit): self
    {
        $parts = [array_diff_key($request->fields(), ['token' => true])];
        foreach ($request->files('files') as $file) {
            $parts[] = [$file->name, $file->error, (int) @filesize($file->path)];
        }
        return new self($visit, $request->field(self::FIELD) . '-' . substr(hash('sha256', serialize($parts)), 0, 16));
    }

    public static function newNumber(): string
    {
        return bin2hex(random_bytes(8));
    }

    /**
     * Carries the form out, unless that was done before; waits while another request does it. The outcomes describe what was
     * carried out then or now. A form that had no effect at all may be sent again.
     *
     * @param \Closure(): iterable<Outcome> $work gives each outcome as soon as it is known
     * @return list<Outcome> none when the work broke off before
     */
    public function carryOut(\Closure $work): array
    {
        return $this->turn->alone(function () use ($work): array {
            $before = $this->outcomes();
            if ($before !== null) {
                return $before;
            }
            $this->remember([]);
            $outcomes = [];
            try {
                foreach ($work() as $outcome) {
                    $outcomes[] = $outcome;
                    $outcome->isWithoutEffect() || $this->rememberIfPossible($outcomes);
                }
            } catch (\Throwable $error) {
                Outcome::isOpen($error) || $this->forgetWithoutEffect($outcomes);
                throw $error;
            }
            $this->rememberIfPossible($outcomes);
            $this->forgetWithoutEffect($outcomes);
            return $outcomes;
        });
    }

    /** @return list<Outcome>|null null for a form that was not carried out, or long ago */
    public function outcomes(): ?array
    {
        $outcomes = $this->file->read()[$this->key] ?? null;
        return $outcomes === null ? null : array_map(static fn(array $each): Outcome => new Outcome(...$each), $outcomes);
    }

    /** @param list<Outcome> $outcomes */
    private function remember(array $outcomes): void
    {
        $this->file->change(fn(array $content): array =>
            \array_slice([$this->key => array_map('get_object_vars', $outcomes)] + $content, 0, self::KEPT));
    }

    /** @param list<Outcome> $outcomes of work that cannot be undone: the user is told of them in any case */
    private function rememberIfPossible(array $outcomes): void
    {
        try {
            $this->remember($outcomes);
        } catch (DiskFull $error) {
            error_log("portal: $error");
        }
    }

    /** @param list<Outcome> $outcomes */
    private function forgetWithoutEffect(array $outcomes): void
    {
        foreach ($outcomes as $outcome) {
            if (!$outcome->isWithoutEffect()) {
                return;
            }
        }
        $this->file->change(fn(array $content): array => array_diff_key($content, [$this->key => true]));
    }
}
