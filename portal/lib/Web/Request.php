<?php

declare(strict_types=1);

namespace Portal\Web;

use Portal\Forms\UploadedFile;

/** What the browser sent. Texts are valid UTF-8; any other text counts as not sent. */
final class Request
{
    private const LONGEST = 20000;
    private const LONGEST_BODY = 1000000;
    private const LONGEST_FIELD = 1 << 20;

    /**
     * @param array<mixed> $query as $_GET
     * @param array<mixed> $form as $_POST
     * @param array<mixed> $server as $_SERVER
     * @param array<mixed> $files as $_FILES
     * @param string $warning of PHP about the form
     * @param ?string $body of the form, null for what the browser sends
     */
    public function __construct(
        private readonly array $query,
        private readonly array $form,
        private readonly array $server,
        private readonly array $files = [],
        private readonly string $warning = '',
        private readonly ?string $body = null,
    ) {
    }

    public static function ofBrowser(): self
    {
        return new self($_GET, $_POST, $_SERVER, $_FILES, error_get_last()['message'] ?? '');
    }

    /**
     * A request for the page with a form that was sent, to show the form filled in again.
     *
     * @param array<string, string> $fields
     */
    public function shownAgain(array $fields): self
    {
        return new self($this->query, $fields, ['REQUEST_METHOD' => 'GET'] + $this->server);
    }

    /** The request that a link of this site makes. */
    public static function ofUrl(string $url): self
    {
        parse_str((string) parse_url($url, PHP_URL_QUERY), $query);
        return new self($query, [], ['REQUEST_URI' => $url]);
    }

    /** "GET" also for HEAD, whose answer is the same without a body. */
    public function method(): string
    {
        $method = (string) ($this->server['REQUEST_METHOD'] ?? 'GET');
        return $method === 'HEAD' ? 'GET' : $method;
    }

    public function isHead(): bool
    {
        return ($this->server['REQUEST_METHOD'] ?? '') === 'HEAD';
    }

    /** Decoded, without the query. */
    public function path(): string
    {
        $target = (string) ($this->server['REQUEST_URI'] ?? '/');
        $path = rawurldecode(substr($target, 0, strcspn($target, '?#')));
        return preg_match('//u', $path) ? $path : '/';
    }

    /** Path and query as sent, to come back to. */
    public function target(): string
    {
        $target = (string) ($this->server['REQUEST_URI'] ?? '/');
        return self::isLocal($target) ? $target : '/';
    }

    /** Of the query of the URL; "" when it is missing. */
    public function text(string $name): string
    {
        return self::valid($this->query[$name] ?? null) ?? '';
    }

    /** Of the form that was sent. */
    public function field(string $name): string
    {
        return self::valid($this->form[$name] ?? null, self::LONGEST_FIELD) ?? '';
    }

    /**
     * The values of a field of the form that comes once for each row of a list. Taken from the body, because PHP keeps
     * the last one of a name only, and a limited number of fields.
     *
     * @return list<string>
     */
    public function repeated(string $name): array
    {
        $body = $this->body ?? (string) file_get_contents('php://input', length: self::LONGEST_BODY);
        $values = [];
        foreach (explode('&', $body) as $pair) {
            if (str_starts_with($pair, "$name=")) {
                $values[] = self::valid(urldecode(substr($pair, \strlen($name) + 1)));
            }
        }
        return array_values(array_filter($values, \is_string(...)));
    }

    /** @return array<string, string> */
    public function fields(): array
    {
        $valid = static fn(mixed $value): ?string => self::valid($value, self::LONGEST_FIELD);
        return array_filter(array_map($valid, $this->form), \is_string(...));
    }

    /**
     * The fields of the form that have one of the names, up to a megabyte in all.
     *
     * @param list<string> $names "f*" is each name that begins with "f"
     * @return array<string, string>
     */
    public function chosenFields(array $names): array
    {
        $chosen = [];
        $left = self::LONGEST_FIELD;
        foreach ($this->fields() as $name => $text) {
            $name = (string) $name;
            foreach ($names as $each) {
                $isMeant = str_ends_with($each, '*') ? str_starts_with($name, substr($each, 0, -1)) : $name === $each;
                if ($isMeant && \strlen($name . $text) <= $left) {
                    $chosen[$name] = $text;
                    $left -= \strlen($name . $text);
                    break;
                }
            }
        }
        return $chosen;
    }

    /** @return list<UploadedFile> of a field "NAME[]" */
    public function files(string $name): array
    {
        $sent = $this->files[$name] ?? [];
        $files = [];
        foreach (\is_array($sent['name'] ?? null) ? $sent['name'] : [] as $number => $original) {
            $error = (int) ($sent['error'][$number] ?? UPLOAD_ERR_NO_FILE);
            if ($error !== UPLOAD_ERR_NO_FILE) {
                $files[] = new UploadedFile(self::valid($original) ?? '', (string) $sent['tmp_name'][$number], $error);
            }
        }
        return $files;
    }

    /** Whether PHP has discarded the whole form because of its size. */
    public function isTooLarge(): bool
    {
        return $this->form === [] && str_starts_with($this->warning, 'POST Content-Length');
    }

    /** Whether PHP has left out some of the files because of their number. */
    public function hasTooManyFiles(): bool
    {
        return str_starts_with($this->warning, 'Maximum number of allowable file uploads');
    }

    /** @return array<string, string> of the query of the URL */
    public function texts(): array
    {
        return array_filter(array_map(self::valid(...), $this->query), \is_string(...));
    }

    /** A whole number of the query of the URL, kept within limits; $default when it is none. */
    public function number(string $name, int $default, int $least, int $most): int
    {
        $text = $this->text($name);
        $number = preg_match('/^-?\d{1,9}$/D', $text) ? (int) $text : $default;
        return max($least, min($most, $number));
    }

    public function header(string $name): string
    {
        return (string) ($this->server['HTTP_' . strtoupper(strtr($name, '-', '_'))] ?? '');
    }

    /** The address of the client. Behind a proxy it is that of the proxy, unless the web server sets it. */
    public function address(): string
    {
        return (string) ($this->server['REMOTE_ADDR'] ?? '');
    }

    public function host(): string
    {
        return (string) ($this->server['HTTP_HOST'] ?? '');
    }

    public function isSecure(): bool
    {
        return !\in_array($this->server['HTTPS'] ?? '', ['', 'off'], true);
    }

    public function isLoopback(): bool
    {
        return preg_match('/^(localhost|127\.\d+\.\d+\.\d+|\[::1\])(:\d+)?$/D', $this->host()) === 1;
    }

    /** Whether a page of this site sent the request, as far as the browser tells. */
    public function isFromThisSite(): bool
    {
        $site = $this->header('Sec-Fetch-Site');
        $origin = $this->header('Origin');
        if ($site !== '' && $site !== 'same-origin' && $site !== 'none') {
            return false;
        }
        return $origin === '' || $origin === ($this->isSecure() ? 'https://' : 'http://') . $this->host();
    }

    /** Whether a URL stays on this site. */
    public static function isLocal(string $target): bool
    {
        return preg_match('~^/(?![/\\\\])[\x21-\x7E]*$~D', $target) === 1;
    }

    private static function valid(mixed $value, int $longest = self::LONGEST): ?string
    {
        return \is_string($value) && \strlen($value) <= $longest && preg_match('//u', $value) === 1 ? $value : null;
    }
}
