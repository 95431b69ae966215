<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Users\FolderRights;

/** The rights that are given to an account itself. Changes must run in UserDatabase::change. */
final class Rights
{
    /** The kinds of rights: table, column, and whether the entry is a number. */
    private const KINDS = [
        'general' => ['UserRights', 'RightID', true],
        'channel' => ['UserChannels', 'Channel', false],
        'archive' => ['UserArchives', 'Archive', false],
        'document' => ['UserDocRights', 'DocRightID', true],
        'search' => ['UserSearchRights', 'SearchRightID', true],
    ];
    private const DEFINITIONS = ['document' => 'DocRights', 'search' => 'SearchRights'];
    private const LARGEST = 1000;

    public function __construct(private readonly UserDatabase $database)
    {
    }

    /** @return list<string> */
    public static function kinds(): array
    {
        return array_keys(self::KINDS);
    }

    public static function isNumber(string $kind): bool
    {
        return self::KINDS[$kind][2];
    }

    /** Whether an entry that another program may have stored gives anything: a search can be restricted to it. */
    public static function isUsable(string $kind, int|string $entry): bool
    {
        return match ($kind) {
            'channel' => FolderRights::isChannel((string) $entry),
            'archive' => FolderRights::isArchive((string) $entry),
            default => true,
        };
    }

    /** The value that the database holds for what was typed. Raises Refusal. */
    public static function value(string $kind, string $typed): int|string
    {
        return match (true) {
            self::KINDS[$kind][2] => Names::number($typed),
            $kind === 'archive' => Names::archive($typed),
            default => Names::channel($typed),
        };
    }

    /** @return list<int|string> in order */
    public function of(int $account, string $kind): array
    {
        [$table, $column, $isNumber] = self::KINDS[$kind];
        $rows = $this->database->rows("SELECT $column FROM $table WHERE UserID=? ORDER BY $column", [$account]);
        return array_map(static fn(array $row): int|string => $isNumber ? (int) $row[0] : (string) $row[0], $rows);
    }

    /** @return list<array{string, int, int, int}> archive, and the numbers for new, edit and delete */
    public function editRightsOf(int $account): array
    {
        $rows = $this->database->rows(
            'SELECT Archive, New, Edit, Del FROM UserEditRights WHERE UserID=? ORDER BY Archive',
            [$account],
        );
        return array_map(
            static fn(array $row): array => [(string) $row[0], (int) $row[1], (int) $row[2], (int) $row[3]],
            $rows,
        );
    }

    public function give(Account $account, string $kind, int|string $value): void
    {
        [$table, $column] = self::KINDS[$kind];
        if (isset(self::DEFINITIONS[$kind])) {
            // A definition that does not exist would silently restrict nothing.
            $definitions = self::DEFINITIONS[$kind];
            $count = $this->database->number("SELECT COUNT(*) FROM $definitions WHERE $column=?", [$value]);
            $count > 0 || throw new Refusal('no-definition', (string) $value);
        }
        $values = [$account->id, $value];
        if ($this->database->number("SELECT COUNT(*) FROM $table WHERE UserID=? AND $column=?", $values) === 0) {
            $this->database->run("INSERT INTO $table (UserID, $column) VALUES (?, ?)", $values);
        }
    }

    /** The value as it is stored, not checked. */
    public function take(Account $account, string $kind, int|string $value): void
    {
        [$table, $column] = self::KINDS[$kind];
        $this->database->run("DELETE FROM $table WHERE UserID=? AND $column=?", [$account->id, $value]);
    }

    /**
     * The numbers of an archive; three times 0 takes the entry away.
     *
     * @param array{int, int, int} $numbers new, edit, delete; with those of the groups a sum above 0 allows
     * @param string $was the numbers that the form showed, "1,0,0", or "" for no entry
     */
    public function setEditRight(Account $account, string $archive, array $numbers, string $was): void
    {
        foreach ($numbers as $number) {
            abs($number) <= self::LARGEST || throw new Refusal('number', (string) $number);
        }
        $key = [$account->id, $archive];
        $now = $this->database->rows('SELECT New, Edit, Del FROM UserEditRights WHERE UserID=? AND Archive=?', $key);
        if (implode(',', $now[0] ?? []) !== $was) {
            throw new Refusal($was === '' ? 'there-already' : 'changed', Names::shown($archive), 409);
        }
        if ($numbers === [0, 0, 0]) {
            $this->database->run('DELETE FROM UserEditRights WHERE UserID=? AND Archive=?', $key);
        } elseif ($now === []) {
            $statement = 'INSERT INTO UserEditRights (New, Edit, Del, UserID, Archive) VALUES (?, ?, ?, ?, ?)';
            $this->database->run($statement, [...$numbers, ...$key]);
        } else {
            $statement = 'UPDATE UserEditRights SET New=?, Edit=?, Del=? WHERE UserID=? AND Archive=?';
            $this->database->run($statement, [...$numbers, ...$key]);
        }
    }
}
