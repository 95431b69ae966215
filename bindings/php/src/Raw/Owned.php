<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/**
 * A handle of the library, freed with its object. PHP destroys no object after a fatal error in the page, so handles
 * that are left then are freed when the page has ended: a worker keeps no query server, connection or memory of it.
 */
abstract class Owned
{
    use NotCopied {
        __clone as private refuseClone;
    }

    private const FATAL = E_ERROR | E_CORE_ERROR | E_COMPILE_ERROR | E_USER_ERROR | E_RECOVERABLE_ERROR;

    /** The objects of this page: null until there is one. */
    private static ?\WeakMap $living = null;
    /** Files that are removed when the page ends without having done so, with the process that made them. */
    private static array $files = [];
    /** 64 KiB for the clean-up, where the page has used all memory that it may have. */
    private static ?\SplFixedArray $reserve = null;

    /** Null after free(). */
    public ?\FFI\CData $handle = null;
    protected Library $library;

    protected function __construct(protected string $kind)
    {
        $this->library = Library::get();
        $place = $this->library->place("oxaqry_{$kind}*");
        $this->library->check($this->library->ffi->{"oxaqry_{$kind}_new"}($place));
        $this->free();  // of a constructor that is called twice
        $this->hold($place[0]);
    }

    public function __destruct()
    {
        $this->free();
    }

    /** The clone, which is destroyed at once, must not free the handle. */
    public function __clone()
    {
        $this->handle = null;
        $this->refuseClone();
    }

    /** Without what it holds, which may be a password. */
    public function __debugInfo(): array
    {
        return ['kind' => $this->kind, 'isFree' => $this->handle === null];
    }

    /** Frees what the object has opened, before its end. Every later call with it is an Error. */
    public function free(): void
    {
        if ($this->handle !== null) {
            // No error can be told here: a handle of the process before a fork belongs to that process.
            $this->library->ffi->{"oxaqry_{$this->kind}_free"}($this->handle);
            $this->handle = null;
        }
    }

    /** Removes the file or empty directory when the page ends without having called removeFile, as after exit(). */
    public static function keepForRemoval(string $file): void
    {
        self::$files[$file] = getmypid();
    }

    public static function removeFile(string $file): void
    {
        unset(self::$files[$file]);
        if (is_dir($file)) {
            @rmdir($file);
        } elseif (is_file($file)) {
            @unlink($file);
        }
    }

    protected function hold(\FFI\CData $handle): void
    {
        $this->handle = $handle;
        if (self::$living === null) {
            self::$living = new \WeakMap();
            self::$reserve = new \SplFixedArray(4096);
            // At once, because a function of the page may fail and end those behind it; and behind those functions, which
            // may still use the archive.
            register_shutdown_function(static function (): void {
                self::$reserve = null;
                self::cleanUp();
                register_shutdown_function(self::cleanUp(...));
            });
        }
        self::$living[$this] = true;
    }

    private static function cleanUp(): void
    {
        foreach (array_keys(self::$files, getmypid(), true) as $file) {
            self::removeFile($file);
        }
        if (((error_get_last()['type'] ?? 0) & self::FATAL) === 0) {
            return;  // PHP destroys the objects
        }
        foreach (self::$living as $object => $_) {
            $object->free();
        }
    }
}
