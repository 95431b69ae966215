<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Paging;
use Portal\Administration\SessionLogs;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The log of a session, page by page, optionally of one kind of entries. */
final class LogPage implements Page
{
    private const SIZE = 200;

    public function answer(Request $request, Visit $visit): Response
    {
        $locale = $visit->h->locale;
        $logs = new SessionLogs($visit->settings, $locale->text('admin-hidden'));
        $kind = \in_array($request->text('kind'), SessionLogs::KINDS, true) ? $request->text('kind') : '';
        $paging = new Paging($request->number('page', 1, 1, 10000000), self::SIZE);
        $log = $logs->entries($request->text('name'), $kind, self::SIZE, $paging->first(...));
        return $visit->page('administration/log', $locale->text('admin-log'), $log + [
            'name' => $request->text('name'),
            'kind' => $kind,
            'kinds' => SessionLogs::KINDS,
            'paging' => $paging,
        ]);
    }
}
