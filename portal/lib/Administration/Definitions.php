<?php

declare(strict_types=1);

namespace Portal\Administration;

/** The definitions of document rights and search rights, which are made with SQL and given to users and groups here. */
final class Definitions
{
    /** Where a definition applies: for a channel and an archive, where "" and Null stand for all. */
    private const COVERS = "(Channel=? OR Channel='' OR Channel IS NULL) AND (Archive=? OR Archive='' OR Archive IS NULL)";

    public function __construct(private readonly UserDatabase $database)
    {
    }

    /** @return list<array{id: int, places: list<string>, lines: list<list<string>>, holders: list<array{int, string}>}> */
    public function ofDocuments(): array
    {
        $places = self::grouped($this->database->rows('SELECT DocRightID, Channel, Archive FROM DocRights'));
        $lines = self::grouped($this->database->rows(
            'SELECT DISTINCT DocRightID, FieldID, Operator, Val, Type, Grade FROM DocRightFields'
                . ' ORDER BY DocRightID, Grade, FieldID',
        ));
        $holders = $this->holders('UserDocRights', 'DocRightID');
        return self::definitions(array_keys($places), $places, $lines, $holders);
    }

    /** @return list<array{id: int, places: list<string>, lines: list<list<string>>, holders: list<array{int, string}>}> */
    public function ofSearches(): array
    {
        $ids = array_column($this->database->rows('SELECT SearchRightID FROM SearchRights'), 0);
        $places = self::grouped($this->database->rows(
            'SELECT SearchRightID, Channel, Archive FROM SearchRightArchives ORDER BY SearchRightID, Channel, Archive',
        ));
        $lines = self::grouped($this->database->rows(
            'SELECT SearchRightID, FieldID, Val, HideField, NoMatchcode FROM SearchRightFields ORDER BY SearchRightID, FieldID',
        ));
        $holders = $this->holders('UserSearchRights', 'SearchRightID');
        return self::definitions(array_map(intval(...), $ids), $places, $lines, $holders);
    }

    /**
     * The definitions that apply to a user in an archive.
     *
     * @param string $kind "document" or "search"
     * @return list<Source>
     */
    public function applying(int $user, string $kind, string $channel, string $archive): array
    {
        $statement = $kind === 'document'
            ? 'SELECT Users.UserID, UserName, R.DocRightID FROM Users, UserDocRights R WHERE Users.UserID=R.UserID'
                . ' AND R.DocRightID IN (SELECT DocRightID FROM DocRights WHERE ' . self::COVERS . ')'
            : 'SELECT Users.UserID, UserName, R.SearchRightID FROM Users, UserSearchRights R WHERE Users.UserID=R.UserID'
                . ' AND R.SearchRightID IN (SELECT SearchRightID FROM SearchRightArchives WHERE ' . self::COVERS . ')';
        $rows = $this->database->rows(
            $statement . ' AND (Users.UserID=? OR Users.UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?))'
                . ' ORDER BY CASE WHEN Users.UserID=? THEN 0 ELSE 1 END, UserName, 3',
            [$channel, $archive, $user, $user, $user],
        );
        return array_map(static function (array $row) use ($user, $kind): Source {
            [$id, $name, $definition] = $row;
            return new Source((int) $id, (string) $name, (int) $id === $user, "#$definition", $kind);
        }, $rows);
    }

    /** @return array<int, list<array{int, string}>> by definition: ID and name of the users and groups that have it */
    private function holders(string $table, string $column): array
    {
        $holders = [];
        $statement = "SELECT $table.$column, Users.UserID, UserName FROM Users, $table WHERE Users.UserID=$table.UserID"
            . ' ORDER BY UserName, Users.UserID';
        foreach ($this->database->rows($statement) as [$definition, $id, $name]) {
            $holders[(int) $definition][] = [(int) $id, (string) $name];
        }
        return $holders;
    }

    /**
     * @param list<list<int|string|null>> $rows
     * @return array<int, list<list<string>>> by the first column
     */
    private static function grouped(array $rows): array
    {
        $groups = [];
        foreach ($rows as $row) {
            $groups[(int) array_shift($row)][] = array_map(strval(...), $row);
        }
        return $groups;
    }

    /**
     * @param list<int> $ids
     * @param array<int, list<list<string>>> $places
     * @param array<int, list<list<string>>> $lines
     * @param array<int, list<array{int, string}>> $holders
     * @return list<array{id: int, places: list<string>, lines: list<list<string>>, holders: list<array{int, string}>}>
     */
    private static function definitions(array $ids, array $places, array $lines, array $holders): array
    {
        sort($ids);
        $shown = static fn(array $place): string =>
            implode('/', array_map(static fn(string $name): string => $name === '' ? '*' : $name, $place));
        return array_map(static fn(int $id): array => [
            'id' => $id,
            'places' => array_map($shown, $places[$id] ?? []),
            'lines' => $lines[$id] ?? [],
            'holders' => $holders[$id] ?? [],
        ], $ids);
    }
}
