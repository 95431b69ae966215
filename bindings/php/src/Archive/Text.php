<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The texts of the archive: lists of fields, numbers and dates in them, and what may be part of a request.
 *
 * @internal
 */
final class Text
{
    private const SEPARATOR = '^,^';

    /**
     * The fields of a record "^a^,^b^", without the carets around; a record without carets is one field, "" has none.
     *
     * @return list<string>
     */
    public static function fields(string $record): array
    {
        if ($record === '') {
            return [];
        }
        $start = $record[0] === '^' ? 1 : 0;
        $end = $record[-1] === '^' && \strlen($record) > $start ? -1 : null;
        return \explode(self::SEPARATOR, \substr($record, $start, $end));
    }

    /** @return list<string> the lines of a list from the database, without empty ones */
    public static function lines(string $text): array
    {
        return array_values(array_filter(preg_split('/\r?\n/', $text), static fn(string $line): bool => $line !== ''));
    }

    /**
     * A text that may be a field of a request.
     *
     * @throws BadArgument for a character that the archive cannot hold, and for a text that would end its field
     */
    public static function request(#[\SensitiveParameter] string $text, string $what): string
    {
        if ($text === '') {
            return '';
        }
        self::setting($text, $what);
        if (\str_contains($text, self::SEPARATOR) || \str_ends_with($text, '^,')) {
            throw new BadArgument(
                "$what holds \"^,^\", or ends with \"^,\", which separates the fields of a request",
            );
        }
        return $text;
    }

    /** A text that stays on its line of the import file. */
    public static function line(string $text, string $what): string
    {
        if (preg_match('/[\x00-\x1F]/', $text)) {
            throw new BadArgument("$what holds a line end or another control character");
        }
        return self::request($text, $what);
    }

    /** The title of a document, which shares its line with the list of fields, "title,type:id". */
    public static function title(string $text): string
    {
        if (preg_match('/,[ ]*[0-9]+[ ]*:[ ]*[0-9]+[ ]*(,|$)/D', $text)) {
            throw new BadArgument('the title holds what the archive takes for a field: ",1:11"');
        }
        return self::line($text, 'the title');
    }

    /** The contents of a field: no line of it can be taken for the end of the field. */
    public static function content(FieldContent $field): string
    {
        return preg_replace('/(^|[\r\n])@/', '$1 @', self::setting($field->text, "field $field->id"));
    }

    /** With the line ends that a note has, "\r\n", and none behind the last line. */
    public static function withNetworkLineEnds(string $text): string
    {
        return preg_replace('/\r?\n/', "\r\n", rtrim($text, "\r\n"));
    }

    /** The whole number that a text spells; 0 when it spells none. */
    public static function number(mixed $text): int
    {
        return is_numeric($text) ? (int) $text : 0;
    }

    public static function isTrue(string $text): bool
    {
        return !\in_array(strtoupper($text), ['', '0', 'FALSE'], true);
    }

    /** A date that a server writes: "15.11.2026", with or without a time "20:31" or "20:31:07". Null for another text. */
    public static function date(string $text): ?\DateTimeImmutable
    {
        $form = '/^(\d\d)\.(\d\d)\.(\d{4})(?: (\d\d):(\d\d)(?::(\d\d))?)?$/D';
        if (!preg_match($form, $text, $part) || !checkdate((int) $part[2], (int) $part[1], (int) $part[3])) {
            return null;
        }
        [$hour, $minute, $second] = [(int) ($part[4] ?? 0), (int) ($part[5] ?? 0), (int) ($part[6] ?? 0)];
        if ($hour > 23 || $minute > 59 || $second > 59) {
            return null;
        }
        return (new \DateTimeImmutable("$part[3]-$part[2]-$part[1]"))->setTime($hour, $minute, $second);
    }

    /** Whether a title is that of a column, whatever the letter case; it may be any text, also no UTF-8. */
    public static function isTitle(string $title, string $column): bool
    {
        return $title === $column || preg_match('/^' . preg_quote($column, '/') . '$/iuD', $title) === 1;
    }

    /**
     * A text that the archive can hold, for a setting.
     *
     * @throws BadArgument for a character that the archive cannot hold
     */
    public static function setting(#[\SensitiveParameter] string $text, string $what): string
    {
        if (\preg_match('/[\x80-\xFF]/', $text)) {
            try {
                new Raw\Value($text);
            } catch (BadArgument $error) {
                throw new BadArgument("$what: " . $error->getMessage());
            }
        }
        return $text;
    }
}
