<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Document;
use Portal\Documents\DocumentRequest;
use Portal\Forms\OneTimeForm;
use Portal\Forms\Outcome;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Deletes the notes of a document, after a confirmation. */
final class DeleteNotesPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        if ($request->method() === 'GET') {
            return $this->question($asked, $visit);
        }
        $seen = $request->field('seen');
        $outcomes = OneTimeForm::sent($request, $visit)->carryOut(static function () use ($asked, $visit, $seen): \Generator {
            $document = $asked->read($visit);
            $asked->mayAnnotate($visit) || throw Failure::forbidden();
            if (!hash_equals(self::stateOf($document), $seen)) {
                yield new Outcome(problem: 'notes-changed');
                return;
            }
            $visit->archive()->deleteNotes($asked->name);
            yield new Outcome();
        });
        return $outcomes !== [] && !$outcomes[0]->isWithoutEffect()
            ? Response::redirect(Html::plainUrl('/document', $asked->with(), 'notes'))
            : $this->question($asked, $visit, $outcomes[0]->problem ?? 'delete-unknown', 409);
    }

    /** A checksum of the notes, so that notes written since the confirmation was shown are not deleted unseen. */
    private static function stateOf(Document $document): string
    {
        return hash('sha256', serialize($document->notes));
    }

    private function question(DocumentRequest $asked, Visit $visit, string $problem = '', int $status = 200): Response
    {
        $document = $asked->read($visit);
        $asked->mayAnnotate($visit) || throw Failure::forbidden();
        return $visit->page('delete', $visit->h->locale->text('delete-notes'), [
            'heading' => 'delete-notes',
            'action' => '/document/notes/delete',
            'asked' => $asked,
            'title' => $document->title,
            'version' => $document->name->version,
            'noteCount' => \count($document->notes),
            'number' => OneTimeForm::newNumber(),
            'seen' => self::stateOf($document),
            'choices' => [],
            'problem' => $problem,
        ], $status);
    }
}
