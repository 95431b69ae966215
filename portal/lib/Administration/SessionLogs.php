<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Web\Failure;
use Portal\Web\Settings;

/** The log files of sessions. Only plain files of the log directory itself are read. */
final class SessionLogs
{
    public const KINDS = ['', 'problem', 'information', 'warning', 'error', 'debug'];
    /** The older part of a longer file is left out. */
    public const MOST_BYTES = 64 << 20;
    private const LONGEST_LINE = 4000;
    private const LEVELS = [
        '    ' => 'information',
        '!!! <WARNING> ' => 'warning',
        '### <ERROR> ' => 'error',
        '+++ <DEBUG> ' => 'debug',
    ];
    private const START = '/^(\d\d\.\d\d\.\d{4}(?: \d\d:\d\d:\d\d)?) (    |!!! <WARNING> |### <ERROR> |\+\+\+ <DEBUG> )/';
    /** The bytes 0x80 to 0x9F of Windows-1252 in Unicode. */
    private const HIGH = [
        0x20AC, 0x81, 0x201A, 0x192, 0x201E, 0x2026, 0x2020, 0x2021, 0x2C6, 0x2030, 0x160, 0x2039, 0x152, 0x8D, 0x17D, 0x8F,
        0x90, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x2DC, 0x2122, 0x161, 0x203A, 0x153, 0x9D, 0x17E, 0x178,
    ];

    /** @param string $hidden what takes the place of secrets and of directories */
    public function __construct(private readonly Settings $settings, private readonly string $hidden)
    {
    }

    public function isSetUp(): bool
    {
        return $this->settings->logDir !== '' && is_dir($this->settings->logDir);
    }

    /**
     * The files whose name has the text, the last changed one first.
     *
     * @return list<array{name: string, time: int, size: int}>
     */
    public function files(string $text): array
    {
        $files = [];
        foreach (@scandir($this->settings->logDir) ?: [] as $name) {
            $path = $this->settings->logDir . "/$name";
            if (self::isName($name) && ($text === '' || stripos($name, $text) !== false) && self::isPlainFile($path)) {
                $files[] = ['name' => $name, 'time' => (int) @filemtime($path), 'size' => (int) @filesize($path)];
            }
        }
        usort($files, static fn(array $one, array $two): int => [$two['time'], $one['name']] <=> [$one['time'], $two['name']]);
        return $files;
    }

    public function has(string $name): bool
    {
        return $this->isSetUp() && self::isName($name) && self::isPlainFile($this->settings->logDir . "/$name");
    }

    /**
     * The entries of a log from $first on, counted from 0. A closure for $first is given how many there are.
     *
     * @param string $kind of KINDS; "" for all
     * @param \Closure(int): int $first
     * @return array{count: int, isCut: bool, entries: list<array{time: string, kind: string, text: string}>}
     */
    public function entries(string $name, string $kind, int $size, \Closure $first): array
    {
        $path = $this->settings->logDir . "/$name";
        $this->has($name) || throw Failure::notFound();
        $file = @fopen($path, 'rb') ?: throw Failure::notFound();
        try {
            $length = (int) (fstat($file)['size'] ?? 0);
            $isCut = $length > self::MOST_BYTES;
            [$count] = $this->read($file, $length, $kind, \PHP_INT_MAX, 0);
            [, $entries] = $this->read($file, $length, $kind, $first($count), $size);
            return ['count' => $count, 'isCut' => $isCut, 'entries' => $entries];
        } finally {
            fclose($file);
        }
    }

    /**
     * @param resource $file
     * @return array{int, list<array{time: string, kind: string, text: string}>} how many entries there are up to the last
     *     one that is listed, and those
     */
    private function read($file, int $length, string $kind, int $first, int $size): array
    {
        fseek($file, max(0, $length - self::MOST_BYTES));
        $left = min($length, self::MOST_BYTES);
        [$count, $entries, $isShown] = [0, [], false];
        while ($left > 0 && ($line = fgets($file, min($left, self::LONGEST_LINE) + 1)) !== false) {
            $left -= \strlen($line);
            if (preg_match(self::START, $line, $part) === 1) {
                $level = self::LEVELS[$part[2]];
                $isWanted = $kind === '' || $kind === $level
                    || ($kind === 'problem' && \in_array($level, ['warning', 'error'], true));
                $isShown = $isWanted && $count >= $first;
                if ($isShown && \count($entries) === $size) {
                    break;
                }
                $count += (int) $isWanted;
                if ($isShown) {
                    $entries[] = ['time' => $part[1], 'kind' => $level, 'text' => substr($line, \strlen($part[0]))];
                }
            } elseif ($isShown && \strlen($entries[array_key_last($entries)]['text']) < self::LONGEST_LINE) {
                $entries[array_key_last($entries)]['text'] .= $line;
            }
        }
        foreach ($entries as &$entry) {
            $entry['text'] = $this->shown($entry['text']);
        }
        return [$count, $entries];
    }

    /** The text of an entry in UTF-8, without passwords and places of this machine. */
    private function shown(string $text): string
    {
        $text = (string) preg_replace('/^(Opening database connection: ).*/s', '$1', $text, -1, $count);
        $text = $count > 0 ? $text . $this->hidden : self::unicode($text);
        $text = (string) preg_replace('~^(Initializing new ).*[\\\\/]~', '$1', $text);  // the library's directory
        foreach (['database', 'stateDir', 'logDir', 'blobLocal', 'blobRemote', 'password', 'administrationPassword'] as $setting) {
            $value = $this->settings->$setting;
            $text = \strlen($value) < 6 ? $text : str_replace($value, $this->hidden, $text);
        }
        // A long text may have been cut within a value that is hidden.
        preg_match('/^.{0,' . self::LONGEST_LINE . '}/us', $text, $start);
        return trim(strtr($start[0], ["\r\n" => "\n"])) . ($start[0] === $text ? '' : ' …');
    }

    private static function unicode(string $text): string
    {
        return (string) preg_replace_callback('/[\x80-\xFF]/', static function (array $byte): string {
            $code = self::HIGH[\ord($byte[0]) - 0x80] ?? \ord($byte[0]);
            return $code < 0x800
                ? \chr(0xC0 | $code >> 6) . \chr(0x80 | $code & 0x3F)
                : \chr(0xE0 | $code >> 12) . \chr(0x80 | $code >> 6 & 0x3F) . \chr(0x80 | $code & 0x3F);
        }, $text);
    }

    private static function isName(string $name): bool
    {
        return preg_match('/^[A-Za-z0-9_-][A-Za-z0-9._-]{0,199}\.log$/D', $name) === 1;
    }

    /** Whether it is a plain file. Links are refused because they could lead out of the directory. */
    private static function isPlainFile(string $path): bool
    {
        return is_file($path) && !is_link($path);
    }
}
