<?php

declare(strict_types=1);

namespace Portal\Files;

/**
 * Writes a ZIP archive to a stream as it goes: the files are stored as they are, and only their list is kept in memory.
 * Names are UTF-8 and unique. Without ZIP64, so that anything can open it: at most 65535 files and 4 GiB.
 */
final class ZipWriter
{
    private const LARGEST = 0xFFFFFFFF;
    private const MOST_FILES = 0xFFFF;
    private const VERSION = 20;
    private const UTF8 = 0x0800;

    private string $directory = '';
    private int $count = 0;
    private int $offset = 0;
    /** @var array<string, true> names in lower case */
    private array $names = [];

    /** @param resource $out */
    public function __construct(private readonly mixed $out, private readonly \DateTimeInterface $time)
    {
    }

    /** Whether a file of this length, and a report behind it, still fit. */
    public function hasRoomFor(int $length): bool
    {
        $reserve = 1 << 20;
        return $this->count + 1 < self::MOST_FILES
            && $this->offset + $length + \strlen($this->directory) + $reserve < self::LARGEST;
    }

    /**
     * @param resource $file a stream that can be read twice
     * @return string the name, with a number when another file has it already
     */
    public function add(string $name, mixed $file): string
    {
        $name = $this->unique($name);
        rewind($file);
        $hash = hash_init('crc32b');
        $length = hash_update_stream($hash, $file);
        // CRC and length stand in front of the content, so the stream is read twice.
        $this->begin($name, hexdec(hash_final($hash)), $length);
        rewind($file);
        if (stream_copy_to_stream($file, $this->out) !== $length) {
            throw new \RuntimeException("the file \"$name\" cannot be copied into the ZIP archive");
        }
        $this->offset += $length;
        return $name;
    }

    public function addText(string $name, string $text): void
    {
        $this->begin($this->unique($name), crc32($text), \strlen($text));
        $this->write($text);
    }

    public function end(): void
    {
        $start = $this->offset;
        $this->write($this->directory);
        $length = $this->offset - $start;
        $this->write(pack('VvvvvVVv', 0x06054B50, 0, 0, $this->count, $this->count, $length, $start, 0));
    }

    private function begin(string $name, int $crc, int $length): void
    {
        $time = $this->time->format('Y n j G i s');
        [$year, $month, $day, $hour, $minute, $second] = array_map('intval', explode(' ', $time));
        $time = pack('vv', $hour << 11 | $minute << 5 | $second >> 1, max(0, $year - 1980) << 9 | $month << 5 | $day);
        $entry = pack('vv', self::UTF8, 0) . $time . pack('VVVvv', $crc, $length, $length, \strlen($name), 0);
        $this->directory .= pack('Vvv', 0x02014B50, self::VERSION, self::VERSION) . $entry
            . pack('vvvVV', 0, 0, 0, 0, $this->offset) . $name;
        $this->write(pack('Vv', 0x04034B50, self::VERSION) . $entry . $name);
        ++$this->count;
    }

    /** Systems that do not tell upper from lower case must be able to unpack it. */
    private function unique(string $name): string
    {
        $dot = strrpos($name, '.');
        [$stem, $extension] = $dot === false ? [$name, ''] : [substr($name, 0, $dot), substr($name, $dot)];
        for ($number = 2; isset($this->names[strtolower($name)]); ++$number) {
            $name = "$stem ($number)$extension";
        }
        $this->names[strtolower($name)] = true;
        return $name;
    }

    private function write(string $bytes): void
    {
        if (fwrite($this->out, $bytes) !== \strlen($bytes)) {
            throw new \RuntimeException('the ZIP archive cannot be written');
        }
        $this->offset += \strlen($bytes);
    }
}
