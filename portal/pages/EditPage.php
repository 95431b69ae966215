<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Documents\DocumentRequest;
use Portal\Forms\DocumentForm;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Makes a new version of a document, where the user and the archive allow it: changed texts, and more files. */
final class EditPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $visit->requireArchive($asked->name->channel, $asked->name->archive);
        $asked->changeRights($visit)->mayEdit() || throw Failure::forbidden();
        $document = $asked->readToEdit($visit);
        $archive = $visit->archive();
        $form = new DocumentForm($request, $visit, $archive, $document->name, $document);
        // The archive refuses the change when another user has made a newer version in the meantime.
        return $form->answer(
            $visit->h->locale->text('edit'),
            static fn(string $title, array $fields): DocumentName => $archive->edit($document->name, $title, $fields),
        );
    }
}
