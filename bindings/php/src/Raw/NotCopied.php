<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/**
 * For classes whose objects hold what the library has opened, which belongs to one object of one process.
 *
 * @internal
 */
trait NotCopied
{
    public function __clone()
    {
        throw self::refusal('cloned: make another one');
    }

    public function __serialize(): array
    {
        throw self::refusal('serialized, for a session or a cache: keep the values that were read');
    }

    public function __unserialize(array $data): void
    {
        throw self::refusal('unserialized: make another one');
    }

    private static function refusal(string $what): BadArgument
    {
        return new BadArgument(static::class . " cannot be $what");
    }
}
