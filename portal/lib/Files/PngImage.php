<?php

declare(strict_types=1);

namespace Portal\Files;

/** Writes an image as PNG. */
final class PngImage
{
    public const GREY = 0;
    public const COLOUR = 2;
    private const LONGEST_BLOCK = 65535;

    /** @param string $rows from top to bottom, each of $rowLength bytes; 0 is black */
    public static function of(int $width, int $height, int $bits, int $colours, string $rows, int $rowLength): string
    {
        $lines = '';
        for ($row = 0; $row < $height; ++$row) {
            $lines .= "\0" . substr($rows, $row * $rowLength, $rowLength);
        }
        return "\x89PNG\r\n\x1A\n"
            . self::chunk('IHDR', pack('NNCCCCC', $width, $height, $bits, $colours, 0, 0, 0))
            . self::chunk('IDAT', \function_exists('gzcompress') ? gzcompress($lines, 3) : self::stored($lines))
            . self::chunk('IEND', '');
    }

    private static function chunk(string $type, string $data): string
    {
        return pack('N', \strlen($data)) . $type . $data . pack('N', crc32($type . $data));
    }

    /** Without the extension zlib: not compressed. */
    private static function stored(string $data): string
    {
        $blocks = str_split($data, self::LONGEST_BLOCK);
        $stored = "\x78\x01";
        foreach ($blocks as $number => $block) {
            $length = \strlen($block);
            $stored .= pack('Cvv', $number === \count($blocks) - 1 ? 1 : 0, $length, ~$length & 0xFFFF) . $block;
        }
        return $stored . hash('adler32', $data, true);
    }
}
