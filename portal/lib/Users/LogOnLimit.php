<?php

declare(strict_types=1);

namespace Portal\Users;

use Portal\Web\Settings;
use Portal\Web\StateFile;

/**
 * Slows down the guessing of passwords: after some wrong ones for an account from one address, each further one has to wait
 * longer.
 */
final class LogOnLimit
{
    private const FREE_ATTEMPTS = 4;
    private const LONGEST_WAIT = 900;
    /** seconds after which wrong passwords do not count any more */
    private const FORGOTTEN = 2 * self::LONGEST_WAIT;
    /** files of the folder that a wrong password looks at, and removes when they are old: each makes two and their locks */
    private const MOST_REMOVED = 100;
    /** An address may try so many times as often in all, whatever the accounts. */
    private const OF_ADDRESS = 10;

    /** @var list<array{StateFile, int}> file, and how many attempts are free */
    private readonly array $counters;

    public function __construct(private readonly Settings $settings, string $account, string $address)
    {
        $this->counters = [
            [new StateFile($settings, 'log-on', 'account ' . strtolower($account) . " $address"), self::FREE_ATTEMPTS],
            [new StateFile($settings, 'log-on', "address $address"), self::FREE_ATTEMPTS * self::OF_ADDRESS],
        ];
    }

    /** Seconds until the next attempt is looked at; 0 when it is now. */
    public function wait(): int
    {
        $wait = 0;
        foreach ($this->counters as [$file, $free]) {
            $state = $file->read();
            $over = (int) ($state['count'] ?? 0) - $free;
            if ($over >= 0) {
                $pause = min(self::LONGEST_WAIT, 2 ** min($over + 1, 20));
                $wait = max($wait, (int) ($state['last'] ?? 0) + $pause - time());
            }
        }
        return $wait;
    }

    public function count(): void
    {
        foreach ($this->counters as [$file]) {
            $file->change(static function (array $state): array {
                $isOld = (int) ($state['last'] ?? 0) < time() - self::FORGOTTEN;
                return ['count' => $isOld ? 1 : (int) ($state['count'] ?? 0) + 1, 'last' => time()];
            });
        }
        StateFile::removeOld($this->settings, 'log-on', self::FORGOTTEN, self::MOST_REMOVED);
    }

    /** After a success. The address stays slow for other accounts. */
    public function clear(): void
    {
        $this->counters[0][0]->remove();
    }
}
