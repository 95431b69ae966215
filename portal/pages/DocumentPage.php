<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Documents\DocumentRequest;
use Portal\Documents\DocumentView;
use Portal\Forms\OneTimeForm;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * A document: all its texts, or a segment ("segment", or "page" for an image), or its properties ("view"), each under a URL
 * of its own; "view=print" is the whole document as it is printed.
 */
final class DocumentPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        return self::show($request, $visit, $request->field('note'));
    }

    /**
     * @param string $note typed before and not stored
     * @param string $problem key of a text about it; "" for none
     */
    public static function show(
        Request $request,
        Visit $visit,
        string $note = '',
        string $problem = '',
        int $status = 200,
    ): Response {
        $asked = DocumentRequest::of($request);
        [$document, $refusal] = $asked->readMarked($visit);
        $view = new DocumentView($asked, $document, $request);
        $rights = $asked->changeRights($visit);
        return $visit->page($view->tab === 'print' ? 'document-print' : 'document', $document->title, [
            'asked' => $asked,
            'document' => $document,
            'view' => $view,
            'refusal' => $refusal,
            'properties' => $view->tab === 'properties' ? $rights->properties() : null,
            'end' => \in_array($request->text('end'), ['first', 'last'], true) ? $request->text('end') : '',
            'mayAnnotate' => $asked->mayAnnotate($visit),
            'mayEdit' => $view->tab !== 'print' && $rights->mayEdit(),
            'mayDelete' => $view->tab !== 'print' && $rights->mayDelete(),
            'note' => $note,
            'problem' => $problem,
            'by' => $visit->knownUser()->id,
            'number' => OneTimeForm::newNumber(),
        ], $status);
    }
}
