<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Users\FolderRights;

/** The texts that the component can read from the web user database, and how archives are named there. */
final class Names
{
    private const LONGEST = 255;
    /** The characters of Windows-1252 outside of U+0000 to U+00FF. */
    private const OF_CODE_PAGE = '€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ';

    /** Raises Refusal for a name that the component cannot read. */
    public static function checked(string $text): string
    {
        $text = trim($text);
        $pattern = '/^[\x20-\x7E\x{A0}-\x{FF}' . self::OF_CODE_PAGE . ']{1,' . self::LONGEST . '}$/uD';
        if ($text === '') {
            throw new Refusal('empty');
        }
        if (preg_match($pattern, $text) !== 1 || str_contains($text, "'")) {
            throw new Refusal('name', $text);
        }
        return $text;
    }

    public static function channel(string $text): string
    {
        $name = self::entry($text);
        return FolderRights::isChannel($name) ? $name : throw new Refusal('entry', $name);
    }

    /** The entry for "channel/archive", or for a name alone, which stands for archives of that name in every channel. */
    public static function archive(string $text): string
    {
        $parts = explode('/', $text);
        $isPlace = \count($parts) === 2 && $parts[0] !== '' && $parts[1] !== '' && !str_starts_with($text, '$(#');
        $entry = self::entry($isPlace ? FolderRights::reference(self::channel($parts[0]), $parts[1]) : $text);
        return FolderRights::isArchive($entry) ? $entry : throw new Refusal('entry', $entry);
    }

    /** The form that people write: "channel/archive" for a reference. */
    public static function shown(string $entry): string
    {
        return preg_match('/^\$\(#([^()]+)\)\\\\(.+)$/sD', $entry, $part) ? "$part[1]/$part[2]" : $entry;
    }

    /** A whole number that the database can hold. */
    public static function number(string $text): int
    {
        $number = trim($text);
        return preg_match('/^-?\d{1,9}$/D', $number) ? (int) $number : throw new Refusal('number', $number);
    }

    /** A name in lists of rights: without the signs that separate the entries of lists. */
    private static function entry(string $text): string
    {
        $name = self::checked($text);
        return strpbrk($name, '^,') === false ? $name : throw new Refusal('entry', $name);
    }
}
