<?php

declare(strict_types=1);

namespace Portal\Web;

use Portal\Output\SafeHtml;

/** An answer to the browser. Every one has the headers of POLICY. */
final class Response
{
    /** A page may load only what this site serves, and contain neither scripts nor styles. */
    private const POLICY = [
        'Content-Security-Policy' => "default-src 'none'; style-src 'self'; script-src 'self'; img-src 'self'; "
            . "connect-src 'self'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'",
        'X-Content-Type-Options' => 'nosniff',
        'Referrer-Policy' => 'same-origin',
        'Cross-Origin-Opener-Policy' => 'same-origin',
        'Cache-Control' => 'no-store',
    ];

    /**
     * @param string|\Closure(): void $body a closure writes it to the output, piece by piece
     * @param array<string, string> $headers in place of those of POLICY, or besides them
     */
    public function __construct(
        public readonly string|\Closure $body,
        public readonly int $status = 200,
        public readonly array $headers = [],
    ) {
    }

    public static function page(SafeHtml $page, int $status = 200): self
    {
        return new self((string) $page, $status, ['Content-Type' => 'text/html; charset=utf-8']);
    }

    /** Sends the browser to another page of this site, with GET. */
    public static function redirect(string $target): self
    {
        return new self('', 303, ['Location' => Request::isLocal($target) ? $target : '/']);
    }

    public function with(string $header, string $value): self
    {
        return new self($this->body, $this->status, [$header => $value] + $this->headers);
    }

    /** @param bool $isWhole without it, the headers only */
    public function send(bool $isWhole = true): void
    {
        header_remove('X-Powered-By');
        http_response_code($this->status);
        foreach ($this->headers + self::POLICY as $name => $value) {
            header("$name: " . preg_replace('/[\x00-\x1F\x7F]/', '', $value));
        }
        if ($this->body instanceof \Closure && $isWhole) {
            while (ob_get_level() > 0) {
                ob_end_clean();
            }
            ($this->body)();
        } elseif ($isWhole) {
            echo $this->body;
        }
    }
}
