<?php

declare(strict_types=1);

namespace Portal\Administration;

/** A change that is not made, for a reason that the page of its form shows: the text "admin-refused-KIND" of the locale. */
final class Refusal extends \RuntimeException
{
    /** @param string $value what the text names; "" for nothing */
    public function __construct(
        public readonly string $kind,
        public readonly string $value = '',
        public readonly int $status = 422,
    ) {
        parent::__construct($kind);
    }
}
