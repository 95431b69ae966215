<?php

// What bench/portal compares the pages of the portal with: an empty page with the portal's session, token and headers. With a
// query "q" it also makes the requests of a hit list to the component, and reads as many hits as "size" says.

declare(strict_types=1);

use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Session;
use Portal\Web\Settings;

require \dirname(__DIR__) . '/portal/bootstrap.php';

/** The connection, the rights of the user, the archives that there are, the search, its rows, and the conditions for them. */
function ask(Settings $settings, Session $session, Request $request): int
{
    $archive = new Oxaqrycln\Archive(
        hosts: $settings->hosts,
        user: $settings->user,
        password: $settings->password,
        timeout: $settings->timeout,
        session: $session->logName(),
        logDir: $settings->logDir,
        blobLocal: $settings->blobLocal,
        blobRemote: $settings->blobRemote,
        database: $settings->database,
        webUser: (string) $session->get('name'),
        webUserAddress: $request->address(),
    );
    $users = $archive->users();
    $user = (int) $session->get('user');
    $users->find((string) $session->get('name'));
    $users->mustChangePassword($user);
    $users->accountOf($user);
    $rights = $users->folderRights($user);
    foreach ($archive->archives() as $channel) {
        foreach ($channel->archives as $each) {
            $users->searchRights($user, $channel->name, $each->name);
        }
    }
    $hits = $archive->search($request->text('q'), max: $settings->searchLimit, queryMax: 0, folderRights: $rights);
    $hits->columns();
    $shown = $hits->slice(0, $request->number('size', 20, 1, 1000));
    $found = [];
    foreach ($shown as $hit) {
        $found["$hit->channel/$hit->archive"] ??= $users->documentConditions($user, $hit->channel, $hit->archive);
    }
    $users->rights($user);
    return \count($shown);
}

$request = Request::ofBrowser();
$settings = Settings::read((string) ($_SERVER['PORTAL_SETTINGS'] ?? getenv('PORTAL_SETTINGS')));
$session = new Session($request, $settings);
$text = $request->text('q') === '' ? '' : ask($settings, $session, $request) . ' hits';
(new Response("<!DOCTYPE html><title>{$session->token()}</title>$text", 200, ['Content-Type' => 'text/html; charset=utf-8']))->send();
