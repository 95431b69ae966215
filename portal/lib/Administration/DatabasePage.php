<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** A page of the administration that works with the web user database itself, where the site is set up for it. */
abstract class DatabasePage implements Page
{
    final public function answer(Request $request, Visit $visit): Response
    {
        if (!UserDatabase::isSetUp($visit->settings)) {
            return $visit->page('administration/not-set-up', $visit->h->locale->text('admin-not-set-up'), [], 503);
        }
        return $this->answerWith($request, $visit, new UserDatabase($visit->settings, $visit->knownUser()->id));
    }

    abstract protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response;

    /** The ID of an account from a URL or form; 0 when it is not one. */
    final protected static function idOf(string $text): int
    {
        return preg_match('/^\d{1,9}$/D', $text) ? (int) $text : 0;
    }
}
