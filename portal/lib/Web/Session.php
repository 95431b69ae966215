<?php

declare(strict_types=1);

namespace Portal\Web;

/**
 * What the portal remembers of a browser: PHP's session, which is open only while it is read or changed, so that no page
 * waits for another one of the same user.
 */
final class Session
{
    private const COOKIE = 'portal';

    /** @var array<string, mixed> */
    private array $data = [];
    private bool $isExpired = false;
    private ?int $expiredUser = null;

    public function __construct(Request $request, private readonly Settings $settings)
    {
        $directory = "$settings->stateDir/sessions";
        is_dir($directory) || @mkdir($directory, 0700);
        session_name(self::COOKIE);
        session_save_path($directory);
        session_set_cookie_params([
            'path' => '/',
            'httponly' => true,
            'samesite' => 'Lax',
            'secure' => $request->isSecure() || !$request->isLoopback(),
        ]);
        ini_set('session.use_strict_mode', '1');
        ini_set('session.use_only_cookies', '1');
        ini_set('session.cache_limiter', '');
        ini_set('session.gc_maxlifetime', (string) ($settings->sessionHours * 3600));
        // Distributions such as Debian switch this off, and remove old sessions from their own directory only.
        ini_set('session.gc_probability', '1');
        ini_set('session.gc_divisor', '1000');
        if (isset($_COOKIE[self::COOKIE])) {
            $this->start(['read_and_close' => true]);
            $this->data = $_SESSION;
            $this->checkAge();
        }
    }

    public function get(string $key): mixed
    {
        return $this->data[$key] ?? null;
    }

    public function set(string $key, mixed $value): void
    {
        $this->change(static fn(array $data): array => [$key => $value] + $data);
    }

    /** The value of a key, which is removed. */
    public function take(string $key): mixed
    {
        $value = $this->get($key);
        if ($value !== null) {
            $this->change(static fn(array $data): array => array_diff_key($data, [$key => true]));
        }
        return $value;
    }

    /** Whether a user was logged on and the session has ended. */
    public function isExpired(): bool
    {
        return $this->isExpired;
    }

    /** The ID of the user whose session has ended; null when it is not known. */
    public function expiredUser(): ?int
    {
        return $this->expiredUser;
    }

    /** The token that a form must send back. */
    public function token(): string
    {
        if (!isset($this->data['token'])) {
            $this->set('token', bin2hex(random_bytes(16)));
        }
        return $this->data['token'];
    }

    public function isToken(string $token): bool
    {
        return isset($this->data['token']) && hash_equals($this->data['token'], $token);
    }

    /** The session's name in logs, from which the cookie cannot be derived. */
    public function logName(): string
    {
        return 'portal-' . substr(hash('sha256', 'log ' . session_id()), 0, 16);
    }

    /**
     * Logs a user on, under a new id.
     *
     * @param array<string, mixed> $data
     */
    public function begin(array $data): void
    {
        $this->start();
        // The session of a visitor is kept, so that the second click of a double click logs on as well.
        $this->renew(isset($_SESSION['user']));
        $this->write($data + ['token' => bin2hex(random_bytes(16)), 'start' => time(), 'last' => time()]);
        $this->isExpired = false;
    }

    /** Logs the user off. */
    public function end(): void
    {
        $this->start();
        $this->renew(true);
        $this->data = [];
        $this->write([]);
    }

    /** @param \Closure(array<string, mixed>): array<string, mixed> $change */
    private function change(\Closure $change): void
    {
        $this->start();
        $this->write($change($this->isExpired ? [] : $_SESSION));
    }

    private function checkAge(): void
    {
        if (!isset($this->data['user'])) {
            return;
        }
        $now = time();
        $idle = $now - (int) ($this->data['last'] ?? 0);
        $age = $now - (int) ($this->data['start'] ?? 0);
        if ($idle > $this->settings->idleMinutes * 60 || $age > $this->settings->sessionHours * 3600) {
            $this->isExpired = true;
            $this->expiredUser = (int) $this->data['user'];
            $this->data = [];
        } elseif ($idle >= 60) {
            try {
                $this->set('last', $now);
            } catch (DiskFull) {
                // Pages that store nothing work without it.
            }
        }
    }

    /** @param array<string, mixed> $options */
    private function start(array $options = []): void
    {
        if (!@session_start($options)) {
            throw new DiskFull('the session cannot be opened');
        }
    }

    /** Gives the session that is open a new id. */
    private function renew(bool $removesOld): void
    {
        if (!@session_regenerate_id($removesOld)) {
            @session_abort();
            throw new DiskFull('the session cannot be written');
        }
    }

    /** @param array<string, mixed> $data */
    private function write(array $data): void
    {
        $_SESSION = $data;
        error_clear_last();
        @session_write_close();  // its result does not tell whether the file was written
        if (error_get_last() !== null) {
            throw new DiskFull('the session cannot be written');
        }
        $this->data = $data;
    }
}
