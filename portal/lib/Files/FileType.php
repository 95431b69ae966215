<?php

declare(strict_types=1);

namespace Portal\Files;

/** The type of a stored file, from its first bytes and never from its name. */
final class FileType
{
    /** The number of bytes that are examined. */
    public const HEAD = 65536;

    /** How a file of the type begins, and the extensions that fit. */
    private const SIGNATURES = [
        'application/pdf' => ['/^%PDF-\d/', ['pdf']],
        'image/png' => ['/^\x89PNG\r\n\x1A\n/', ['png']],
        'image/jpeg' => ['/^\xFF\xD8\xFF/', ['jpg', 'jpeg']],
        'image/gif' => ['/^GIF8[79]a/', ['gif']],
        'image/webp' => ['/^RIFF.{4}WEBPVP8/s', ['webp']],
    ];
    private const TEXTS = ['txt', 'csv', 'tsv', 'log', 'md', 'eml', 'json', 'ini'];

    private function __construct(
        public readonly string $contentType,
        /** Whether a browser may show it. All others are downloads. */
        public readonly bool $isShown,
        public readonly bool $isImage,
        /** @var list<string> of names that fit the type; empty when any does */
        public readonly array $extensions = [],
    ) {
    }

    /** @param string $head the file's first bytes, HEAD of them if it is longer */
    public static function of(string $head): self
    {
        foreach (self::SIGNATURES as $type => [$signature, $extensions]) {
            if (preg_match($signature, $head)) {
                return new self($type, true, str_starts_with($type, 'image/'), $extensions);
            }
        }
        if (!self::isPlainText($head)) {
            return new self('application/octet-stream', false, false);
        }
        // The head may end in the middle of a character.
        $isUtf8 = preg_match('//u', preg_replace('/[\xC0-\xFF][\x80-\xBF]{0,2}$/D', '', $head)) === 1;
        return new self('text/plain; charset=' . ($isUtf8 ? 'utf-8' : 'windows-1252'), true, false, self::TEXTS);
    }

    /** Text that a program could interpret as a page, a script or an SVG image does not count as plain text. */
    private static function isPlainText(string $head): bool
    {
        return !preg_match('/[\x00-\x08\x0B\x0E-\x1A\x1C-\x1F\x7F]|^(%!|#!)|^\xFE\xFF|^\xFF\xFE/', $head)
            && !preg_match('~<[a-z!?/]~i', $head);
    }
}
