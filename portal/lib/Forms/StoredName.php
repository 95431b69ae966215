<?php

declare(strict_types=1);

namespace Portal\Forms;

/** The names under which the archive stores files: plain ones, which no system takes for a path or a device. */
final class StoredName
{
    private const LONGEST = 240;
    private const DEVICE = '/^(CON|PRN|AUX|NUL|CONIN\$|CONOUT\$|COM[1-9¹²³]|LPT[1-9¹²³])[ ]*(\.|$)/iuD';

    /** The last part of what a browser says; null when it cannot be the name of a stored file. */
    public static function of(string $name): ?string
    {
        // "@" begins a line of the archive's own in the file that describes a new document.
        $last = ltrim(preg_replace('~^.*[\\\\/]~s', '', $name), ' @');
        $isPlain = preg_match('/^[^\x00-\x1F\x7F-\x{9F}:]*[^\x00-\x1F\x7F-\x{9F}:. ]$/uD', $last) === 1
            && !preg_match(self::DEVICE, $last);
        return $isPlain && \strlen($last) <= self::LONGEST && ArchiveText::isStorable($last) ? $last : null;
    }

    /** The same with a random part before its extension, for a name that is in use. */
    public static function another(string $name): string
    {
        $dot = strrpos($name, '.') ?: \strlen($name);
        return substr($name, 0, $dot) . '-' . bin2hex(random_bytes(4)) . substr($name, $dot);
    }
}
