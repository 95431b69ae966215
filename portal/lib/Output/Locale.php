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

    /** @return list<string> */
    public static function languages(): array
    {
        return self::LANGUAGES;
    }

    /** The first language of a browser's list that there is; $chosen before it. */
    public static function of(string $accepted, string $chosen = ''): self
    {
        $wanted = [];
        foreach (explode(',', $accepted) as $place => $entry) {
            $part = explode(';q=', str_replace(' ', '', strtolower($entry)), 2);
            $wanted[substr($part[0], 0, 2)] ??= [(float) ($part[1] ?? 1), -$place];
        }
        arsort($wanted);
        foreach ([$chosen, ...array_keys($wanted), 'en'] as $language) {
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

    public function number(int $number): string
    {
        return number_format($number, 0, '', $this->text('thousands'));
    }

    public function time(\DateTimeInterface $time): string
    {
        return $time->format($this->text($time->format('H:i:s') === '00:00:00' ? 'date' : 'date-time'));
    }
}
