<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Oxaqrycln\Refused;
use Portal\DocumentForm;
use Portal\Failure;
use Portal\Html;
use Portal\Page;
use Portal\Request;
use Portal\Response;
use Portal\Visit;

/** Makes a new version of a document, where the user and the archive allow it: changed texts, and more files. */
final class EditPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        $name = new DocumentName(
            $request->text('channel'),
            $request->text('archive'),
            $request->text('id'),
            $request->text('version'),
        );
        if (!$user->maySee($name->channel, $name->archive)) {
            throw Failure::noDocument();
        }
        $archive = $visit->archive();
        if (!$user->mayEdit($name->channel, $name->archive) || !$archive->properties($name->channel, $name->archive)->canEdit) {
            throw Failure::forbidden();
        }
        try {
            $document = $archive->document($name);
        } catch (Refused $refused) {
            throw new Failure('no-document', 404, $refused->getMessage());
        }
        $form = new DocumentForm($request, $visit, $archive, $document->name, $document);
        // The archive refuses the change when another user has made a newer version in the meantime.
        $made = $request->method() === 'GET' ? null : $form->stored(
            fn(string $title, array $fields): DocumentName => $archive->edit($document->name, $title, $fields),
        );
        return $made === null
            ? $form->page($visit->h->locale->text('edit'))
            : Response::redirect(Html::plainUrl('/document', get_object_vars($made)));
    }
}
