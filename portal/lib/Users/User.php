<?php

declare(strict_types=1);

namespace Portal\Users;

use Oxaqrycln\EditRight;
use Oxaqrycln\Users;
use Portal\Search\SearchRestriction;

/** The user who is logged on, with the rights that he has at this moment. */
final class User
{
    private const ADMINISTRATOR = 1;

    /** @var list<int>|null */
    private ?array $rights = null;
    private ?string $folders = null;
    /** @var list<EditRight>|null */
    private ?array $editRights = null;

    /** @param array<int|string, string> $fields names of the archive's fields by id */
    public function __construct(
        private readonly Users $users,
        public readonly int $id,
        public readonly string $name,
        private readonly array $fields = [],
    ) {
    }

    public function isAdministrator(): bool
    {
        return $this->hasGeneralRight(self::ADMINISTRATOR);
    }

    public function hasGeneralRight(int $right): bool
    {
        return \in_array($right, $this->rights ??= $this->users->rights($this->id), true);
    }

    public function mustChangePassword(): bool
    {
        return $this->users->mustChangePassword($this->id);
    }

    /** What a search is restricted to; "" when he may see nothing. */
    public function folderRights(): string
    {
        return $this->folders ??= $this->users->folderRights($this->id);
    }

    /**
     * Whether the rights name the archive or its whole channel. A server may take "INVOICES" for Invoices: names that come from
     * a browser are checked by Visit::requireArchive.
     */
    public function maySee(string $channel, string $archive): bool
    {
        $folders = explode(';', $this->folderRights());
        return \in_array("$(#$channel)", $folders, true) || \in_array("$(#$channel)\\$archive", $folders, true);
    }

    public function mayCreate(string $channel, string $archive): bool
    {
        return $this->hasRight($channel, $archive, static fn(EditRight $right): bool => $right->canCreate);
    }

    public function mayEdit(string $channel, string $archive): bool
    {
        return $this->hasRight($channel, $archive, static fn(EditRight $right): bool => $right->canEdit);
    }

    public function mayDelete(string $channel, string $archive): bool
    {
        return $this->hasRight($channel, $archive, static fn(EditRight $right): bool => $right->canDelete);
    }

    /** Of an archive that he may see. */
    public function searchRestriction(string $channel, string $archive): SearchRestriction
    {
        return new SearchRestriction($this->users->searchRights($this->id, $channel, $archive), $this->fields);
    }

    /** @param \Closure(EditRight): bool $allows */
    private function hasRight(string $channel, string $archive, \Closure $allows): bool
    {
        $this->editRights ??= $this->users->editRights($this->id);
        foreach ($this->editRights as $right) {
            if (\in_array($right->archive, ["$(#$channel)\\$archive", $archive], true) && $allows($right)) {
                return $this->maySee($channel, $archive);
            }
        }
        return false;
    }
}
