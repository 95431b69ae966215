<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** How a page reaches the archive and the web users; Archive says what each of them means. */
final class Settings
{
    public function __construct(
        public readonly string $hosts = '',
        public readonly string $user = '',
        #[\SensitiveParameter] public readonly string $password = '',
        public readonly int $timeout = 30,
        public readonly string $session = '',
        public readonly string $logDir = '',
        public readonly string $blobLocal = '',
        public readonly string $blobRemote = '',
        #[\SensitiveParameter] public readonly string $database = '',
        public readonly string $changedExtensions = '',
        public readonly string $webUser = '',
        public readonly string $webUserAddress = '',
        public readonly ?\DateTimeInterface $webUserLogOn = null,
        public readonly bool $spread = true,
    ) {
        if ($timeout < 1 || $timeout > 86400) {
            throw new BadArgument('the time-out must be from 1 second to a day');
        }
    }

    /** Without what dumps and logs must not show; the list of servers may hold passwords, too. */
    public function __debugInfo(): array
    {
        $shown = get_object_vars($this);
        foreach (['hosts', 'password', 'database'] as $name) {
            $shown[$name] = $shown[$name] === '' ? '' : '(not shown)';
        }
        return $shown;
    }

    /** The list of servers, begun at a place of this process's own when they are to be spread. */
    public function hostsFromOwnPlace(): string
    {
        $entries = explode('|', $this->hosts);
        $start = $this->spread ? getmypid() % \count($entries) : 0;
        return implode('|', [...\array_slice($entries, $start), ...\array_slice($entries, 0, $start)]);
    }
}
