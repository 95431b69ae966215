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
        // A text that is refused need not be UTF-8, and is part of the message.
        parent::__construct(preg_match('//u', $text) ? $text : preg_replace('/[\x80-\xFF]/', '?', $text), 0, $previous);
    }
}
