<?php

declare(strict_types=1);

namespace Portal\Output;

/** The texts, numbers and times of a language: a file of locale/. */
final class Locale
{
    private const LANGUAGES = ['en', 'de'];

    /** @param array<string, string> $texts by key */
    private function __construct(public readonly string $language, private readonly array $texts)
    {
    }

    /** The first language of the browser's list that the portal has; else English. */
    public static function of(string $accepted): self
    {
        $wanted = [];
        foreach (explode(',', $accepted) as $place => $entry) {
            $part = explode(';q=', str_replace(' ', '', strtolower($entry)), 2);
            $wanted[substr($part[0], 0, 2)] ??= [(float) ($part[1] ?? 1), -$place];
        }
        arsort($wanted);
        foreach ([...array_keys($wanted), 'en'] as $language) {
            if (\in_array($language, self::LANGUAGES, true)) {
                return new self($language, require \dirname(__DIR__, 2) . "/locale/$language.php");
            }
        }
        throw new \LogicException('there is always English');
    }

    public function text(string $key): string
    {
        return $this->texts[$key] ?? throw new \LogicException("locale/$this->language.php has no text \"$key\"");
    }

    /**
     * A text with the form of a word that the number in a place asks for: of "{0} {0:hit|hits}" the first one for 1.
     *
     * @param array<int, string|int|\Stringable> $values of the places; numbers as number() writes them
     */
    public function inflected(string $text, array $values): string
    {
        $inflect = function (array $part) use ($values): string {
            $number = (int) preg_replace('/\D/', '', (string) ($values[(int) $part[1]] ?? ''));
            $forms = explode('|', $part[2]);
            return $forms[min($this->form($number), \count($forms) - 1)];
        };
        return str_contains($text, '|') ? preg_replace_callback('/\{(\d):([^{}]*)\}/', $inflect, $text) : $text;
    }

    public function number(int $number): string
    {
        return number_format($number, 0, '', $this->text('thousands'));
    }

    public function time(\DateTimeInterface $time): string
    {
        return $time->format($this->text($time->format('H:i:s') === '00:00:00' ? 'date' : 'date-time'));
    }

    /** Which form of a word a number asks for, counted from 0, by the rule that the language's file names. */
    private function form(int $number): int
    {
        [$unit, $ten] = [$number % 10, $number % 100];
        return match ($this->text('plural')) {
            'none' => 0,
            'one' => $number === 1 ? 0 : 1,
            'to-one' => $number <= 1 ? 0 : 1,
            'one-few' => $number === 1 ? 0 : ($unit >= 2 && $unit <= 4 && ($ten < 12 || $ten > 14) ? 1 : 2),
            'unit-few' => $unit === 1 && $ten !== 11 ? 0 : ($unit >= 2 && $unit <= 4 && ($ten < 12 || $ten > 14) ? 1 : 2),
            default => throw new \LogicException("locale/$this->language.php: there is no rule \"{$this->text('plural')}\""),
        };
    }
}
