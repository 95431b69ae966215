<?php

declare(strict_types=1);

namespace Portal\Administration;

/** An entry that affects what a user may do: the user's own, or that of one of the user's groups. */
final class Source
{
    /** @param array{}|array{int, int, int} $numbers of edit rights: new, edit, delete */
    public function __construct(
        /** of the user or group that has the entry */
        public readonly int $id,
        public readonly string $name,
        public readonly bool $isOwn,
        /** the right's number, the channel or the archive */
        public readonly string $entry,
        /** what it does: the text "admin-effect-EFFECT" of the locale */
        public readonly string $effect,
        public readonly array $numbers = [],
    ) {
    }
}
