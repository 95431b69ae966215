<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Archive;
use Oxaqrycln\ArchiveEntry;
use Oxaqrycln\Channel;
use Oxaqrycln\SearchRights;
use Portal\Users\User;
use Portal\Web\Failure;

/**
 * The archives of a search, and what the user's search rights make of it. One request has one query for all of its archives, so
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
        foreach ($user->folderRights() === '' ? [] : $archive->archives() as $channel) {
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
        $groups = [];
        $restrictions = [];
        foreach (self::visible($archive, $user) as $channel) {
            foreach ($channel->archives as $each) {
                $restriction = $user->searchRestriction($channel->name, $each->name);
                $groups[$restriction->key()][] = [$channel->name, $each->name];
                $restrictions[$restriction->key()] ??= $restriction;
            }
        }
        if (\count($groups) <= 1) {
            $only = reset($restrictions) ?: new SearchRestriction(new SearchRights([], [], []), []);
            return new self($groups === [] ? '' : $user->folderRights(), $only);
        }
        uasort($groups, static fn(array $one, array $other): int => \count($other) <=> \count($one));
        $chosen = isset($groups['']) ? '' : array_key_first($groups);
        $searched = array_map(static fn(array $each): string => self::reference(...$each), $groups[$chosen]);
        $others = array_merge(...array_values(array_diff_key($groups, [$chosen => true])));
        $leftOut = array_map(static fn(array $each): string => implode('/', $each), $others);
        return new self(implode('', $searched), $restrictions[$chosen], $leftOut);
    }

    /** Raises Failure for a name that would change the expression. */
    private static function reference(string $channel, string $archive): string
    {
        if (strpbrk($channel, ';()') !== false || str_contains($archive, ';') || $archive === '' || $archive === '*') {
            throw Failure::noDocument();
        }
        return "$(#$channel)\\$archive;";
    }
}
