<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/**
 * A handle of the library, freed with its object. PHP destroys no object after a fatal error in the page, so handles
 * that are left then are freed when the page has ended: a worker keeps no query server, connection or memory of it.
 */
abstract class Owned
{
    private const FATAL = E_ERROR | E_CORE_ERROR | E_COMPILE_ERROR | E_USER_ERROR | E_RECOVERABLE_ERROR;

    /** The objects of this page: null until there is one. */
    private static ?\WeakMap $living = null;
    /** Files that are removed when the page ends without having done so. */
    private static array $files = [];
    /** Given back before the clean-up, which needs memory also where the page has used all. */
    private static string $reserve = '';

    /** Null after free(). */
    public ?\FFI\CData $handle;
    protected Library $library;

    protected function __construct(protected string $kind)
    {
        $this->library = Library::get();
        $place = $this->library->ffi->new("oxaqry_{$kind}*[1]");
        $this->library->check($this->library->ffi->{"oxaqry_{$kind}_new"}($place));
        $this->hold($place[0]);
    }

    public function __destruct()
    {
        $this->free();
    }

    public function free(): void
    {
        if ($this->handle !== null) {
            // No error can be told here: a handle of the process before a fork belongs to that process.
            $this->library->ffi->{"oxaqry_{$this->kind}_free"}($this->handle);
            $this->handle = null;
        }
    }

    /** Removes the file when the page ends without having called removeFile. */
    public static function keepForRemoval(string $file): void
    {
        self::$files[$file] = true;
    }

    public static function removeFile(string $file): void
    {
        unset(self::$files[$file]);
        if (is_file($file)) {
            @unlink($file);
        }
    }

    protected function hold(\FFI\CData $handle): void
    {
        $this->handle = $handle;
        if (self::$living === null) {
            self::$living = new \WeakMap();
            self::$reserve = str_repeat(' ', 65536);
            // Behind the functions that the page has registered, which may still use its archive.
            register_shutdown_function(static function (): void {
                self::cleanUp();
                register_shutdown_function(self::cleanUp(...));
            });
        }
        self::$living[$this] = true;
    }

    private static function cleanUp(): void
    {
        self::$reserve = '';
        if (((error_get_last()['type'] ?? 0) & self::FATAL) === 0) {
            return;
        }
        foreach (self::$living as $object => $_) {
            $object->free();
        }
        foreach (self::$files as $file => $_) {
            self::removeFile($file);
        }
    }
}
