<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\BadArgument;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Forms\OneTimeForm;
use Portal\Forms\Outcome;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Adds a note to a document, once. A note that cannot be stored stays in its field. */
final class NotesPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $asked->check($visit);
        if (!$asked->mayAnnotate($visit)) {
            throw Failure::forbidden();
        }
        $note = $request->field('note');
        if ($request->method() === 'GET') {
            return DocumentPage::show($request, $visit, $note);  // the form again, after a log-on
        }
        if (trim($note) === '') {
            return DocumentPage::show($request, $visit, $note, 'note-empty', 422);
        }
        try {
            $outcomes = OneTimeForm::sent($request, $visit)->carryOut(static function () use ($visit, $asked, $note): \Generator {
                $visit->archive()->addNote($asked->name, $note);
                yield new Outcome();
            });
        } catch (BadArgument) {
            return DocumentPage::show($request, $visit, $note, 'note-argument', 422);
        } catch (Refused) {
            return DocumentPage::show($request, $visit, $note, 'note-refused', 422);
        }
        return $outcomes === []
            ? DocumentPage::show($request, $visit, $note, 'note-unknown', 409)
            : Response::redirect(Html::plainUrl('/document', $asked->with(), 'notes'));
    }
}
