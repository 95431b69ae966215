<?php

declare(strict_types=1);

namespace Portal;

/** An entry of routes.php. */
final class Route
{
    /**
     * @param list<string> $methods
     * @param class-string<Page> $page
     */
    public function __construct(
        public readonly string $path,
        public readonly array $methods,
        public readonly string $page,
        public readonly Right $right,
    ) {
    }
}
