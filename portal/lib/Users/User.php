<?php

declare(strict_types=1);

namespace Portal\Users;

use Oxaqrycln\DocumentCondition;
use Oxaqrycln\EditRight;
use Oxaqrycln\Users;
use Portal\Search\SearchRestriction;

/** The user who is logged on, with the rights that he has at this moment. */
final class User
{
    private const ADMINISTRATOR = 1;
    /** the most unusable entries that a line of the log names */
    private const LOGGED = 5;

    /** @var list<int>|null */
    private ?array $rights = null;
    private ?FolderRights $folders = null;
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

    /** Whether the database still has the user under his name: it may give the ID of a removed user to a new one. */
    public function exists(): bool
    {
        return $this->users->find($this->name) === $this->id;
    }

    public function folders(): FolderRights
    {
        return $this->folders ??= $this->readFolders();
    }

    /**
     * Whether the rights name the archive or its whole channel. A server may take "INVOICES" for Invoices: names that come from
     * a browser are checked by Visit::requireArchive.
     */
    public function maySee(string $channel, string $archive): bool
    {
        return $this->folders()->maySee($channel, $archive);
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

    /** For an archive that the user may see. */
    public function searchRestriction(string $channel, string $archive): SearchRestriction
    {
        return new SearchRestriction($this->users->searchRights($this->id, $channel, $archive), $this->fields);
    }

    /** @return list<DocumentCondition> by which documents of the archive are shown to him */
    public function documentConditions(string $channel, string $archive): array
    {
        return $this->users->documentConditions($this->id, $channel, $archive);
    }

    /** @param \Closure(EditRight): bool $allows */
    private function hasRight(string $channel, string $archive, \Closure $allows): bool
    {
        $this->editRights ??= $this->users->editRights($this->id);
        foreach ($this->editRights as $right) {
            $isMeant = \in_array($right->archive, [FolderRights::reference($channel, $archive), $archive], true);
            if ($isMeant && $allows($right)) {
                return $this->maySee($channel, $archive);
            }
        }
        return false;
    }

    private function readFolders(): FolderRights
    {
        [$channels, $archives] = [$this->users->channels($this->id), $this->users->archives($this->id)];
        $unusable = [
            ...array_filter($channels, static fn(string $entry): bool => $entry !== '' && !FolderRights::isChannel($entry)),
            ...array_filter($archives, static fn(string $entry): bool => $entry !== '' && !FolderRights::isArchive($entry)),
        ];
        if ($unusable !== []) {
            $shown = json_encode(\array_slice($unusable, 0, self::LOGGED), JSON_UNESCAPED_UNICODE | JSON_INVALID_UTF8_SUBSTITUTE);
            error_log("portal: user $this->id has " . \count($unusable) . " rights that no search can be restricted to: $shown");
        }
        return new FolderRights($channels, $archives);
    }
}
