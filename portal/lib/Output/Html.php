<?php

declare(strict_types=1);

namespace Portal\Output;

use Oxaqrycln\MarkedText;

/** What templates print with: everything is escaped here. Called like a function it takes a text or a SafeHtml. */
final class Html
{
    /** @var array<string, string> escaped texts of the locale, by key */
    private array $texts = [];

    public function __construct(public readonly Locale $locale)
    {
    }

    /** A text between tags or in a quoted attribute. */
    public function __invoke(string|int|SafeHtml|null $value): string
    {
        return $value instanceof SafeHtml ? (string) $value : self::escape((string) $value);
    }

    /** A number of bytes with its unit, for text(). */
    public static function bytes(int $bytes): string
    {
        $units = ['B', 'KB', 'MB', 'GB'];
        for ($unit = 0; $bytes >= 1024 && $unit < \count($units) - 1; ++$unit) {
            $bytes = intdiv($bytes, 1024);
        }
        return "$bytes\u{A0}$units[$unit]";
    }

    /** A text of the interface in the user's language; {0}, {1}, ... are replaced, and Locale::inflected(). */
    public function text(string $key, string|int|SafeHtml ...$values): string
    {
        $text = $this->texts[$key] ??= self::escape($this->locale->text($key));
        if ($values === []) {
            return $text;
        }
        $places = [];
        foreach ($values as $number => $value) {
            $places["{{$number}}"] = $this($value);
        }
        return strtr($this->locale->inflected($text, $values), $places);
    }

    /**
     * A URL of this site, for an attribute.
     *
     * @param array<string, string|int> $query entries "" are left out
     */
    public function url(string $path, array $query = [], string $fragment = ''): string
    {
        return self::escape(self::plainUrl($path, $query, $fragment));
    }

    /**
     * The same for a header.
     *
     * @param array<string, string|int> $query
     */
    public static function plainUrl(string $path, array $query = [], string $fragment = ''): string
    {
        $text = self::plainQuery($query);
        return $path . ($text === '' ? '' : "?$text") . ($fragment === '' ? '' : '#' . rawurlencode($fragment));
    }

    /**
     * The query of such a URL, without its "?": for several links that have a part of it in common.
     *
     * @param array<string, string|int> $query
     */
    public function query(array $query): SafeHtml
    {
        return SafeHtml::of(self::escape(self::plainQuery($query)));
    }

    /** A value for an attribute that a script reads. */
    public function json(mixed $value): string
    {
        return self::escape(json_encode($value, JSON_THROW_ON_ERROR | JSON_UNESCAPED_UNICODE | JSON_INVALID_UTF8_SUBSTITUTE));
    }

    /** The name of an attribute without a value, as "checked", or nothing. */
    public function flag(bool $isSet, string $name): string
    {
        return $isSet ? ' ' . self::escape($name) : '';
    }

    public function number(int $number): string
    {
        return self::escape($this->locale->number($number));
    }

    public function time(?\DateTimeInterface $time): string
    {
        return $time === null ? '' : '<time datetime="' . self::escape($time->format('Y-m-d\TH:i')) . '">'
            . self::escape($this->locale->time($time)) . '</time>';
    }

    /**
     * A text of a document: its hits are marked and numbered from $first on, so that links can name them. With $total, each
     * mark is followed by its number and the links to those beside it, which the style sheet shows at the mark gone to.
     *
     * @param ?\Closure(int): string $url of a mark by its number, not escaped
     */
    public function marked(MarkedText $text, int $first, int $total = 0, ?\Closure $url = null): string
    {
        $html = '';
        foreach ($text->pieces() as $piece) {
            $escaped = self::escape($piece->text);
            if (!$piece->isMarked) {
                $html .= $escaped;
                continue;
            }
            $html .= "<mark id=\"hit-$first\" tabindex=\"-1\">$escaped</mark>";
            $html .= $url === null ? '' : $this->markSteps($first, $total, $url);
            ++$first;
        }
        return $html;
    }

    /** @param \Closure(int): string $url */
    private function markSteps(int $number, int $total, \Closure $url): string
    {
        $html = '<span class="steps"> ' . $this->text('mark-of', $number, $total);
        if ($number > 1) {
            $html .= ' <a href="' . self::escape($url($number - 1)) . '">' . $this->text('mark-previous') . '</a>';
        }
        if ($number < $total) {
            $html .= ' <a href="' . self::escape($url($number + 1)) . '">' . $this->text('mark-next') . '</a>';
        }
        return "$html</span>";
    }

    /** The beginning of a text of a document, with its hits marked: at most some thousand characters. */
    public function markedStart(MarkedText $text, int $longest): string
    {
        $html = '';
        foreach ($text->pieces() as $piece) {
            preg_match('/^.{0,' . min($longest, 10000) . '}/us', $piece->text, $part);
            $escaped = self::escape($part[0] ?? '');
            $html .= $piece->isMarked ? "<mark tabindex=\"-1\">$escaped</mark>" : $escaped;
            $longest -= \strlen($part[0] ?? '');
            if ($longest <= 0) {
                return "$html \u{2026}";
            }
        }
        return $html;
    }

    /**
     * The text as pages show it: control characters, which no browser shows, and those that change the direction of the text
     * around them become a sign that can be seen.
     */
    public static function visible(string $text): string
    {
        $hidden = '[\x00-\x08\x0B\x0C\x0E-\x1F\x7F]|\xC2[\x80-\x9F]|\xE2(?:\x80[\xAA-\xAE]|\x81[\xA6-\xA9])';
        return preg_replace("/$hidden/", "\u{FFFD}", $text) ?? '';
    }

    /** @param array<string, string|int> $query */
    private static function plainQuery(array $query): string
    {
        foreach ($query as $name => $value) {
            if ($value === '') {
                unset($query[$name]);
            }
        }
        return http_build_query($query, '', '&', PHP_QUERY_RFC3986);
    }

    private static function escape(string $text): string
    {
        if (preg_match('~^[A-Za-z0-9_ .,:/+*()-]*+$~D', $text) === 1) {
            return $text;  // as most texts are
        }
        return htmlspecialchars(self::visible($text), ENT_QUOTES | ENT_SUBSTITUTE | ENT_HTML5, 'UTF-8');
    }
}
