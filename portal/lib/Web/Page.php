<?php

declare(strict_types=1);

namespace Portal\Web;

/** A page of the portal. A new object answers each request. */
interface Page
{
    /** Raises Failure or an error of the archive; FailurePage makes a page of either. */
    public function answer(Request $request, Visit $visit): Response;
}
