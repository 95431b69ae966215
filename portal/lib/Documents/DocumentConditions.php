<?php

declare(strict_types=1);

namespace Portal\Documents;

use Oxaqrycln\Document;
use Oxaqrycln\DocumentCondition;
use Oxaqrycln\Text;

/**
 * The document rights of the user database: conditions that a document must meet to be shown. The portal knows the
 * comparisons "=", "<>", "<", "<=", ">", ">=" and "LIKE" (with "*" or "%", "?" or "_"), and the types "TXT", "NUM" and
 * "DAT". A condition that it cannot check is not met.
 */
final class DocumentConditions
{
    /** @param list<DocumentCondition> $conditions all of which must hold */
    public static function areMet(array $conditions, Document $document): bool
    {
        if ($conditions === []) {
            return true;
        }
        $texts = [];
        foreach ($document->segments as $segment) {
            $texts[$segment->fieldId][] = trim($segment->text->text);
        }
        foreach ($conditions as $condition) {
            $isMet = static fn(string $text): bool => self::isMet($condition, $text);
            $ofField = $texts[trim($condition->fieldId)] ?? [];
            if ($ofField === [] || \count(array_filter($ofField, $isMet)) !== \count($ofField)) {
                return false;
            }
        }
        return true;
    }

    private static function isMet(DocumentCondition $condition, string $text): bool
    {
        $comparison = strtoupper(trim($condition->comparison));
        $type = strtoupper(trim($condition->type));
        if ($comparison === 'LIKE') {
            $form = strtr(preg_quote($condition->value, '/'), ['\*' => '.*', '%' => '.*', '\?' => '.', '_' => '.']);
            return $type === 'TXT' && preg_match("/^$form$/isuD", $text) === 1;
        }
        [$left, $right] = [self::value($text, $type), self::value($condition->value, $type)];
        if ($left === null || $right === null) {
            return false;
        }
        $order = $left <=> $right;
        return match ($comparison) {
            '=' => $order === 0,
            '<>' => $order !== 0,
            '<' => $order < 0,
            '<=' => $order <= 0,
            '>' => $order > 0,
            '>=' => $order >= 0,
            default => false,
        };
    }

    /** Null for a text that is no value of the type. Values of one type can be compared. */
    private static function value(string $text, string $type): string|float|null
    {
        if ($type === 'TXT') {
            return 'text ' . strtolower($text);  // "10" and "1e1" are different texts
        }
        if ($type === 'NUM') {
            return self::number($text);
        }
        return $type === 'DAT' ? Text::date($text)?->format('YmdHis') : null;
    }

    /** With a decimal comma and points between thousands, or with a decimal point. Null for "1.234", which could be either. */
    private static function number(string $text): ?float
    {
        $hasPoint = preg_match('/^[-+]?\d+(\.\d+)?$/D', $text) === 1;
        $hasComma = preg_match('/^[-+]?(\d+|\d{1,3}(\.\d{3})+)(,\d+)?$/D', $text) === 1;
        if ($hasPoint === $hasComma && ($hasPoint === false || str_contains($text, '.'))) {
            return null;
        }
        return (float) ($hasComma ? strtr($text, ['.' => '', ',' => '.']) : $text);
    }
}
