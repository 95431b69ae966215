<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/**
 * A value of the component, for what PHP's own types do not tell apart: a whole number is a Long, an Integer or a Byte,
 * null Empty or Null, a string a text or bytes. Members of Query take PHP's values and these.
 */
final class Value extends Owned
{
    private const UTF8 = 0;
    /** 1.1.1970 in seconds since 30.12.1899. */
    private const EPOCH = 25569 * 86400;

    /** @throws BadArgument as set() */
    public function __construct(#[\SensitiveParameter] mixed $native = null)
    {
        parent::__construct('value');
        if ($native === null) {
            return;
        }
        try {
            $this->set($native);
        } catch (\Throwable $error) {
            $this->free();  // PHP does not destroy an object whose constructor fails
            throw $error;
        }
    }

    public static function null(): self
    {
        return (new self())->assign('null');
    }

    /** 0 to 255. */
    public static function byte(int $number): self
    {
        return (new self())->assign('byte', self::inRange($number, 0, 255));
    }

    /** 16 bits: -32768 to 32767. */
    public static function integer(int $number): self
    {
        return (new self())->assign('integer', self::inRange($number, -32768, 32767));
    }

    /** As they are, without a conversion between character sets. */
    public static function bytes(string $bytes): self
    {
        return (new self())->assign('bytes', $bytes, \strlen($bytes));
    }

    /** The context of a page request with this body, for OnStartPage. */
    public static function request(string $body): self
    {
        return (new self())->assign('request', $body, \strlen($body));
    }

    /**
     * null is Empty, an int a Long, a string a text in UTF-8; a date counts as the local time that it shows, without its
     * fraction of a second.
     *
     * @throws BadArgument for another type, an int of more than 32 bits, a year outside 100 to 9999, and a text with a
     *     character that Windows-1252 lacks; the value is then as before
     */
    public function set(#[\SensitiveParameter] mixed $native): void
    {
        $ffi = $this->library->ffi;
        $handle = $this->handle;
        $native = $native instanceof \Stringable ? (string) $native : $native;
        $this->library->check(match (true) {
            \is_string($native) => $ffi->oxaqry_value_set_text($handle, $native, \strlen($native), self::UTF8),
            $native === null => $ffi->oxaqry_value_set_empty($handle),
            \is_int($native) => $ffi->oxaqry_value_set_long($handle, self::inRange($native, -2147483648, 2147483647)),
            \is_bool($native) => $ffi->oxaqry_value_set_boolean($handle, (int) $native),
            \is_float($native) => $ffi->oxaqry_value_set_double($handle, $native),
            $native instanceof \DateTimeInterface => $ffi->oxaqry_value_set_date($handle, self::seconds($native)),
            default => throw new BadArgument('a value is null, bool, int, float, string or a date, not '
                . get_debug_type($native)),
        });
    }

    public function kind(): Kind
    {
        $this->library->check($this->library->ffi->oxaqry_value_kind($this->handle, $this->library->number));
        return Kind::from($this->library->number[0]);
    }

    /** What it holds as bool, int, float, string or DateTimeImmutable; null for Empty, Null and an object. */
    public function native(): mixed
    {
        return match ($this->kind()) {
            Kind::Text => $this->text(),
            Kind::Byte, Kind::Integer, Kind::Long => $this->number(),
            Kind::Boolean => $this->number() !== 0,
            Kind::Double => $this->read('double', $this->library->real)[0],
            Kind::Date => self::date($this->read('date', $this->library->long)[0]),
            Kind::Bytes => $this->content(),
            default => null,
        };
    }

    /** As the component converts it; see oxaqry_value_get_text() in the C interface. */
    public function text(): string
    {
        $library = $this->library;
        $library->check(
            $library->ffi->oxaqry_value_get_text($this->handle, self::UTF8, $library->text, $library->length),
        );
        return $library->handedOut();
    }

    private function number(): int
    {
        return $this->read('long', $this->library->number)[0];
    }

    private function read(string $type, \FFI\CData $place): \FFI\CData
    {
        $this->library->check($this->library->ffi->{"oxaqry_value_get_$type"}($this->handle, $place));
        return $place;
    }

    private function content(): string
    {
        $library = $this->library;
        $bytes = $library->place('const uint8_t*');
        $library->check($library->ffi->oxaqry_value_get_bytes($this->handle, $bytes, $library->length));
        return $library->length[0] === 0 ? '' : \FFI::string($bytes[0], $library->length[0]);
    }

    private function assign(string $kind, mixed ...$content): self
    {
        $this->library->check($this->library->ffi->{"oxaqry_value_set_$kind"}($this->handle, ...$content));
        return $this;
    }

    /** @internal */
    public static function inRange(int $number, int $least, int $most): int
    {
        return $number >= $least && $number <= $most
            ? $number
            : throw new BadArgument("$number is not in the range $least to $most");
    }

    private static function seconds(\DateTimeInterface $date): int
    {
        return $date->getTimestamp() + $date->getOffset() + self::EPOCH;
    }

    /** @internal The date of a number of seconds as the library counts them. */
    public static function date(int $seconds): \DateTimeImmutable
    {
        return new \DateTimeImmutable(gmdate('Y-m-d H:i:s', $seconds - self::EPOCH));
    }
}
