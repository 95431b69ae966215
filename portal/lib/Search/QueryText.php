<?php

declare(strict_types=1);

namespace Portal\Search;

/** Queries in the language of the query server: words, "phrases", field:value, parentheses, AND, OR, NOT. */
final class QueryText
{
    /** A condition on a field: the value as a phrase, in which a "*" at the end stays a wildcard. */
    public static function condition(string $field, string $value): string
    {
        $words = trim(preg_replace('/["\x00-\x20\x7F]+/', ' ', $value));
        $isStart = str_ends_with($words, '*');
        return "$field:\"" . trim($words, '* ') . '"' . ($isStart ? '*' : '');
    }

    /** Whether the query's quotes and parentheses are closed, so that it can be put into parentheses as one term. */
    public static function isClosed(string $query): bool
    {
        $rest = self::withoutPhrases($query);
        $depth = 0;
        foreach (str_split($rest) as $character) {
            $depth += ['(' => 1, ')' => -1][$character] ?? 0;
            if ($depth < 0) {
                return false;
            }
        }
        return $depth === 0 && !str_contains($rest, '"');
    }

    /** @return list<string> the fields that it names, as it writes them */
    public static function fields(string $query): array
    {
        $words = preg_split('/[\s()"]+/', self::withoutPhrases($query), -1, PREG_SPLIT_NO_EMPTY);
        $named = array_filter($words, static fn(string $word): bool => str_contains($word, ':'));
        return array_values(array_map(static fn(string $word): string => strstr($word, ':', true), $named));
    }

    private static function withoutPhrases(string $query): string
    {
        return preg_replace('/"[^"]*"/', ' ', $query);
    }
}
