<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Documents\ChangeRights;
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
        [$channel, $name] = SearchScope::parts($request->text('in'));
        $visit->requireArchive($channel, $name);
        (new ChangeRights($visit, $channel, $name))->mayCreate() || throw Failure::forbidden();
        $archive = $visit->archive();
        $form = new DocumentForm($request, $visit, $archive, new DocumentName($channel, $name, ''));
        return $form->answer(
            $visit->h->locale->text('create'),
            static fn(string $title, array $fields): DocumentName => $archive->create($channel, $name, $title, $fields),
        );
    }
}
