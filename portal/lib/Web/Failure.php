<?php

declare(strict_types=1);

namespace Portal\Web;

/**
 * Replaces a page by one that says what happened and what to do: the texts "failure-KIND" and "failure-KIND-help" of
 * the locale.
 */
final class Failure extends \RuntimeException
{
    /** @param string $detail for the user, as the server's own text; "" for none */
    public function __construct(public readonly string $kind, public readonly int $status, public readonly string $detail = '')
    {
        parent::__construct($kind . ($detail === '' ? '' : ": $detail"));
    }

    public static function notFound(): self
    {
        return new self('not-found', 404);
    }

    /** One failure for missing documents and for those that the user may not see, so that nobody can tell them apart. */
    public static function noDocument(): self
    {
        return new self('no-document', 404);
    }

    public static function noFile(): self
    {
        return new self('no-file', 404);
    }

    /** @param string $packages of Debian */
    public static function notInstalled(string $packages): self
    {
        return new self('not-installed', 501, $packages);
    }

    public static function forbidden(): self
    {
        return new self('forbidden', 403);
    }
}
