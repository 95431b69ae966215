<?php

declare(strict_types=1);

namespace Portal\Administration;

use Oxaqrycln\Error;
use Oxaqrycln\Raw\Query;

/** Passwords as the web user database holds them: in the component's encoding. */
final class Passwords
{
    private const SHORTEST = 8;
    private const LONGEST = 500;

    public function __construct(private readonly Query $query)
    {
    }

    /** Raises Refusal for one that is too short, or that the encoding does not keep. */
    public function ofUser(#[\SensitiveParameter] string $password): string
    {
        if (preg_match_all('/./us', $password) < self::SHORTEST) {
            throw new Refusal('weak', (string) self::SHORTEST);
        }
        return $this->encoded($password);
    }

    /** Of an account of the archive system, which has rules of its own. */
    public function ofArchive(#[\SensitiveParameter] string $password): string
    {
        return $password === '' ? throw new Refusal('archive-password') : $this->encoded($password);
    }

    private function encoded(#[\SensitiveParameter] string $password): string
    {
        try {
            $encoded = $this->query->Encode($password);
            if (\strlen($password) <= self::LONGEST && !str_contains($password, "\0")
                && \is_string($encoded) && $this->query->Decode($encoded) === $password) {
                return $encoded;
            }
        } catch (Error) {  // it holds a character that the code page has not
        }
        throw new Refusal('password');
    }
}
