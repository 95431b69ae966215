<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The base of all errors, and itself an error of the component: an answer that cannot be read, a file that cannot be
 * written, no memory. The message is UTF-8; of Refused it is the server's own text.
 */
class Error extends \RuntimeException
{
    public function __construct(
        string $text,
        public readonly RequestReport $request = new RequestReport(),
        ?\Throwable $previous = null,
    ) {
        parent::__construct($text, 0, $previous);
    }
}
