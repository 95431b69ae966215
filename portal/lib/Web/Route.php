<?php

declare(strict_types=1);

namespace Portal\Web;

use Portal\Users\Right;

/** An entry of routes.php. */
final class Route
{
    /**
     * @param list<string> $methods
     * @param class-string<Page> $page
     * @param list<string> $kept fields of its form that are shown again after a log-on, as Request::chosenFields takes them:
     *     what a user types, and never a password
     */
    public function __construct(
        public readonly string $path,
        public readonly array $methods,
        public readonly string $page,
        public readonly Right $right,
        public readonly array $kept = [],
    ) {
    }
}
