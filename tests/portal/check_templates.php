<?php

// check_templates.php FILE ... - prints what a template prints past the escaper, a line "FILE:LINE: what", and then exits
// with 1. A template prints with $h(...) or a method of $h in a short echo tag, and in no other way.

declare(strict_types=1);

/** @return list<string> */
function faultsOf(string $file): array
{
    $faults = [];
    $tokens = array_values(array_filter(
        PhpToken::tokenize((string) file_get_contents($file)),
        static fn(PhpToken $token): bool => !$token->is([T_WHITESPACE, T_COMMENT, T_DOC_COMMENT]),
    ));
    $refused = [T_ECHO, T_PRINT, T_EVAL, T_INCLUDE, T_INCLUDE_ONCE, T_REQUIRE, T_REQUIRE_ONCE, T_EXIT, T_GLOBAL, T_INLINE_HTML];
    $functions = '/^(printf?|vprintf|print_r|var_dump|var_export|debug_zval_refcount|fwrite|fputs|file_put_contents|readfile|'
        . 'fpassthru|passthru|system|header|setcookie|highlight_\w+|php\w+|ob_\w+|output_\w+|call_user_func\w*)$/i';
    foreach ($tokens as $at => $token) {
        $text = static fn(int $further): string => $tokens[$at + $further]->text ?? '';
        if ($token->is(T_OPEN_TAG_WITH_ECHO)) {
            $open = $text(2) === '->' ? 4 : 2;
            if ($text(1) !== '$h' || $text($open) !== '(' || !endsWithCall($tokens, $at + $open)) {
                $faults[] = "$file:$token->line: prints past the escaper";
            }
        } elseif ($token->is($refused) && !$token->is(T_INLINE_HTML)) {
            $faults[] = "$file:$token->line: $token->text";
        } elseif ($token->is(T_STRING) && $text(1) === '(' && preg_match($functions, $token->text)) {
            $faults[] = "$file:$token->line: $token->text()";
        } elseif ($token->is(T_INLINE_HTML) && preg_match('/<script(?![^>]*\ssrc=)|<style|\sstyle=|\son\w+=|javascript:/i', $token->text)) {
            $faults[] = "$file:$token->line: code or style inside the page";
        } elseif ($token->is(T_STRING) && $token->text === 'SafeHtml') {
            $faults[] = "$file:$token->line: a template makes no SafeHtml";
        }
    }
    return $faults;
}

/** Whether the parenthesis at $open is closed by the one before the end of the tag. */
function endsWithCall(array $tokens, int $open): bool
{
    $depth = 0;
    for ($at = $open; isset($tokens[$at]) && !$tokens[$at]->is(T_CLOSE_TAG); ++$at) {
        $depth += ['(' => 1, ')' => -1][$tokens[$at]->text] ?? 0;
        if ($depth === 0) {
            return isset($tokens[$at + 1]) && $tokens[$at + 1]->is(T_CLOSE_TAG);
        }
    }
    return false;
}

$faults = array_merge([], ...array_map(faultsOf(...), array_slice($argv, 1)));
foreach ($faults as $fault) {
    print("$fault\n");
}
exit($faults === [] ? 0 : 1);
