<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A form for the fields of a document. */
final class Mask
{
    public function __construct(
        public readonly string $name,
        /** @var list<MaskField> */
        public readonly array $fields,
    ) {
    }
}
