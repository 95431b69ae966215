<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Paging;
use Portal\Administration\SessionLogs;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The log files of sessions, the last changed one first. */
final class LogsPage implements Page
{
    private const SIZE = 50;

    public function answer(Request $request, Visit $visit): Response
    {
        $logs = new SessionLogs($visit->settings, '');
        $text = trim($request->text('q'));
        $files = $logs->isSetUp() ? $logs->files($text) : [];
        $paging = new Paging($request->number('page', 1, 1, 10000000), self::SIZE);
        return $visit->page('administration/logs', $visit->h->locale->text('admin-logs'), [
            'isSetUp' => $logs->isSetUp(),
            'files' => array_map(
                static fn(array $file): array => ['time' => new \DateTimeImmutable(date('Y-m-d H:i:s', $file['time']))] + $file,
                \array_slice($files, $paging->first(\count($files)), self::SIZE),
            ),
            'paging' => $paging,
            'text' => $text,
            'own' => $visit->session->logName() . '.log',
        ]);
    }
}
