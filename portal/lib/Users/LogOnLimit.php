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
    /** The free attempts of an address for all accounts together, as a multiple of FREE_ATTEMPTS. */
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

    /**
     * Counts an attempt before it is made, so that simultaneous attempts count as well.
     *
     * @return int 0 when it may be made, else how many seconds to wait; it has not been counted then
     */
    public function attempt(): int
    {
        // All of them before any counts, so that an account does not wait longer because of its address.
        $wait = max(array_map(static fn(array $counter): int => self::wait($counter[0]->read(), $counter[1]), $this->counters));
        foreach ($wait > 0 ? [] : $this->counters as [$file, $free]) {
            $file->change(static function (array $state) use ($free, &$wait): array {
                $wait = max($wait, self::wait($state, $free));
                return $wait > 0 ? $state : ['count' => self::count($state) + 1, 'last' => time()];
            });
        }
        if ($wait > 0) {
            return $wait;
        }
        StateFile::removeOld($this->settings, 'log-on', self::FORGOTTEN, self::MOST_REMOVED);
        return 0;
    }

    /** After an attempt with the right password. The address stays slow for other accounts. */
    public function succeeded(): void
    {
        [[$account], [$address]] = $this->counters;
        $account->remove();
        $address->change(static fn(array $state): array => ['count' => max(0, self::count($state) - 1)] + $state);
    }

    /** @param array<string, mixed> $state */
    private static function wait(array $state, int $free): int
    {
        $over = self::count($state) - $free;
        $pause = $over < 0 ? 0 : min(self::LONGEST_WAIT, 2 ** min($over + 1, 20));
        return max(0, (int) ($state['last'] ?? 0) + $pause - time());
    }

    /** @param array<string, mixed> $state */
    private static function count(array $state): int
    {
        return (int) ($state['last'] ?? 0) < time() - self::FORGOTTEN ? 0 : (int) ($state['count'] ?? 0);
    }
}
