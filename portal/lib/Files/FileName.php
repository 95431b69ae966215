<?php

declare(strict_types=1);

namespace Portal\Files;

/** The name under which a browser stores a file. */
final class FileName
{
    private const LONGEST = 120;

    /** A name without directories and without characters that mislead: control characters, and those without width. */
    public static function of(string $name, string $otherwise = 'file'): string
    {
        $last = preg_replace('~^.*[\\\\/]~s', '', $name);
        $visible = preg_replace('/[\p{C}\p{Zl}\p{Zp}":*?<>|]/u', '_', $last) ?? '';
        $plain = trim($visible, " .\u{A0}");
        if (preg_match_all('/./us', $plain) > self::LONGEST) {
            preg_match('/^(.{1,100}).*?(\.[^.]{1,10})?$/us', $plain, $part);
            $plain = $part[1] . ($part[2] ?? '');
        }
        return $plain === '' ? $otherwise : $plain;
    }

    /** With an extension that fits the type, so that a file that is shown is not stored as another one. */
    public static function fitting(string $name, FileType $type): string
    {
        $extension = strtolower(pathinfo($name, PATHINFO_EXTENSION));
        return $type->extensions === [] || \in_array($extension, $type->extensions, true) ? $name : "$name.{$type->extensions[0]}";
    }

    /** The header Content-Disposition: the name in ASCII, and as it is for browsers that know RFC 5987. */
    public static function disposition(string $name, bool $isAttachment): string
    {
        $ascii = preg_replace('/[^A-Za-z0-9._ ()-]/', '_', preg_replace('/[\x80-\xBF]/', '', $name));
        return ($isAttachment ? 'attachment' : 'inline') . "; filename=\"$ascii\"; filename*=UTF-8''" . rawurlencode($name);
    }
}
