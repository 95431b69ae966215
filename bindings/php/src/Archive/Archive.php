<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The archive for page authors: lists, searches, documents and files, with exceptions and UTF-8 texts.
 *
 * Every method that makes a request raises Refused, TimedOut, ConnectionFailed, AllServersBusy or Cancelled, and Error
 * for an answer that cannot be read; BadArgument for a value that cannot be sent, before any request. A server that
 * fails is passed over by later requests of the process while another one is free. Nothing that was sent is sent again.
 *
 * An archive belongs to the process that made it: WrongThread in a forked one. It carries out one method after the other,
 * so a signal handler, which PHP may run in the middle of a method, uses an archive of its own.
 */
final class Archive
{
    use DocumentMethods;
    use FileMethods;
    use Raw\NotCopied;

    private readonly Settings $settings;
    private readonly QueryAccess $access;
    private ?Users $users = null;

    /**
     * Connects to a server with the first request only. The first archive of a process names its servers.
     *
     * @param string $hosts "host,port[,print flag[,user[,encoded password]]]", joined by "|"
     * @param string $user account of the archive system
     * @param int $timeout seconds for one request, with all servers that are tried, 1 to 86400
     * @param string $session names the log file, "" for "client"
     * @param string $logDir "" logs nothing
     * @param string $blobLocal directory of received files as this machine reaches it
     * @param string $blobRemote the same one as the query servers reach it; "" for the local path
     * @param string $database connection string of the web user database; "" for none
     * @param string $changedExtensions "OLD-NEW" rules for the extensions of received files, separated by ","
     * @param string $webUser the web user, as the log names him
     * @param ?\DateTimeInterface $webUserLogOn when he logged on; the log shows the local time of the date
     * @param bool $spread begins the list of servers at a place of each process's own, so that the workers of a pool do
     *     not all ask the first server
     *
     * @throws BadArgument for a setting that cannot be used, and for other servers than those of the process
     * @throws DatabaseFailed when the database cannot be opened
     * @throws LibraryFailed when the shared library cannot be used
     */
    public function __construct(
        string $hosts = '',
        string $user = '',
        #[\SensitiveParameter] string $password = '',
        int $timeout = 30,
        string $session = '',
        string $logDir = '',
        string $blobLocal = '',
        string $blobRemote = '',
        #[\SensitiveParameter] string $database = '',
        string $changedExtensions = '',
        string $webUser = '',
        string $webUserAddress = '',
        ?\DateTimeInterface $webUserLogOn = null,
        bool $spread = true,
    ) {
        $this->settings = new Settings(
            $hosts,
            $user,
            $password,
            $timeout,
            $session,
            $logDir,
            $blobLocal,
            $blobRemote,
            $database,
            $changedExtensions,
            $webUser,
            $webUserAddress,
            $webUserLogOn,
            $spread,
        );
        $this->access = new QueryAccess($this->settings);
    }

    /**
     * Gives back the query server and closes the database, at the latest when the object ends. Hit lists and documents stay;
     * every other use of the archive and its users is an Error.
     */
    public function close(): void
    {
        $this->access->close();
    }

    /** The instance that the archive stands on, for what the raw level alone has. */
    public function query(): Raw\Query
    {
        return $this->access->query();
    }

    /** The web users of the archive's database. Raises BadArgument when the settings name none. */
    public function users(): Users
    {
        return $this->users ??= Users::of($this->access, $this->settings);
    }

    /** @return list<Channel> sorted by name, whatever the letter case; without their archives */
    public function channels(): array
    {
        $access = $this->access;
        $count = $access->count($access->query()->TELOGetChannelsInit($access->status()));
        $rows = $access->rows('TELOGetChannelsNext', $count, 'channel', [0]);
        return $this->map($rows, static fn(array $row): Channel => new Channel(...$row));
    }

    /** @return list<Channel> every channel with its archives, in the server's order */
    public function archives(): array
    {
        $access = $this->access;
        $query = $access->query();
        $channels = [];
        for ($count = $access->count($query->TELOGetAllArchivesExtInit($access->status())); $count > 0; --$count) {
            $archiveCount = $query->TELOGetAllArchivesExtNext($name, $description);
            $access->checkOwn('a channel of the answer is malformed');
            $rows = $access->rows('TELOGetAllArchivesExtNextArchive', $archiveCount, 'archive', [0]);
            $archives = $this->map($rows, static fn(array $row): ArchiveEntry => new ArchiveEntry(...$row));
            $channels[] = new Channel($name, $description, $archives);
        }
        return $channels;
    }

    /** @return list<string> the query formats of an archive */
    public function formats(string $channel, string $archive): array
    {
        $access = $this->access;
        $count = $access->count($access->query()->TELOGetQueryFormatListInit(
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $access->status(),
        ));
        return $this->map($access->rows('TELOGetQueryFormatListNext', $count, 'query format'), 'current');
    }

    /** What may be done in the archive. */
    public function properties(string $channel, string $archive): ArchiveProperties
    {
        $access = $this->access;
        $fifth = $access->query()->TELOGetArchiveProperties(
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $create,
            $edit,
            $delete,
            $index,
            $access->status(),
        );
        $access->count($fifth);
        return new ArchiveProperties(
            Text::isTrue((string) $create),
            Text::isTrue((string) $edit),
            Text::isTrue((string) $delete),
            Text::isTrue((string) $index),
            (string) $fifth,
        );
    }

    /** @return list<Mask> the forms of the archive, in the server's order */
    public function masks(string $channel, string $archive): array
    {
        $access = $this->access;
        $query = $access->query();
        $count = $access->count($query->TELOGetMasksInit(
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $access->status(),
        ));
        $masks = [];
        for (; $count > 0; --$count) {
            $fieldCount = $query->TELOGetMasksNext($name);
            $access->checkOwn('a mask of the answer is malformed');
            $rows = $access->rows('TELOGetMasksNextField', $fieldCount, 'mask field', range(0, 7));
            $masks[] = new Mask($name, $this->map($rows, static fn(array $row): MaskField => new MaskField(
                Text::number($row[1]),
                Text::number($row[2]),
                $row[3],
                $row[4],
                Text::isTrue($row[5]),
                $row[6],
                Text::isTrue($row[7]),
                $row[8],
            )));
        }
        return $masks;
    }

    /**
     * Searches the archives of all channels, or those that $folderRights allow.
     *
     * @param string $query in the server's query language
     * @param int $max the most hits that are listed; 0: all
     * @param int $queryMax a query with more hits is refused; 0: no limit
     * @param string $format one that formats() lists; "" for all
     * @param ?string $folderRights the archives that may be searched, as Users::folderRights makes it. null restricts
     *     nothing. An empty text allows no archive: the search then has no hits and makes no request.
     * @param string $layout id of a layout, whose keys and values HitList::$layout has; "" for none
     * @param string $layoutField id of a field for the layout; "" for none
     * @param string $sort column to sort by, as HitList::column takes it; "" keeps the server's order
     */
    public function search(
        string $query,
        int $max = 100,
        int $queryMax = 1000,
        string $format = '',
        ?string $folderRights = null,
        string $layout = '',
        string $layoutField = '',
        string $sort = '',
        Order $order = Order::Ascending,
    ): HitList {
        // The server would take such an expression for no restriction.
        if ($folderRights !== null && trim($folderRights, '; ') === '') {
            return new HitList();
        }
        if ($max < 0 || $queryMax < 0) {
            throw new BadArgument('the limits of a search are 0 or more');
        }
        [$count, [$keys, $values, $total, $isMultiPageImage]] = $this->access->request('TELOQueryArchiveInit', [
            Text::request($query, 'the query'),
            $max,
            $queryMax,
            Text::request($format, 'the format'),
            Text::request($folderRights ?? '', 'the folder rights'),
            Text::request($layoutField, 'the layout field'),
            Text::request($layout, 'the layout'),
        ], 4);
        $isImage = Text::isTrue($isMultiPageImage);
        $hits = new HitList($this->access, $count, Text::number($total), $this->layout($keys, $values), $isImage);
        if ($sort !== '' && $hits->columns() !== []) {
            $hits->sort($hits->column($sort), $order);
        }
        return $hits;
    }

    /** @return list<Outliner> needs a database */
    public function outline(string $channel, string $archive): array
    {
        $access = $this->access;
        $access->fromDatabase($access->query()->GetOutliner(
            Text::request($channel, 'the channel'),
            Text::request($archive, 'the archive'),
            $lines,
        ));
        return array_map(
            static fn(array $fields): Outliner => new Outliner(...$fields),
            Users::records((string) $lines, 2),
        );
    }

    /** @return list<OutlinerNode> the children of a node, the roots for the parent 0; needs a database */
    public function nodes(string $outlinerId, int $parent = 0): array
    {
        $access = $this->access;
        $count = $access->fromDatabase(
            $access->query()->GetOutlinerContentInit(Text::request($outlinerId, 'the outliner'), $parent),
        );
        $rows = $access->rows('GetOutlinerContentNext', $count, 'node', range(0, 6));
        return $this->map($rows, static fn(array $row): OutlinerNode => new OutlinerNode(
            Text::number($row[1]),
            Text::number($row[2]),
            $row[0],
            $row[3],
            $row[4],
            $row[5],
            Text::isTrue($row[6]),
            Text::number($row[7]),
        ));
    }

    /**
     * The query that finds the documents of a node; "" for one without a condition. Needs a database.
     *
     * @param int $node OutlinerNode::$id
     */
    public function nodeQuery(int $node): string
    {
        return $this->access->fromDatabase($this->access->query()->GetOutlinerSearchExpr($node));
    }

    /** What a server answers when it is asked whether it is alive. health() asks each of them. */
    public function live(): string
    {
        return $this->access->answer($this->access->query()->LiveCheck());
    }

    /** @return list<Raw\Server> the query servers of this process, from the one on that it asks first */
    public function servers(): array
    {
        return $this->access->servers();
    }

    /**
     * Asks each server of the list whether it is alive, up to 16 at once. Cancelled by cancel() like a request.
     *
     * @return list<ServerHealth> in the order of the setting
     */
    public function health(): array
    {
        $table = [];
        foreach ($this->servers() as $server) {
            $table["$server->host,$server->port"] = $server;
        }
        $rows = $this->access->query()->checkServers($this->settings->hosts);
        return $this->map($rows, static function (array $row) use ($table): ServerHealth {
            [$host, $port, $isAlive, $text, $milliseconds] = $row;
            $used = $table["$host,$port"] ?? null;
            return new ServerHealth(
                $host,
                (int) $port,
                $isAlive === '1',
                $text,
                (int) $milliseconds,
                $used?->isBusy ?? false,
                $used?->session ?? '',
            );
        });
    }

    /**
     * Sends a command as it is, "^Command^,^parameter^". What comes from a visitor must not be part of it unchecked.
     *
     * @return list<string> the lines of the answer
     */
    public function direct(string $command): array
    {
        $answer = $this->access->query()->DirectQuery(Text::setting($command, 'the command'));
        return explode("\r\n", $this->access->answer($answer));
    }

    /** What became of the last request; empty before the first one. */
    public function lastRequest(): RequestReport
    {
        return $this->access->report();
    }

    /**
     * Calls $call after each request but those of health(), whatever became of it. It cannot use this archive.
     *
     * @param ?callable(RequestReport): mixed $call null calls nothing
     */
    public function onRequest(?callable $call): void
    {
        $this->access->onRequest($call === null ? null : $call(...));
    }

    /** Ends each later request at once with Cancelled, until resume() is called. */
    public function cancel(): void
    {
        $this->access->cancel();
    }

    /** Takes cancel() back. */
    public function resume(): void
    {
        $this->access->resume();
    }

    /** "10=Title;14=Date" comes as "10,14" and "Title,Date". */
    private function layout(string $keys, string $values): array
    {
        if ($keys === '') {
            return [];
        }
        [$keys, $values] = [explode(',', $keys), explode(',', $values)];
        $count = min(\count($keys), \count($values));
        return array_combine(\array_slice($keys, 0, $count), \array_slice($values, 0, $count));
    }

    /** @return list<mixed> what $make gives for each row */
    private function map(Raw\Rows $rows, callable $make): array
    {
        $made = [];
        for ($row = 0; $row < \count($rows); ++$row) {
            $made[] = $make($rows->row($row));
        }
        return $made;
    }
}
