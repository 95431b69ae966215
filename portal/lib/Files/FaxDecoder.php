<?php

declare(strict_types=1);

namespace Portal\Files;

/**
 * Decodes ITU-T T.6 ("Group 4"), in which scanned pages are stored: black and white, each row by its differences from the
 * one above.
 */
final class FaxDecoder
{
    /** Codes of the runs of 0 to 63 pixels, then of 64, 128, ... to 1728. */
    private const WHITE = '00110101 000111 0111 1000 1011 1100 1110 1111 10011 10100 00111 01000 001000 000011 110100 110101 '
        . '101010 101011 0100111 0001100 0001000 0010111 0000011 0000100 0101000 0101011 0010011 0100100 0011000 00000010 '
        . '00000011 00011010 00011011 00010010 00010011 00010100 00010101 00010110 00010111 00101000 00101001 00101010 '
        . '00101011 00101100 00101101 00000100 00000101 00001010 00001011 01010010 01010011 01010100 01010101 00100100 '
        . '00100101 01011000 01011001 01011010 01011011 01001010 01001011 00110010 00110011 00110100 '
        . '11011 10010 010111 0110111 00110110 00110111 01100100 01100101 01101000 01100111 011001100 011001101 011010010 '
        . '011010011 011010100 011010101 011010110 011010111 011011000 011011001 011011010 011011011 010011000 010011001 '
        . '010011010 011000 010011011';
    private const BLACK = '0000110111 010 11 10 011 0011 0010 00011 000101 000100 0000100 0000101 0000111 00000100 00000111 '
        . '000011000 0000010111 0000011000 0000001000 00001100111 00001101000 00001101100 00000110111 00000101000 00000010111 '
        . '00000011000 000011001010 000011001011 000011001100 000011001101 000001101000 000001101001 000001101010 000001101011 '
        . '000011010010 000011010011 000011010100 000011010101 000011010110 000011010111 000001101100 000001101101 000011011010 '
        . '000011011011 000001010100 000001010101 000001010110 000001010111 000001100100 000001100101 000001010010 000001010011 '
        . '000000100100 000000110111 000000111000 000000100111 000000101000 000001011000 000001011001 000000101011 000000101100 '
        . '000001011010 000001100110 000001100111 '
        . '0000001111 000011001000 000011001001 000001011011 000000110011 000000110100 000000110101 0000001101100 0000001101101 '
        . '0000001001010 0000001001011 0000001001100 0000001001101 0000001110010 0000001110011 0000001110100 0000001110101 '
        . '0000001110110 0000001110111 0000001010010 0000001010011 0000001010100 0000001010101 0000001011010 0000001011011 '
        . '0000001100100 0000001100101';
    /** Of the runs of 1792, 1856, ... to 2560 in either colour. */
    private const LONG = '00000001000 00000001100 00000001101 000000010010 000000010011 000000010100 000000010101 000000010110 '
        . '000000010111 000000011100 000000011101 000000011110 000000011111';
    private const PASS = 100;
    private const HORIZONTAL = 101;
    /** The others move an edge by their number. */
    private const MODES = [self::PASS => '0001', self::HORIZONTAL => '001', 0 => '1', 1 => '011', 2 => '000011', 3 => '0000011',
        -1 => '010', -2 => '000010', -3 => '0000010'];
    private const LONGEST_CODE = 13;

    /** @var array<int, array{int, int}> value and length of the code that begins these bits */
    private readonly array $modes;
    /** @var array{array<int, array{int, int}>, array<int, array{int, int}>} white and black */
    private readonly array $runs;
    private int $at = 0;
    private int $bits = 0;
    private int $bitCount = 0;

    public function __construct(private readonly string $data, private readonly int $width)
    {
        $this->modes = self::table(self::MODES);
        $this->runs = [self::table(self::lengths(self::WHITE)), self::table(self::lengths(self::BLACK))];
    }

    /** @return string the rows from top to bottom, each from a new byte on; 1 is black. Rows that are missing are white. */
    public function rows(int $count): string
    {
        $blank = str_repeat("\0", intdiv($this->width + 7, 8));
        [$rows, $row, $edges] = ['', $blank, []];
        for ($i = 0; $i < $count; ++$i) {
            $next = $this->edges($edges);
            if ($next === null) {
                return $rows . str_repeat($blank, $count - $i);
            }
            if ($next !== $edges) {
                [$edges, $row] = [$next, $this->painted($blank, $next)];
            }
            $rows .= $row;
        }
        return $rows;
    }

    /**
     * The places where the colour of a row changes, the first one to black. Null at the end, and for what is no code.
     *
     * @param list<int> $above those of the row above
     * @return ?list<int>
     */
    private function edges(array $above): ?array
    {
        [$edges, $position, $colour, $place, $count] = [[], 0, 0, 0, \count($above)];
        $width = $this->width;
        while ($position < $width) {
            // The first edge above to the right of the position, of the same change of colour.
            $place = max(0, $place - 2);
            while ($place < $count && ($place % 2 !== $colour || $above[$place] <= $position && ($position > 0 || $edges !== []))) {
                ++$place;
            }
            $edge = $above[$place] ?? $width;
            $mode = $this->code($this->modes);
            if ($mode === null) {
                return null;
            }
            if ($mode === self::PASS) {
                $position = $above[$place + 1] ?? $width;
                continue;
            }
            if ($mode === self::HORIZONTAL) {
                [$first, $second] = [$this->run($colour), $this->run(1 - $colour)];
                if ($first === null || $second === null) {
                    return null;
                }
                $edges[] = min($width, $position + $first);
                $edges[] = $position = min($width, $position + $first + $second);
                continue;
            }
            $position = max($position, min($width, $edge + $mode));
            $edges[] = $position;
            $colour = 1 - $colour;
        }
        return $edges;
    }

    /** Pixels of a colour, 0 white and 1 black. */
    private function run(int $colour): ?int
    {
        for ($length = 0; $length <= $this->width; ) {
            $part = $this->code($this->runs[$colour]);
            if ($part === null) {
                return null;
            }
            $length += $part;
            if ($part < 64) {
                return $length;
            }
        }
        return null;
    }

    /** @param array<int, array{int, int}> $table */
    private function code(array $table): ?int
    {
        while ($this->bitCount < self::LONGEST_CODE) {
            $byte = \ord($this->data[$this->at] ?? "\0");
            if ($this->at++ > \strlen($this->data) + 2) {
                return null;
            }
            $this->bits = ($this->bits << 8 | $byte) & 0xFFFFFF;
            $this->bitCount += 8;
        }
        [$value, $length] = $table[$this->bits >> ($this->bitCount - self::LONGEST_CODE) & 0x1FFF] ?? [null, 0];
        $this->bitCount -= $length;
        return $value;
    }

    /** @param list<int> $edges */
    private function painted(string $row, array $edges): string
    {
        for ($i = 0; isset($edges[$i]); $i += 2) {
            [$from, $to] = [$edges[$i], ($edges[$i + 1] ?? $this->width) - 1];
            if ($to < $from) {
                continue;
            }
            [$first, $last] = [$from >> 3, $to >> 3];
            [$head, $tail] = [0xFF >> ($from & 7), 0xFF00 >> (($to & 7) + 1) & 0xFF];
            if ($first === $last) {
                $row[$first] = \chr(\ord($row[$first]) | $head & $tail);
                continue;
            }
            $row[$first] = \chr(\ord($row[$first]) | $head);
            for ($byte = $first + 1; $byte < $last; ++$byte) {
                $row[$byte] = "\xFF";
            }
            $row[$last] = \chr($tail);
        }
        return $row;
    }

    /** @return array<int, string> codes by the lengths of their runs */
    private static function lengths(string $codes): array
    {
        $byLength = [];
        foreach (explode(' ', $codes . ' ' . self::LONG) as $number => $code) {
            $byLength[$number < 64 ? $number : ($number - 63) * 64] = $code;
        }
        return $byLength;
    }

    /**
     * @param array<int, string> $codes by value
     * @return array<int, array{int, int}> for all bits that begin with a code
     */
    private static function table(array $codes): array
    {
        $table = [];
        foreach ($codes as $value => $code) {
            $free = self::LONGEST_CODE - \strlen($code);
            $first = bindec($code) << $free;
            for ($i = 0; $i < 1 << $free; ++$i) {
                $table[$first + $i] = [$value, \strlen($code)];
            }
        }
        return $table;
    }
}
