<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A text whose lines end with "\n", with the hits of the query in it. */
final class MarkedText implements \Stringable
{
    /** Characters that no text of an archive holds. */
    public const MARK_ON = "\x01";
    public const MARK_OFF = "\x02";

    public readonly string $text;
    /** @var list<Mark> */
    public readonly array $marks;
    /** @var list<TextPiece> */
    private readonly array $pieces;

    /** @internal Takes the marks out of a text of the component. */
    public function __construct(string $withMarks)
    {
        [$pieces, $marks, $plain, $isMarked, $position] = [[], [], '', false, 0];
        $parts = preg_split('/([\x01\x02])/', $withMarks, -1, PREG_SPLIT_DELIM_CAPTURE | PREG_SPLIT_NO_EMPTY);
        foreach ($parts as $part) {
            if ($part === self::MARK_ON || $part === self::MARK_OFF) {
                $isMarked = $part === self::MARK_ON;
                continue;
            }
            $length = \strlen($part) - preg_match_all('/[\x80-\xBF]/', $part);
            if ($isMarked) {
                $marks[] = new Mark($position, $length);
            }
            $pieces[] = new TextPiece($part, $isMarked);
            $plain .= $part;
            $position += $length;
        }
        [$this->text, $this->marks, $this->pieces] = [$plain, $marks, $pieces];
    }

    /**
     * The whole text in pieces, for a page that encodes each of them and then puts a tag around those that are marked.
     *
     * @return list<TextPiece>
     */
    public function pieces(): array
    {
        return $this->pieces;
    }

    public function __toString(): string
    {
        return $this->text;
    }
}
