<?php

declare(strict_types=1);

namespace Portal\Files;

/**
 * The first image of a TIFF file, for browsers, which show none: black and white, grey or colour with eight bits; stored
 * plainly, as "Group 4", with LZW or PackBits. Everything else is left to programs.
 */
final class TiffImage
{
    private const MOST_PIXELS = 40000000;
    /** Of the file, and of the image: what fits several times into PHP's usual memory. */
    public const MOST_BYTES = 16000000;
    /** A page has a hundredth of that; more would only cost time. */
    private const MOST_FAX_BYTES = 4000000;
    private const WIDTH = 256;
    private const HEIGHT = 257;
    private const BITS = 258;
    private const COMPRESSION = 259;
    private const PHOTOMETRIC = 262;
    private const FILL_ORDER = 266;
    private const STRIPS = 273;
    private const SAMPLES = 277;
    private const ROWS_A_STRIP = 278;
    private const LENGTHS = 279;
    private const PLANES = 284;
    private const PREDICTOR = 317;

    /** @param array<int, list<int>> $tags */
    private function __construct(private readonly string $data, private readonly array $tags)
    {
    }

    /** The image as PNG; null for a file that is damaged or of a kind that is left to programs. */
    public static function png(string $data): ?string
    {
        if (!\in_array(substr($data, 0, 4), ["II*\0", "MM\0*"], true)) {
            return null;
        }
        return (new self($data, self::tags($data)))->encoded();
    }

    private function encoded(): ?string
    {
        [$width, $height] = [$this->tag(self::WIDTH, 0), $this->tag(self::HEIGHT, 0)];
        [$bits, $samples, $kind] = [$this->tag(self::BITS, 1), $this->tag(self::SAMPLES, 1), $this->tag(self::PHOTOMETRIC, 0)];
        $isKnown = \in_array([$bits, $samples], [[1, 1], [8, 1]], true) && $kind <= 1 || [$bits, $samples, $kind] === [8, 3, 2];
        if (!$isKnown || $width < 1 || $height < 1 || $width > 65535 || $width * $height > self::MOST_PIXELS
            || $this->tag(self::PREDICTOR, 1) !== 1 || $this->tag(self::PLANES, 1) !== 1) {
            return null;
        }
        $rowLength = intdiv($width * $bits * $samples + 7, 8);
        if ($rowLength * $height > self::MOST_BYTES) {
            return null;
        }
        $rows = $this->rows($width, $height, $rowLength);
        if ($rows === null) {
            return null;
        }
        $isWhiteZero = $kind === 0;
        $colours = $samples === 3 ? PngImage::COLOUR : PngImage::GREY;
        return PngImage::of($width, $height, $bits, $colours, $isWhiteZero ? ~$rows : $rows, $rowLength);
    }

    private function rows(int $width, int $height, int $rowLength): ?string
    {
        $rowsAStrip = min($height, max(1, $this->tag(self::ROWS_A_STRIP, $height)));
        $rows = '';
        foreach ($this->tags[self::STRIPS] ?? [] as $number => $start) {
            $count = min($rowsAStrip, $height - intdiv(\strlen($rows), $rowLength));
            $strip = substr($this->data, $start, $this->tags[self::LENGTHS][$number] ?? 0);
            if ($this->tag(self::FILL_ORDER, 1) === 2) {
                $strip = strtr($strip, self::reversedBits());
            }
            $length = $count * $rowLength;
            $part = match ($this->tag(self::COMPRESSION, 1)) {
                1 => $strip,
                4 => \strlen($this->data) > self::MOST_FAX_BYTES ? null : (new FaxDecoder($strip, $width))->rows($count),
                5 => self::lzw($strip, $length),
                32773 => self::packBits($strip, $length),
                default => null,
            };
            if ($part === null) {
                return null;
            }
            $rows .= str_pad(substr($part, 0, $length), $length, "\0");
            if (\strlen($rows) >= $height * $rowLength) {
                return $rows;
            }
        }
        return null;
    }

    private function tag(int $tag, int $default): int
    {
        return $this->tags[$tag][0] ?? $default;
    }

    /** @return array<int, list<int>> the whole numbers of the first directory, by tag */
    private static function tags(string $data): array
    {
        [$short, $long] = $data[0] === 'I' ? ['v', 'V'] : ['n', 'N'];
        $read = static fn(int $at, int $size): int =>
            (int) (@unpack($size === 2 ? $short : $long, substr($data, $at, $size) . "\0\0\0\0")[1] ?? 0);
        $directory = $read(4, 4);
        $tags = [];
        for ($i = min(200, $read($directory, 2)); $i > 0; --$i) {
            $at = $directory + 12 * $i - 10;
            $size = [3 => 2, 4 => 4][$read($at + 2, 2)] ?? null;
            $count = min(100000, $read($at + 4, 4));
            if ($size === null) {
                continue;
            }
            $start = $count * $size <= 4 ? $at + 8 : $read($at + 8, 4);
            $count = min($count, max(0, intdiv(\strlen($data) - $start, $size)));
            for ($tags[$read($at, 2)] = [], $item = 0; $item < $count; ++$item) {
                $tags[$read($at, 2)][] = $read($start + $item * $size, $size);
            }
        }
        return $tags;
    }

    private static function packBits(string $data, int $length): string
    {
        $rows = '';
        for ($at = 0; $at < \strlen($data) && \strlen($rows) < $length; ) {
            $control = \ord($data[$at++]);
            if ($control < 128) {
                $rows .= substr($data, $at, $control + 1);
                $at += $control + 1;
            } elseif ($control > 128) {
                $rows .= str_repeat($data[$at++] ?? "\0", 257 - $control);
            }
        }
        return $rows;
    }

    /** Codes of 9 to 12 bits, the highest bit first; a code becomes longer one entry early. */
    private static function lzw(string $data, int $length): ?string
    {
        $single = array_map(\chr(...), range(0, 255));
        [$table, $next, $codeLength, $previous, $rows] = [$single, 258, 9, null, ''];
        [$bits, $bitCount, $at, $end] = [0, 0, 0, \strlen($data)];
        while (\strlen($rows) < $length) {
            for (; $bitCount < $codeLength; $bitCount += 8) {
                if ($at >= $end) {
                    return $rows;
                }
                $bits = ($bits << 8 | \ord($data[$at++])) & 0xFFFFFF;
            }
            $bitCount -= $codeLength;
            $code = $bits >> $bitCount & (1 << $codeLength) - 1;
            if ($code === 257) {
                return $rows;
            }
            if ($code === 256) {
                [$table, $next, $codeLength, $previous] = [$single, 258, 9, null];
                continue;
            }
            $entry = $table[$code] ?? ($code === $next && $previous !== null ? $previous . $previous[0] : null);
            if ($entry === null) {
                return null;
            }
            $rows .= $entry;
            if ($previous !== null && $next < 4096) {
                $table[$next++] = $previous . $entry[0];
                $codeLength = $next >= 2047 ? 12 : ($next >= 1023 ? 11 : ($next >= 511 ? 10 : 9));
            }
            $previous = $entry;
        }
        return $rows;
    }

    /** @return array<string, string> */
    private static function reversedBits(): array
    {
        $reversed = [];
        for ($byte = 0; $byte < 256; ++$byte) {
            $reversed[\chr($byte)] = \chr((int) bindec(strrev(sprintf('%08b', $byte))));
        }
        return $reversed;
    }
}
