<?php

declare(strict_types=1);

namespace Portal\Web;

use Portal\Users\Right;

/** An entry of routes.php. */
final class Route
{
    /** The field of a form that has the id of the user who was shown it: nobody else is shown what was typed into it. */
    public const BY = 'by';

    /**
     * @param list<string> $methods
     * @param class-string<Page> $page
     * @param list<string> $kept fields of its form that are shown again after a log-on, as Request::chosenFields takes them:
     *     what a user types, and never a password. The form has a field BY besides.
     * @param string $form path and fragment of the page that has the form, which is no other one than $path when it is ""
     */
    public function __construct(
        public readonly string $path,
        public readonly array $methods,
        public readonly string $page,
        public readonly Right $right,
        public readonly array $kept = [],
        public readonly string $form = '',
    ) {
    }
}
