<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The web users of a database: log-on, groups and rights. Rights fail closed: what cannot be read is an exception, never
 * "no restriction". Every method raises DatabaseFailed when the database does not carry a statement out or what it holds
 * cannot be read.
 */
final class Users
{
    use Raw\NotCopied;

    private QueryAccess $access;

    /**
     * @param string $database connection string
     * @param string $session names the log file, "" for "client"
     * @param string $logDir "" logs nothing
     *
     * @throws BadArgument without a database
     * @throws DatabaseFailed when it cannot be opened
     */
    public function __construct(#[\SensitiveParameter] string $database, string $session = '', string $logDir = '')
    {
        self::checkNamed($database);
        $this->access = new QueryAccess(new Settings(database: $database, session: $session, logDir: $logDir));
    }

    /** @internal The users of an archive's own connection. */
    public static function of(QueryAccess $access, Settings $settings): self
    {
        self::checkNamed($settings->database);
        $users = (new \ReflectionClass(self::class))->newInstanceWithoutConstructor();
        $users->access = $access;
        return $users;
    }

    /** Closes the database, at the latest when the object ends; of an archive's users the archive, too. */
    public function close(): void
    {
        $this->access->close();
    }

    /** The user's ID, or null when the name or the password is wrong. */
    public function logOn(string $name, #[\SensitiveParameter] string $password): ?int
    {
        try {
            $id = $this->access->fromDatabase($this->access->query()->CheckLogon($name, $password));
        } catch (BadArgument) {
            return null;  // a name that no statement may hold, or that the code page has not, so no user has it
        }
        return $id > 0 ? $id : null;
    }

    /** The ID of the first user of that name; null without one. */
    public function find(string $name): ?int
    {
        $id = $this->access->fromDatabase($this->access->query()->CheckLogon(Text::request($name, 'the user')));
        return $id > 0 ? $id : null;
    }

    /**
     * Returns the new user's ID. Several users may have one name. Raises BadArgument for a name or password that cannot be
     * stored.
     */
    public function create(string $name, #[\SensitiveParameter] string $password, ?Account $account = null): int
    {
        $arguments = [Text::request($name, 'the user'), $this->storable($password, 'the password')];
        if ($account !== null) {
            $arguments[] = Text::request($account->user, 'the account');
            $arguments[] = $this->storable($account->password, "the account's password");
        }
        return $this->access->fromDatabase($this->access->query()->WriteUserToDB(...$arguments));
    }

    /** False when the old password is wrong. Raises BadArgument for a password that cannot be stored. */
    public function changePassword(
        string $name,
        #[\SensitiveParameter] string $old,
        #[\SensitiveParameter] string $password,
    ): bool {
        return $this->access->fromDatabase($this->access->query()->ChangePasswd(
            Text::request($name, 'the user'),
            Text::request($old, 'the password'),
            $this->storable($password, 'the new password'),
        )) > 0;
    }

    /** Whether the user has the flag that he must change his password. */
    public function mustChangePassword(int $user): bool
    {
        $this->access->fromDatabase($this->access->query()->GetUserChangePasswd($user, $flag));
        return Text::number($flag) !== 0;
    }

    public function setMustChangePassword(int $user, bool $must): void
    {
        $this->access->fromDatabase($this->access->query()->SetUserChangePasswd($user, $must));
    }

    /** The user's account of the archive system; null for a user without one. */
    public function accountOf(int $user): ?Account
    {
        $this->access->fromDatabase($this->access->query()->GetUserTELOUser($user, $name, $password));
        return (string) $name === '' ? null : new Account($name, $password);
    }

    /** @return list<int> what a user has himself and through the groups he is a member of, as all that follow */
    public function rights(int $user): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserRights($user, $list));
        return array_map(Text::number(...), Text::fields((string) $list));
    }

    /** @return list<string> names */
    public function groups(int $user): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserGroups($user, $list));
        return \strlen((string) $list) < 2 ? [] : explode('],[', substr($list, 1, -1));
    }

    /** @return list<string> names */
    public function channels(int $user): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserChannels($user, $list));
        return Text::fields((string) $list);
    }

    /** @return list<string> "$(#channel)\archive", or "archive" for that of every channel */
    public function archives(int $user): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserArchives($user, $list));
        return Text::fields((string) $list);
    }

    /** @return list<EditRight> */
    public function editRights(int $user): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserEditRights($user, $list));
        // The flags stand behind the name, which may hold commas itself.
        return array_map(static function (string $line): EditRight {
            preg_match('/^(.*?)(,N)?(,E)?(,D)?$/D', $line, $part);
            return new EditRight(
                $part[1],
                ($part[2] ?? '') !== '',
                ($part[3] ?? '') !== '',
                ($part[4] ?? '') !== '',
            );
        }, Text::lines((string) $list));
    }

    /** @return list<DocumentCondition> by which documents of the archive are shown, by definition */
    public function documentConditions(int $user, string $channel, string $archive): array
    {
        $this->access->fromDatabase($this->access->query()->GetUserDocRights(
            $user,
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $list,
        ));
        return array_map(
            static fn(array $fields): DocumentCondition => new DocumentCondition(...$fields),
            self::records((string) $list, 5),
        );
    }

    /** What restricts the user's searches in the archive. */
    public function searchRights(int $user, string $channel, string $archive): SearchRights
    {
        $this->access->fromDatabase($this->access->query()->GetUserSearchRights(
            $user,
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $values,
            $hidden,
            $withoutMatchcode,
        ));
        return new SearchRights(
            self::records((string) $values, 2),
            Text::fields((string) $hidden),
            Text::fields((string) $withoutMatchcode),
        );
    }

    /**
     * The expression that restricts a search to what the user may see, for Archive::search: of each of his channels the
     * archives that are listed for him there, or the whole channel when none is. "" when he may see nothing. An archive
     * is listed as "$(#channel)\archive", or by its name for every channel.
     */
    public function folderRights(int $user): string
    {
        $archives = array_filter($this->archives($user), static fn(string $archive): bool => $archive !== '');
        $channels = array_filter($this->channels($user), static fn(string $channel): bool => $channel !== '');
        sort($channels, SORT_STRING);  // the database gives them in any order
        $expression = '';
        foreach ($channels as $channel) {
            $start = "$(#$channel)\\";
            $listed = '';
            foreach ($archives as $archive) {
                if (str_starts_with($archive, $start)) {
                    $listed .= self::reference($channel, substr($archive, \strlen($start)));
                } elseif (!str_starts_with($archive, '$(#')) {
                    $listed .= self::reference($channel, $archive);
                }
            }
            $expression .= $listed === '' ? self::reference($channel, '') : $listed;
        }
        return $expression;
    }

    /**
     * @internal The lines of a list from the database, each a record of that many fields.
     *
     * @return list<list<string>>
     */
    public static function records(string $list, int $fieldCount): array
    {
        $records = array_map(Text::fields(...), Text::lines($list));
        foreach ($records as $fields) {
            if (\count($fields) !== $fieldCount) {
                throw new DatabaseFailed('a list of the database is malformed: a value holds "^,^" or a line end');
            }
        }
        return $records;
    }

    /** Raises DatabaseFailed for a name that would change the expression. */
    private static function reference(string $channel, string $archive): string
    {
        $reference = "$(#$channel)" . ($archive === '' ? '' : "\\$archive");
        if (strpbrk($channel, ';()') !== false || str_contains($archive, ';')) {
            throw new DatabaseFailed("\"$reference\" cannot be part of a folder rights expression");
        }
        return "$reference;";
    }

    private static function checkNamed(string $database): void
    {
        if ($database === '') {
            throw new BadArgument('the settings name no web user database');
        }
    }

    /** The database's encoding of a password loses characters with high codes, depending on their position. */
    private function storable(#[\SensitiveParameter] string $password, string $what): string
    {
        $query = $this->access->query();
        if ($query->Decode($query->Encode(Text::request($password, $what))) !== $password) {
            throw new BadArgument("$what cannot be stored: use at most 47 characters, without accents");
        }
        return $password;
    }
}
