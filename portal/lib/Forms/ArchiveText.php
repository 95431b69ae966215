<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\BadArgument;
use Oxaqrycln\Raw\Value;

/** Which texts the archive can hold: those of Windows-1252. */
final class ArchiveText
{
    public static function isStorable(string $text): bool
    {
        try {
            (new Value($text))->free();
            return true;
        } catch (BadArgument) {
            return false;
        }
    }
}
