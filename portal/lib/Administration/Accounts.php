<?php

declare(strict_types=1);

namespace Portal\Administration;

use Portal\Web\Failure;

/** The users and groups. Changes must run in UserDatabase::change. */
final class Accounts
{
    private const COLUMNS = 'SELECT UserID, UserName, CASE WHEN Passwd IS NULL THEN 0 ELSE 1 END, CASE WHEN UserID IN'
        . ' (SELECT GroupID FROM UserGroups) THEN 1 ELSE 0 END, ChangePasswd, TELOUser,'
        . ' CASE WHEN TELOPasswd IS NULL THEN 0 ELSE 1 END FROM Users';
    private const IS_GROUP = '(UserID IN (SELECT GroupID FROM UserGroups) OR (Passwd IS NULL AND ChangePasswd IS NULL))';
    private const KINDS = [
        '' => '1=1',
        'user' => 'NOT ' . self::IS_GROUP . ' AND Passwd IS NOT NULL',
        'disabled' => 'NOT ' . self::IS_GROUP . ' AND Passwd IS NULL',
        'group' => self::IS_GROUP,
    ];
    /** The tables with entries of a user; those that refer to others come first. */
    private const ENTRIES = [
        'UserGroups WHERE UserID',
        'UserGroups WHERE GroupID',
        'UserRights WHERE UserID',
        'UserEditRights WHERE UserID',
        'UserArchives WHERE UserID',
        'UserChannels WHERE UserID',
        'UserDocRights WHERE UserID',
        'UserSearchRights WHERE UserID',
        'Users WHERE UserID',
    ];

    public function __construct(private readonly UserDatabase $database)
    {
    }

    /** @return list<string> what find() takes */
    public static function kinds(): array
    {
        return array_keys(self::KINDS);
    }

    public function get(int $id): Account
    {
        $rows = $this->database->rows(self::COLUMNS . ' WHERE UserID=?', [$id]);
        return $rows === [] ? throw new Failure('no-account', 404) : self::account($rows[0]);
    }

    /** The account of a form. Refused when it has changed since the form was shown. */
    public function unchanged(int $id, string $stamp): Account
    {
        $account = $this->get($id);
        return $account->stamp() === $stamp ? $account : throw new Refusal('changed', '', 409);
    }

    /**
     * How many accounts have the text in their name, and a page of them by name.
     *
     * @param string $kind of kinds()
     * @param int $group whose members are listed; 0 lists all
     * @param \Closure(int): int $offset is given the count, and returns the number of the first one to list, from 0 on
     * @return array{int, list<Account>}
     */
    public function find(string $text, string $kind, int $group, int $size, \Closure $offset): array
    {
        $condition = ' WHERE ' . self::KINDS[$kind];
        $values = [];
        if ($text !== '') {
            $condition .= " AND LOWER(UserName) LIKE LOWER(?) ESCAPE '!'";
            $values[] = '%' . strtr($text, ['!' => '!!', '%' => '!%', '_' => '!_']) . '%';
        }
        if ($group !== 0) {
            $condition .= ' AND UserID IN (SELECT UserID FROM UserGroups WHERE GroupID=?)';
            $values[] = $group;
        }
        $count = $this->database->number("SELECT COUNT(*) FROM Users$condition", $values);
        $rows = $this->database->rows(
            self::COLUMNS . "$condition ORDER BY LOWER(UserName), UserID LIMIT ? OFFSET ?",
            [...$values, $size, $offset($count)],
        );
        return [$count, array_map(self::account(...), $rows)];
    }

    /** @return list<Account> */
    public function groups(): array
    {
        $rows = $this->database->rows(self::COLUMNS . ' WHERE ' . self::IS_GROUP . ' ORDER BY LOWER(UserName), UserID');
        return array_map(self::account(...), $rows);
    }

    /** @return list<Account> the groups that the user is a member of */
    public function groupsOf(int $user): array
    {
        $rows = $this->database->rows(
            self::COLUMNS . ' WHERE UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?)'
                . ' ORDER BY LOWER(UserName), UserID',
            [$user],
        );
        return array_map(self::account(...), $rows);
    }

    public function memberCount(int $group): int
    {
        return $this->database->number('SELECT COUNT(*) FROM UserGroups WHERE GroupID=?', [$group]);
    }

    /**
     * @param ?string $password in the component's encoding; null makes a group
     * @return int the ID
     */
    public function add(string $name, #[\SensitiveParameter] ?string $password, bool $mustChange): int
    {
        $this->requireFree($name);
        $id = $this->database->number('SELECT MAX(UserID) FROM Users') + 1;
        $this->database->run(
            'INSERT INTO Users (UserID, UserName, Passwd, ChangePasswd) VALUES (?, ?, ?, ?)',
            [$id, $name, $password, $password === null ? null : (int) $mustChange],
        );
        return $id;
    }

    public function rename(Account $account, string $name): void
    {
        if ($name !== $account->name) {
            $this->requireFree($name);
            $this->database->run('UPDATE Users SET UserName=? WHERE UserID=?', [$name, $account->id]);
        }
    }

    /** Without a password nobody logs on. The flag, which groups do not have, tells the user from a group. */
    public function disable(Account $account): void
    {
        $this->requirePassword($account);
        $this->database->run(
            'UPDATE Users SET Passwd=NULL, ChangePasswd=COALESCE(ChangePasswd, 0) WHERE UserID=?',
            [$account->id],
        );
    }

    /** Also enables the user. */
    public function setPassword(Account $account, #[\SensitiveParameter] string $password, bool $mustChange): void
    {
        if ($account->isGroup()) {
            throw new Refusal('group', $account->name);
        }
        $this->database->run(
            'UPDATE Users SET Passwd=?, ChangePasswd=? WHERE UserID=?',
            [$password, (int) $mustChange, $account->id],
        );
    }

    public function setMustChange(Account $account, bool $mustChange): void
    {
        $this->requirePassword($account);
        $this->database->run('UPDATE Users SET ChangePasswd=? WHERE UserID=?', [(int) $mustChange, $account->id]);
    }

    /**
     * The account of the archive system that the user works with.
     *
     * @param string $user "" takes it away
     * @param ?string $password in the component's encoding; null keeps the one that is stored
     */
    public function setArchiveAccount(Account $account, string $user, #[\SensitiveParameter] ?string $password): void
    {
        if ($user === '') {
            $this->database->run('UPDATE Users SET TELOUser=NULL, TELOPasswd=NULL WHERE UserID=?', [$account->id]);
        } elseif ($password !== null) {
            $this->database->run(
                'UPDATE Users SET TELOUser=?, TELOPasswd=? WHERE UserID=?',
                [$user, $password, $account->id],
            );
        } elseif ($account->archiveUser === '') {
            throw new Refusal('archive-password');
        } else {
            $this->database->run('UPDATE Users SET TELOUser=? WHERE UserID=?', [$user, $account->id]);
        }
    }

    /** With all rights and memberships. */
    public function remove(Account $account): void
    {
        foreach (self::ENTRIES as $entries) {
            $this->database->run("DELETE FROM $entries=?", [$account->id]);
        }
    }

    public function join(Account $user, Account $group): void
    {
        if ($user->isGroup()) {
            throw new Refusal('group-of-groups', $user->name);
        }
        if (!$group->isGroup() || $group->id === $user->id) {
            throw new Refusal('no-group', $group->name);
        }
        $values = [$user->id, $group->id];
        if ($this->database->number('SELECT COUNT(*) FROM UserGroups WHERE UserID=? AND GroupID=?', $values) === 0) {
            $this->database->run('INSERT INTO UserGroups (UserID, GroupID) VALUES (?, ?)', $values);
        }
    }

    public function leave(int $user, int $group): void
    {
        $this->database->run('DELETE FROM UserGroups WHERE UserID=? AND GroupID=?', [$user, $group]);
    }

    /** The log-on would never find a second row with the same name. */
    private function requireFree(string $name): void
    {
        if ($this->database->number('SELECT COUNT(*) FROM Users WHERE UserName=?', [$name]) > 0) {
            throw new Refusal('taken', $name, 409);
        }
    }

    private function requirePassword(Account $account): void
    {
        if ($account->isGroup() && !$account->hasPassword) {
            throw new Refusal('group', $account->name);
        }
    }

    /** @param list<int|string|null> $row */
    private static function account(array $row): Account
    {
        [$id, $name, $hasPassword, $hasMembers, $flag, $archiveUser, $hasArchivePassword] = $row;
        return new Account(
            (int) $id,
            (string) $name,
            (int) $hasPassword === 1,
            (int) $hasMembers === 1,
            $flag === null ? null : (int) $flag !== 0,
            (int) $hasArchivePassword === 1 ? (string) $archiveUser : '',
        );
    }
}
