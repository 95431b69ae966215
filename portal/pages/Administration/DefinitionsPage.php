<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\DatabasePage;
use Portal\Administration\Definitions;
use Portal\Administration\UserDatabase;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The definitions of document rights and search rights, and who has them. */
final class DefinitionsPage extends DatabasePage
{
    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        $definitions = new Definitions($database);
        return $visit->page('administration/definitions', $visit->h->locale->text('admin-definitions'), [
            'documents' => $definitions->ofDocuments(),
            'searches' => $definitions->ofSearches(),
        ]);
    }
}
