<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Ends the session, or all sessions of the user. */
final class LogOffPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->user();
        if ($user !== null && $request->field('everywhere') !== '') {
            $visit->endEverywhere($user->id);
        }
        $visit->end();
        return Response::redirect('/log-on');
    }
}
