<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Documents\DocumentRequest;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Deletes the notes of a document, after a question. */
final class DeleteNotesPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $document = $asked->read($visit);
        if (!$asked->mayAnnotate($visit)) {
            throw Failure::forbidden();
        }
        // Notes that somebody has written since the question are not deleted unseen.
        $seen = hash('sha256', serialize($document->notes));
        $isSeen = hash_equals($seen, $request->field('seen'));
        if ($request->method() === 'POST' && $isSeen) {
            $visit->archive()->deleteNotes($asked->name);
            return Response::redirect(Html::plainUrl('/document', $asked->with(), 'notes'));
        }
        $hasChanged = $request->method() === 'POST';
        return $visit->page('delete', $visit->h->locale->text('delete-notes'), [
            'heading' => 'delete-notes',
            'action' => '/document/notes/delete',
            'asked' => $asked,
            'title' => $document->title,
            'version' => $document->name->version,
            'noteCount' => \count($document->notes),
            'seen' => $seen,
            'choices' => [],
            'problem' => $hasChanged ? 'notes-changed' : '',
        ], $hasChanged ? 409 : 200);
    }
}
