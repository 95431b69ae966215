<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Users\FolderRights;
use Portal\Users\User;

/** Why a user may or may not do something: the result of the same checks as in the pages, and the entries behind it. */
final class Explanation
{
    public const KINDS = ['general', 'see', 'edit', 'restrictions'];

    /**
     * @param array<string, bool> $answers what was found, by the text "admin-answer-KEY-yes" or "-no"
     * @param list<Source> $sources
     * @param array<string, array{int, int, int}> $sums of edit rights, by archive entry
     */
    private function __construct(
        public readonly array $answers,
        public readonly array $sources,
        public readonly array $sums = [],
    ) {
    }

    /**
     * @param User $user as the pages see him, so that the answer is theirs
     * @param string $kind of KINDS
     * @param string $asked a number for "general", otherwise "channel/archive"
     */
    public static function of(UserDatabase $database, User $user, string $kind, string $asked): self
    {
        if ($kind === 'general') {
            return self::general($database, $user, Names::number($asked));
        }
        $parts = explode('/', $asked);
        if (\count($parts) !== 2 || $parts[0] === '' || $parts[1] === '') {
            throw new Refusal('place', $asked);
        }
        [$channel, $archive] = $parts;
        return match ($kind) {
            'see' => self::sight($database, $user, $channel, $archive),
            'edit' => self::edit($database, $user, $channel, $archive),
            'restrictions' => self::restrictions($database, $user, $channel, $archive),
        };
    }

    private static function general(UserDatabase $database, User $user, int $right): self
    {
        $sources = self::sources($database, $user->id, 'UserRights', 'RightID', static fn(int|string $held): string =>
            (int) $held === $right ? 'gives' : '');
        return new self(['general' => $user->hasGeneralRight($right)], $sources);
    }

    /** A channel is seen whole unless archives of it are listed. */
    private static function sight(UserDatabase $database, User $user, string $channel, string $archive): self
    {
        $channels = self::sources($database, $user->id, 'UserChannels', 'Channel', static fn(int|string $held): string =>
            $held !== $channel ? '' : (FolderRights::isChannel($channel) ? 'gives' : 'unusable'));
        $effect = static fn(int|string $held): string => match (true) {
            !FolderRights::concerns((string) $held, $channel) => '',
            FolderRights::lists((string) $held, $channel, $archive) => 'lists',
            FolderRights::isArchive((string) $held) => 'narrows',
            default => 'unusable',
        };
        $archives = self::sources($database, $user->id, 'UserArchives', 'Archive', $effect);
        $isListed = array_filter($archives, static fn(Source $source): bool => $source->effect === 'lists');
        return new self(
            ['see' => $user->maySee($channel, $archive)],
            [...$channels, ...($isListed === [] ? $archives : array_values($isListed))],
        );
    }

    /** The numbers of an entry's name are added up; an entry with the channel and one without it count apart. */
    private static function edit(UserDatabase $database, User $user, string $channel, string $archive): self
    {
        $rows = $database->rows(
            'SELECT Users.UserID, UserName, Archive, New, Edit, Del FROM Users, UserEditRights'
                . ' WHERE Users.UserID=UserEditRights.UserID AND Archive IN (?, ?)'
                . ' AND (Users.UserID=? OR Users.UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?))'
                . ' ORDER BY Archive, CASE WHEN Users.UserID=? THEN 0 ELSE 1 END, UserName, Users.UserID',
            [FolderRights::reference($channel, $archive), $archive, $user->id, $user->id, $user->id],
        );
        $sources = $sums = [];
        foreach ($rows as [$id, $name, $entry, $new, $edit, $delete]) {
            $numbers = [(int) $new, (int) $edit, (int) $delete];
            $effect = max($numbers) > 0 ? (min($numbers) < 0 ? 'both' : 'gives') : (min($numbers) < 0 ? 'takes' : 'nothing');
            $sources[] = new Source((int) $id, (string) $name, (int) $id === $user->id, (string) $entry, $effect, $numbers);
            $former = $sums[$entry] ?? [0, 0, 0];
            $sums[$entry] = array_map(static fn(int $sum, int $number): int => $sum + $number, $former, $numbers);
        }
        return new self([
            'see' => $user->maySee($channel, $archive),
            'create' => $user->mayCreate($channel, $archive),
            'edit' => $user->mayEdit($channel, $archive),
            'delete' => $user->mayDelete($channel, $archive),
        ], $sources, $sums);
    }

    private static function restrictions(UserDatabase $database, User $user, string $channel, string $archive): self
    {
        $definitions = new Definitions($database);
        $documents = $definitions->applying($user->id, 'document', $channel, $archive);
        $searches = $definitions->applying($user->id, 'search', $channel, $archive);
        return new self(
            [
                'restricted-documents' => $user->documentConditions($channel, $archive) !== [],
                'restricted-searches' => $user->searchRestriction($channel, $archive)->restricts(),
            ],
            [...$documents, ...$searches],
        );
    }

    /**
     * The entries of the user, then those of his groups.
     *
     * @param \Closure(int|string): string $effect of an entry; "" when it has none
     * @return list<Source>
     */
    private static function sources(UserDatabase $database, int $user, string $table, string $column, \Closure $effect): array
    {
        $rows = $database->rows(
            "SELECT Users.UserID, UserName, $column FROM Users, $table WHERE Users.UserID=$table.UserID"
                . ' AND (Users.UserID=? OR Users.UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?))'
                . " ORDER BY CASE WHEN Users.UserID=? THEN 0 ELSE 1 END, UserName, Users.UserID, $column",
            [$user, $user, $user],
        );
        $sources = [];
        foreach ($rows as [$id, $name, $entry]) {
            $does = $effect($entry ?? '');
            if ($does !== '') {
                $sources[] = new Source((int) $id, (string) $name, (int) $id === $user, (string) $entry, $does);
            }
        }
        return $sources;
    }
}
