<?php

declare(strict_types=1);

namespace Portal\Output;

/** Text that is already HTML. Only Html and Template create it. */
final class SafeHtml implements \Stringable
{
    private function __construct(private readonly string $html)
    {
    }

    /** @internal $html must be escaped wherever it comes from outside. */
    public static function of(string $html): self
    {
        return new self($html);
    }

    public function __toString(): string
    {
        return $this->html;
    }
}
