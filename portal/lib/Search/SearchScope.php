<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Archive;
use Oxaqrycln\ArchiveEntry;
use Oxaqrycln\Channel;
use Oxaqrycln\SearchRights;
use Portal\Users\FolderRights;
use Portal\Users\User;
use Portal\Web\Failure;

/**
 * The archives of a search, and how the user's search rights restrict it. One request has one query for all of its archives, so
 * a search of all of them leaves out those with other search rights than the rest.
 */
final class SearchScope
{
    /** @param list<string> $leftOut "channel/archive" */
    private function __construct(
        public readonly string $folderRights,
        public readonly SearchRestriction $restriction,
        public readonly array $leftOut = [],
    ) {
    }

    /** Raises Failure for an archive that the user may not see. */
    public static function of(Archive $archive, User $user, string $place): self
    {
        if ($place === '') {
            return self::ofAll($archive, $user);
        }
        [$channel, $name] = self::parts($place);
        // The server takes "INVOICES" for Invoices, whose search rights have that name alone.
        if (!$user->maySee($channel, $name) || !\in_array($place, self::places(self::visible($archive, $user)), true)) {
            throw Failure::noDocument();
        }
        return new self(self::reference($channel, $name), $user->searchRestriction($channel, $name));
    }

    /** @return array{string, string} channel and archive of "channel/archive" */
    public static function parts(string $place): array
    {
        return explode('/', $place, 2) + ['', ''];
    }

    /** @return list<Channel> with those archives that the user may see */
    public static function visible(Archive $archive, User $user): array
    {
        $visible = [];
        foreach ($user->folders()->isEmpty() ? [] : $archive->archives() as $channel) {
            $maySee = fn(ArchiveEntry $each): bool => $user->maySee($channel->name, $each->name);
            $archives = array_values(array_filter($channel->archives, $maySee));
            if ($archives !== []) {
                $visible[] = new Channel($channel->name, $channel->description, $archives);
            }
        }
        return $visible;
    }

    /**
     * @param list<Channel> $channels
     * @return list<string> their archives, "channel/archive"
     */
    public static function places(array $channels): array
    {
        $places = [];
        foreach ($channels as $channel) {
            foreach ($channel->archives as $each) {
                $places[] = "$channel->name/$each->name";
            }
        }
        return $places;
    }

    private static function ofAll(Archive $archive, User $user): self
    {
        $visible = self::visible($archive, $user);
        $groups = [];
        $restrictions = [];
        foreach ($visible as $channel) {
            foreach ($channel->archives as $each) {
                $restriction = $user->searchRestriction($channel->name, $each->name);
                $groups[$restriction->key()][] = [$channel->name, $each->name];
                $restrictions[$restriction->key()] ??= $restriction;
            }
        }
        if (\count($groups) <= 1) {
            $only = reset($restrictions) ?: new SearchRestriction(new SearchRights([], [], []), []);
            return new self(self::folderRightsOf($visible, $user), $only);
        }
        uasort($groups, static fn(array $one, array $other): int => \count($other) <=> \count($one));
        $chosen = isset($groups['']) ? '' : array_key_first($groups);
        $isSearched = static fn(array $each): bool => self::isReferable($each[1]);
        $searched = array_filter($groups[$chosen], $isSearched);
        $others = array_merge(
            array_filter($groups[$chosen], static fn(array $each): bool => !$isSearched($each)),
            ...array_values(array_diff_key($groups, [$chosen => true])),
        );
        return new self(
            implode('', array_map(static fn(array $each): string => self::reference(...$each), $searched)),
            $restrictions[$chosen],
            array_map(static fn(array $each): string => implode('/', $each), $others),
        );
    }

    /**
     * The folder rights of a search in all archives of the channels, by the names that the servers have for them: they would
     * take "MAIL" in a right for Mail, whose search rights have that name alone.
     *
     * @param list<Channel> $channels as visible() gives them
     */
    private static function folderRightsOf(array $channels, User $user): string
    {
        $expression = '';
        foreach ($channels as $channel) {
            if ($user->folders()->isWhole($channel->name)) {
                $expression .= "$(#$channel->name);";
                continue;
            }
            foreach ($channel->archives as $each) {
                $expression .= self::reference($channel->name, $each->name);
            }
        }
        return $expression;
    }

    /** Raises Failure for a name that would change the expression. */
    private static function reference(string $channel, string $archive): string
    {
        if (!FolderRights::isChannel($channel) || !self::isReferable($archive)) {
            throw Failure::noDocument();
        }
        return FolderRights::reference($channel, $archive) . ';';
    }

    /** Whether folder rights can name the archive of that name alone. */
    private static function isReferable(string $archive): bool
    {
        return $archive !== '' && $archive !== '*' && !str_contains($archive, ';');
    }
}
