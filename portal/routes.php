<?php

// Every page: its path, the methods it answers, its class, and who may use it. A path without an entry is "not found",
// and every entry has a right.

declare(strict_types=1);

use Portal\Pages;
use Portal\Pages\Administration;
use Portal\Users\Right;
use Portal\Web\Route;

return [
    new Route('/', ['GET'], Pages\SearchPage::class, Right::User),
    new Route('/log-on', ['GET', 'POST'], Pages\LogOnPage::class, Right::Anyone, ['name', 'to', 'kept-*']),
    new Route('/log-off', ['POST'], Pages\LogOffPage::class, Right::Anyone),
    new Route('/password', ['GET', 'POST'], Pages\PasswordPage::class, Right::NewPassword),
    new Route('/hits', ['GET'], Pages\HitsPage::class, Right::User),
    new Route('/download', ['GET'], Pages\DownloadPage::class, Right::User),
    new Route('/keys', ['GET', 'POST'], Pages\KeysPage::class, Right::User),
    new Route('/list-view', ['POST'], Pages\ListViewPage::class, Right::User),
    new Route('/preview', ['GET'], Pages\PreviewPage::class, Right::User),
    new Route('/selection', ['POST'], Pages\SelectionPage::class, Right::User),
    new Route('/document', ['GET'], Pages\DocumentPage::class, Right::User, ['note']),
    new Route('/document/delete', ['GET', 'POST'], Pages\DeletePage::class, Right::User),
    new Route('/document/neighbour', ['GET'], Pages\NeighbourPage::class, Right::User),
    new Route('/document/notes', ['POST'], Pages\NotesPage::class, Right::User, ['note'], '/document#notes'),
    new Route('/document/notes/delete', ['GET', 'POST'], Pages\DeleteNotesPage::class, Right::User),
    new Route('/image', ['GET'], Pages\ImagePage::class, Right::User),
    new Route('/file', ['GET'], Pages\FilePage::class, Right::User),
    new Route('/administration', ['GET'], Administration\AccountsPage::class, Right::Administrator),
    new Route('/administration/add', ['GET', 'POST'], Administration\AddPage::class, Right::Administrator),
    new Route('/administration/account', ['GET', 'POST'], Administration\AccountPage::class, Right::Administrator),
    new Route('/administration/remove', ['GET', 'POST'], Administration\RemovePage::class, Right::Administrator),
    new Route('/administration/why', ['GET'], Administration\WhyPage::class, Right::Administrator),
    new Route('/administration/definitions', ['GET'], Administration\DefinitionsPage::class, Right::Administrator),
    new Route('/administration/servers', ['GET'], Administration\ServersPage::class, Right::Administrator),
    new Route('/administration/logs', ['GET'], Administration\LogsPage::class, Right::Administrator),
    new Route('/administration/log', ['GET'], Administration\LogPage::class, Right::Administrator),
    new Route('/outline', ['GET'], Pages\OutlinePage::class, Right::User),
    new Route('/create', ['GET', 'POST'], Pages\CreatePage::class, Right::User, ['title', 'as', 'f*']),
    new Route('/edit', ['GET', 'POST'], Pages\EditPage::class, Right::User, ['title', 'f*']),
];
