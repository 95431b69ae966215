<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;
use Oxaqrycln\Error;
use Oxaqrycln\LibraryFailed;
use Oxaqrycln\WrongThread;

/**
 * The shared library with the C interface: finds and opens it once for each page, and turns its codes into exceptions.
 *
 * @internal but version()
 */
final class Library
{
    /** The number of the interface that this package is written for. */
    public const ABI = 1;
    /** The arguments of a method, and its result. */
    public const MOST_VALUES = 25;
    private const NAME = PHP_OS_FAMILY === 'Windows' ? 'OXAQryCln.dll' : 'liboxaqrycln.so.1';
    private const E_HANDLE = -1;
    private const E_ARGUMENT = -2;
    private const E_TEXT = -6;
    private const E_THREAD = -7;
    private const E_FORKED = -8;
    private const PACKAGE = __DIR__ . '/../..';

    private static ?self $opened = null;

    /** @var array<string, \FFI\CData> by type */
    private array $places = [];
    /** Places for what a function hands out; those with a number for a second and third of a kind. */
    public readonly \FFI\CData $number;
    public readonly \FFI\CData $number2;
    public readonly \FFI\CData $number3;
    public readonly \FFI\CData $long;
    public readonly \FFI\CData $real;
    public readonly \FFI\CData $text;
    public readonly \FFI\CData $text2;
    public readonly \FFI\CData $length;
    public readonly \FFI\CData $length2;
    /** Of several values at once. */
    public readonly \FFI\CData $texts;
    public readonly \FFI\CData $lengths;

    private function __construct(public readonly \FFI $ffi)
    {
        foreach (['number', 'number2', 'number3'] as $place) {
            $this->$place = $ffi->new('int32_t[1]');
        }
        $this->long = $ffi->new('int64_t[1]');
        $this->real = $ffi->new('double[1]');
        foreach (['', '2'] as $place) {
            $this->{"text$place"} = $ffi->new('const char*[1]');
            $this->{"length$place"} = $ffi->new('size_t[1]');
        }
        $this->texts = $ffi->new('const char*[' . self::MOST_VALUES . ']');
        $this->lengths = $ffi->new('size_t[' . self::MOST_VALUES . ']');
    }

    /**
     * A place for a pointer that a function hands out. There is one for each type, because PHP keeps the type of each
     * array of pointers that is read, about 110 bytes, until the page ends.
     */
    public function place(string $type): \FFI\CData
    {
        return $this->places[$type] ??= $this->ffi->new("{$type}[1]");
    }

    /** @throws LibraryFailed with what is to be changed */
    public static function get(): self
    {
        return self::$opened ??= new self(self::open());
    }

    /** The version of the component, "1.2.3". Raises LibraryFailed. */
    public static function version(): string
    {
        return self::get()->ffi->oxaqry_version();
    }

    /** @throws Error for a code of a function, of the class that fits */
    public function check(int $code): void
    {
        if ($code === 0) {
            return;
        }
        $text = $code === self::E_HANDLE
            ? 'the object has been closed or freed: make another one'
            : $this->ffi->oxaqry_last_error();
        throw match (true) {
            $code <= self::E_ARGUMENT && $code >= self::E_TEXT => new BadArgument($text),
            $code === self::E_THREAD || $code === self::E_FORKED => new WrongThread($text),
            default => new Error($text),
        };
    }

    /** The text that a function has put into the first place for texts. */
    public function handedOut(): string
    {
        $length = $this->length[0];
        return $length === 0 ? '' : \FFI::string($this->text[0], $length);
    }

    public function handedOut2(): string
    {
        $length = $this->length2[0];
        return $length === 0 ? '' : \FFI::string($this->text2[0], $length);
    }

    /** @return list<string> the texts in the places for several from one to another */
    public function manyHandedOut(int $first, int $last): array
    {
        $texts = [];
        for (; $first <= $last; ++$first) {
            $length = $this->lengths[$first];
            $texts[] = $length === 0 ? '' : \FFI::string($this->texts[$first], $length);
        }
        return $texts;
    }

    private static function open(): \FFI
    {
        if (!\extension_loaded('ffi')) {
            throw new LibraryFailed('PHP has no extension "ffi": install it, and write extension=ffi into php.ini');
        }
        self::checkAllowed();
        $tried = [];
        foreach (self::places() as $place) {
            try {
                return self::checked(\FFI::cdef(file_get_contents(self::PACKAGE . '/oxaqrycln.ffi'), $place), $place);
            } catch (\FFI\Exception $error) {
                self::checkInterface($place, $error);
                $tried[] = $error->getMessage();
            }
        }
        throw new LibraryFailed('the shared library ' . self::NAME . ' cannot be opened. Tried: '
            . implode('; ', $tried) . '. Name its file with the environment variable OXAQRYCLN_LIBRARY or the line '
            . '"oxaqrycln.library = FILE" in php.ini');
    }

    /** The environment's library only when it names one, else that of php.ini, else the package's and the system's. */
    private static function places(): array
    {
        $named = getenv('OXAQRYCLN_LIBRARY') ?: get_cfg_var('oxaqrycln.library');
        return $named ? [$named] : [self::PACKAGE . '/lib/' . self::NAME, self::NAME];
    }

    private static function checkAllowed(): void
    {
        try {
            \FFI::cdef();
        } catch (\FFI\Exception $error) {
            $isPreload = strtolower((string) ini_get('ffi.enable')) === 'preload';
            $preload = 'opcache.preload = ' . realpath(self::PACKAGE . '/preload.php');
            throw new LibraryFailed($isPreload
                ? "PHP allows FFI in preloaded files only, and this package is not preloaded: write \"$preload\" into "
                    . 'php.ini (see oxaqrycln.ini) and restart PHP'
                : 'FFI is switched off by "ffi.enable" in php.ini: set "ffi.enable = preload" and "' . $preload
                    . '", or "ffi.enable = true"', previous: $error);
        }
    }

    private static function checked(\FFI $ffi, string $place): \FFI
    {
        if ($ffi->oxaqry_abi_version() !== self::ABI) {
            throw self::wrongInterface($ffi, $place);
        }
        return $ffi;
    }

    /** A library of another interface lacks functions; any other error is the caller's. */
    private static function checkInterface(string $place, \FFI\Exception $error): void
    {
        try {
            $ffi = \FFI::cdef('int32_t oxaqry_abi_version(void); const char* oxaqry_version(void);', $place);
        } catch (\FFI\Exception) {
            return;
        }
        throw self::wrongInterface($ffi, $place, $error);
    }

    private static function wrongInterface(\FFI $ffi, string $place, ?\FFI\Exception $error = null): LibraryFailed
    {
        $version = $ffi->oxaqry_abi_version();
        $wrong = $version === self::ABI
            ? 'is older than this package: ' . $error?->getMessage()
            : "has version $version of the interface; this package needs version " . self::ABI;
        return new LibraryFailed("the shared library $place, release {$ffi->oxaqry_version()}, $wrong. Install the library "
            . 'and the package of the same release', previous: $error);
    }
}
