<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Web\Failure;
use Portal\Web\Settings;

/**
 * The web user database, for statements of the administration that the component has no methods for: SQLite or PostgreSQL.
 * Only administrators may open it.
 */
final class UserDatabase
{
    private const ADMINISTRATOR = 1;
    private const ATTEMPTS = 10;
    /** the seconds that a change waits for another one to end */
    private const WAIT = 5;

    private readonly \PDO $pdo;
    private readonly bool $isSqlite;
    private bool $isInTransaction = false;

    /** @param int $administrator the user who is logged on */
    public function __construct(Settings $settings, private readonly int $administrator)
    {
        $this->isSqlite = str_starts_with($settings->administration, 'sqlite:');
        try {
            $this->pdo = $this->open($settings);
            $isAllowed = $this->isAdministrator();
        } catch (\PDOException $error) {
            throw self::failure($error);
        }
        $isAllowed || throw Failure::forbidden();
    }

    public static function isSetUp(Settings $settings): bool
    {
        return $settings->administration !== '';
    }

    /**
     * The rows of a statement, without the names of their columns, which databases spell differently.
     *
     * @param list<int|string|null> $values in place of the "?" of the statement
     * @return list<list<int|string|null>>
     */
    public function rows(string $statement, array $values = []): array
    {
        try {
            return $this->execute($statement, $values)->fetchAll(\PDO::FETCH_NUM);
        } catch (\PDOException $error) {
            throw $this->isInTransaction ? $error : self::failure($error);
        }
    }

    /**
     * The number in the first column of the only row.
     *
     * @param list<int|string|null> $values
     */
    public function number(string $statement, array $values = []): int
    {
        return (int) ($this->rows($statement, $values)[0][0] ?? 0);
    }

    /**
     * Carries out a statement of a change.
     *
     * @param list<int|string|null> $values
     * @return int how many rows it changed
     */
    public function run(string $statement, array $values): int
    {
        $this->isInTransaction || throw new \LogicException('changes are made in a transaction');
        return $this->execute($statement, $values)->rowCount();
    }

    /**
     * Carries out all statements of $change or none, isolated from other changes; $change runs again after a conflict.
     * Refused when the administrator would lose the right to administer.
     *
     * @param \Closure(): void $change
     * @param ?\Closure(): void $last runs when nothing but the database can refuse the change any more; what it raises
     *     refuses it, too
     */
    public function change(\Closure $change, ?\Closure $last = null): void
    {
        for ($attempt = 1; ; ++$attempt) {
            try {
                $this->attempt($change, $last);
                return;
            } catch (\PDOException $error) {
                // 40...: a conflict with another change. 23...: the other change has used the new key.
                if ($attempt >= self::ATTEMPTS || !preg_match('/^(40|23)/', (string) $error->getCode()) || $this->isSqlite) {
                    throw self::failure($error);
                }
            }
        }
    }

    /**
     * @param \Closure(): void $change
     * @param ?\Closure(): void $last
     */
    private function attempt(\Closure $change, ?\Closure $last): void
    {
        // SQLite: takes the writer's lock at the beginning, so that nothing that was read can change.
        $this->pdo->exec($this->isSqlite ? 'BEGIN IMMEDIATE' : 'BEGIN ISOLATION LEVEL SERIALIZABLE');
        $this->isInTransaction = true;
        try {
            $this->isAdministrator() || throw Failure::forbidden();
            $change();
            $this->isAdministrator() || throw new Refusal('lock-out', '', 409);
            $last === null || $last();
            $this->pdo->exec('COMMIT');
        } catch (\Throwable $error) {
            try {
                $this->pdo->exec('ROLLBACK');
            } catch (\PDOException) {  // the database has rolled back, or does when the connection ends
            }
            throw $error;
        } finally {
            $this->isInTransaction = false;
        }
    }

    /** By an entry of his own or of a group, with a password to log on with. */
    private function isAdministrator(): bool
    {
        $statement = 'SELECT COUNT(*) FROM Users WHERE UserID=? AND Passwd IS NOT NULL AND EXISTS (SELECT 1 FROM UserRights'
            . ' WHERE RightID=? AND (UserID=? OR UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?)))';
        $user = $this->administrator;
        return (int) $this->execute($statement, [$user, self::ADMINISTRATOR, $user, $user])->fetchColumn() > 0;
    }

    /** @param list<int|string|null> $values */
    private function execute(string $statement, array $values): \PDOStatement
    {
        $prepared = $this->pdo->prepare($statement);
        foreach ($values as $at => $value) {
            $type = match (true) {
                \is_int($value) => \PDO::PARAM_INT,
                $value === null => \PDO::PARAM_NULL,
                default => \PDO::PARAM_STR,
            };
            $prepared->bindValue($at + 1, $value, $type);
        }
        $prepared->execute();
        return $prepared;
    }

    private function open(Settings $settings): \PDO
    {
        $options = [\PDO::ATTR_ERRMODE => \PDO::ERRMODE_EXCEPTION, \PDO::ATTR_TIMEOUT => self::WAIT];
        if ($this->isSqlite && \defined('PDO::SQLITE_ATTR_OPEN_FLAGS')) {
            // A missing file is an error; SQLite would create an empty database.
            $options[\PDO::SQLITE_ATTR_OPEN_FLAGS] = \PDO::SQLITE_OPEN_READWRITE;
        }
        $user = $settings->administrationUser === '' ? null : $settings->administrationUser;
        $password = $settings->administrationPassword === '' ? null : $settings->administrationPassword;
        $pdo = new \PDO($settings->administration, $user, $password, $options);
        if ($this->isSqlite) {
            $pdo->exec('PRAGMA foreign_keys=ON');
        }
        return $pdo;
    }

    private static function failure(\PDOException $error): Failure
    {
        error_log('portal: administration: ' . $error->getMessage());
        return new Failure('database', 503);
    }
}
