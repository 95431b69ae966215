<?php

declare(strict_types=1);

namespace Portal\Users;

/**
 * The channels and archives that a user may see: of each of his channels the archives that are listed for him there, or the
 * whole channel when none is. An entry that the folder rights of a search cannot hold gives nothing, but an archive entry still
 * narrows its channel, so that the user never sees more because of it.
 */
final class FolderRights
{
    private const START = '$(#';
    private const EVERY_ARCHIVE = '*';

    /** @var array<string, true> by the name of the channel */
    private readonly array $channels;

    /**
     * @param list<string> $channels names
     * @param list<string> $archives "$(#channel)\archive", or "archive" for that of every channel
     */
    public function __construct(array $channels, private readonly array $archives)
    {
        $this->channels = array_fill_keys(array_filter($channels, self::isChannel(...)), true);
    }

    /** How rights and searches name an archive. */
    public static function reference(string $channel, string $archive): string
    {
        return self::START . "$channel)\\$archive";
    }

    /** Whether folder rights can name the channel. */
    public static function isChannel(string $name): bool
    {
        return $name !== '' && strpbrk($name, ';()') === false;
    }

    /** Whether folder rights can name the archive, which is a name or a reference. */
    public static function isArchive(string $entry): bool
    {
        $isReference = preg_match('/^\$\(#[^();]+\)\\\\./s', $entry) === 1;
        return $entry !== '' && !str_contains($entry, ';') && ($isReference || !str_starts_with($entry, self::START));
    }

    public function isEmpty(): bool
    {
        return $this->channels === [];
    }

    /** Whether the user may see every archive of the channel. */
    public function isWhole(string $channel): bool
    {
        $listed = array_filter($this->archives, static fn(string $entry): bool => self::concerns($entry, $channel));
        $isEvery = array_intersect($listed, [self::EVERY_ARCHIVE, self::reference($channel, self::EVERY_ARCHIVE)]) !== [];
        return isset($this->channels[$channel]) && ($listed === [] || $isEvery);
    }

    public function maySee(string $channel, string $archive): bool
    {
        $lists = static fn(string $entry): bool => self::lists($entry, $channel, $archive);
        return $this->isWhole($channel) || (isset($this->channels[$channel]) && array_filter($this->archives, $lists) !== []);
    }

    /** Whether an archive entry is about the channel, which it narrows then. */
    public static function concerns(string $entry, string $channel): bool
    {
        return $entry !== '' && (str_starts_with($entry, self::reference($channel, '')) || !str_starts_with($entry, self::START));
    }

    /** Whether an archive entry is about the archive, by its name or as one of all that the server has there. */
    public static function lists(string $entry, string $channel, string $archive): bool
    {
        $names = [$archive, self::EVERY_ARCHIVE];
        $references = array_map(static fn(string $name): string => self::reference($channel, $name), $names);
        return self::isArchive($entry) && \in_array($entry, [...$names, ...$references], true);
    }
}
