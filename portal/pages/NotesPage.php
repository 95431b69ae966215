<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\BadArgument;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Adds a note to a document. A note that cannot be stored stays in its field. */
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
        if (trim($note) === '') {
            return DocumentPage::show($request, $visit, $note, 'note-empty', 422);
        }
        try {
            $visit->archive()->addNote($asked->name, $note);
        } catch (BadArgument) {
            return DocumentPage::show($request, $visit, $note, 'note-argument', 422);
        } catch (Refused) {
            return DocumentPage::show($request, $visit, $note, 'note-refused', 422);
        }
        return Response::redirect(Html::plainUrl('/document', $asked->with(), 'notes'));
    }
}
