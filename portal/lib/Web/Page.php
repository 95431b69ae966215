<?php

declare(strict_types=1);

namespace Portal\Web;

/** A page; a new object answers each request. */
interface Page
{
    /** Raises Failure, or an error of the archive, which become pages of their own. */
    public function answer(Request $request, Visit $visit): Response;
}
