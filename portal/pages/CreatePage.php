<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Forms\DocumentForm;
use Portal\Search\SearchScope;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Makes a document in an archive where the user and the archive allow it: texts by a mask, and files. */
final class CreatePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        [$channel, $name] = SearchScope::parts($request->text('in'));
        $visit->requireArchive($channel, $name);
        $archive = $visit->archive();
        if (!$user->mayCreate($channel, $name) || !$archive->properties($channel, $name)->canCreate) {
            throw Failure::forbidden();
        }
        $form = new DocumentForm($request, $visit, $archive, new DocumentName($channel, $name, ''));
        return $form->answer(
            $visit->h->locale->text('create'),
            static fn(string $title, array $fields): DocumentName => $archive->create($channel, $name, $title, $fields),
        );
    }
}
