<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** An account of the archive system. */
final class Account
{
    public function __construct(
        public readonly string $user,
        #[\SensitiveParameter] public readonly string $password,
    ) {
    }

    /** Without the password. */
    public function __debugInfo(): array
    {
        return ['user' => $this->user];
    }
}
