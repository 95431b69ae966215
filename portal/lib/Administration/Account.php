<?php

declare(strict_types=1);

namespace Portal\Administration;

/** A row of the users: a user or a group. */
final class Account
{
    public function __construct(
        public readonly int $id,
        public readonly string $name,
        public readonly bool $hasPassword,
        public readonly bool $hasMembers,
        /** whether the password must be changed; null for "not told", as groups have it */
        public readonly ?bool $mustChange,
        /** of the archive system; "" for none */
        public readonly string $archiveUser,
    ) {
    }

    /** A row with members, or one that was never a user: a new group has no members yet. */
    public function isGroup(): bool
    {
        return $this->hasMembers || (!$this->hasPassword && $this->mustChange === null);
    }

    public function isDisabled(): bool
    {
        return !$this->hasPassword && !$this->isGroup();
    }

    /** "user", "disabled" or "group" */
    public function kind(): string
    {
        return $this->isGroup() ? 'group' : ($this->isDisabled() ? 'disabled' : 'user');
    }

    /** A checksum of what a form shows of the account, by which an outdated form is recognised. */
    public function stamp(): string
    {
        $shown = [$this->id, $this->name, $this->hasPassword, $this->mustChange, $this->archiveUser];
        return substr(hash('sha256', json_encode($shown, JSON_THROW_ON_ERROR | JSON_INVALID_UTF8_SUBSTITUTE)), 0, 16);
    }
}
