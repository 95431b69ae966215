<?php

declare(strict_types=1);

namespace Portal\Files;

use Oxaqrycln\Archive;
use Oxaqrycln\Content;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Error;
use Portal\Web\DiskFull;
use Portal\Web\Request;
use Portal\Web\Response;

/**
 * A file of a document, as an open file. It is sent piece by piece, so that its size takes no memory.
 */
final class StoredFile
{
    /** Whatever the file is, a browser runs nothing in it and isolates it from this site. */
    private const POLICY = "default-src 'none'; img-src 'self'; style-src 'unsafe-inline'; sandbox; frame-ancestors 'none'; "
        . "base-uri 'none'; form-action 'none'";
    private const PIECE = 262144;

    public readonly FileType $type;
    public readonly int $size;
    /** Identifies the content, so that a browser combines only parts of the same content. */
    public readonly string $tag;

    /**
     * @param resource $stream
     * @param string $tag "" when it is not known yet
     */
    public function __construct(private readonly mixed $stream, string $tag = '')
    {
        rewind($stream);
        $this->type = FileType::of((string) stream_get_contents($stream, FileType::HEAD));
        $this->size = (int) fstat($stream)['size'];
        $this->tag = $tag !== '' ? $tag : self::hash($stream);
    }

    /**
     * Null when there is no such content.
     *
     * @param ?resource $into an empty file; null takes a temporary one
     */
    public static function fetch(Archive $archive, DocumentName $name, Content $content, mixed $into = null): ?self
    {
        $stream = $into ?? TemporaryFile::open();
        try {
            $path = $archive->fetch($name, $content, $stream);
        } catch (Error $error) {
            // The package copies the file last; its error does not say which disk is full.
            throw $error::class === Error::class && @fwrite($stream, str_repeat("\0", 65536)) !== 65536
                ? new DiskFull('a temporary file cannot be written', 0, $error)
                : $error;
        }
        return $path === null ? null : new self($stream);
    }

    /** The image of a page of a TIFF file; see PageImage. */
    public function page(int $page): self
    {
        return new self(PageImage::png($this->stream, $page));
    }

    /** The part that the browser asks for, or all. */
    public function answer(Request $request, string $name, bool $isAttachment): Response
    {
        $tag = "\"$this->tag\"";
        $range = $request->isHead() || !\in_array($request->header('If-Range'), ['', $tag], true)
            ? null
            : ByteRange::of($request->header('Range'), $this->size);
        $headers = [
            'Content-Type' => $this->type->contentType,
            'Content-Disposition' => FileName::disposition(FileName::fitting($name, $this->type), $isAttachment || !$this->type->isShown),
            'Content-Security-Policy' => self::POLICY,
            'Cross-Origin-Resource-Policy' => 'same-origin',
            'Accept-Ranges' => 'bytes',
            'ETag' => $tag,
        ];
        if ($range === null) {
            return $this->part(0, $this->size, 200, $headers);
        }
        if (!$range->isSatisfiable()) {
            return new Response('', 416, ['Content-Range' => "bytes */$this->size", 'Content-Length' => '0'] + $headers);
        }
        $last = $range->first + $range->length - 1;
        $headers['Content-Range'] = "bytes $range->first-$last/$this->size";
        return $this->part($range->first, $range->length, 206, $headers);
    }

    /** @param array<string, string> $headers */
    private function part(int $first, int $length, int $status, array $headers): Response
    {
        $send = function () use ($first, $length): void {
            fseek($this->stream, $first);
            for ($left = $length; $left > 0; $left -= \strlen($piece)) {
                $piece = (string) fread($this->stream, min(self::PIECE, $left));
                if ($piece === '') {
                    return;  // the browser notices the missing bytes by Content-Length
                }
                echo $piece;
                flush();
            }
        };
        return new Response($send, $status, ['Content-Length' => (string) $length] + $headers);
    }

    /** @param resource $stream */
    private static function hash(mixed $stream): string
    {
        rewind($stream);
        $hash = hash_init('xxh128');
        hash_update_stream($hash, $stream);
        return hash_final($hash);
    }
}
