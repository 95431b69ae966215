<?php

declare(strict_types=1);

namespace Oxaqrycln;

use Oxaqrycln\Raw\Query;
use Oxaqrycln\Raw\Rows;

/**
 * An instance of the component, and the one place where its failures become exceptions.
 *
 * @internal
 */
final class QueryAccess
{
    private const SUCCEEDED = 1;
    private const REFUSED = 2;
    private const TIMED_OUT = 3;
    private const CONNECTION_FAILED = 4;
    private const ALL_BUSY = 5;
    private const CANCELLED = 6;
    private const FAILED = 7;
    private const OUT_OF_MEMORY = 7;
    private const INVALID_PROCEDURE_CALL = 5;
    private const OBJECT_NOT_SET = 91;

    private readonly Query $query;
    private mixed $status = null;
    /** The hits of the last search until they are read. */
    private ?\WeakReference $unread = null;
    private ?\Closure $onRequest = null;
    private bool $isReporting = false;
    /** Of the last request that was reported. */
    private int $requestNumber = 0;

    public function __construct(Settings $settings)
    {
        $this->query = $query = new Query();
        $query->strTELOUser = Text::request($settings->user, 'the user');
        $query->strTELOPwd = Text::setting($settings->password, 'the password');
        $query->strSessionID = Text::request($settings->session === '' ? 'client' : $settings->session, 'the session');
        $query->strBlobPathLocal = Text::setting($settings->blobLocal, 'the local blob directory');
        $remote = $settings->blobRemote === '' ? $settings->blobLocal : $settings->blobRemote;
        $query->strBlobPathRemote = Text::setting($remote, 'the remote blob directory');
        $query->strChangeFileExt = Text::setting($settings->changedExtensions, 'the changed extensions');
        $query->strUserName = Text::setting($settings->webUser, 'the web user');
        $query->strUserIP = Text::setting($settings->webUserAddress, 'the address of the web user');
        $query->lngRequestTimeout = $settings->timeout;
        if ($settings->webUserLogOn !== null) {
            $query->datUserLoginTime = $settings->webUserLogOn;
        }
        if ($settings->hosts !== '') {
            $this->assignServers(Text::setting($settings->hostsFromOwnPlace(), 'the list of query servers'));
        }
        $logDir = Text::setting($settings->logDir, 'the log directory');
        $query->strDBConnect = Text::setting($settings->database, 'the database');
        // Init writes the connection string, which may hold a password, into the log, so it has none yet.
        if (!$query->Init($settings->database !== '')) {
            throw $settings->database === ''
                ? new Error('the component cannot be initialised: ' . $this->handledText())
                : new DatabaseFailed('the web user database cannot be opened: ' . $this->handledText());
        }
        $query->strDebugLogPath = $logDir;
    }

    /**
     * The instance, for the next call. Reads the hits of the last search first, if they have not been read.
     *
     * @throws BadArgument inside onRequest, whose caller still has to read the answer
     */
    public function query(): Query
    {
        if ($this->isReporting) {
            throw new BadArgument('the function given to onRequest() cannot use the archive that calls it: keep the report, '
                . 'and use the archive later');
        }
        if ($this->unread !== null) {
            $list = $this->unread->get();
            $this->unread = null;
            $list?->read();
        }
        return $this->query;
    }

    public function readLater(HitList $list): void
    {
        $this->unread = \WeakReference::create($list);
    }

    /** The output of the next method for its error text. */
    public function &status(): mixed
    {
        $this->status = null;
        return $this->status;
    }

    /**
     * Calls a method that makes a request, for a page's most frequent ones: faster than to call it by its own name.
     *
     * @param list<mixed> $inputs
     * @return array{int, list<string>} its count, and its outputs without the error text
     */
    public function request(string $method, array $inputs, int $outputCount): array
    {
        $texts = $this->query()->callForTexts($method, $inputs, $outputCount + 1);
        $count = (int) array_shift($texts);
        $this->status = array_pop($texts);
        return [$this->count($count), $texts];
    }

    /** Of a method that makes a request: its count. Raises what the failure was. */
    public function count(mixed $result): int
    {
        $this->reportRequest();
        $count = \is_string($result) ? 0 : (int) $result;  // the archive properties are a text
        // Only a failed request writes the error text.
        if ($count < 0) {
            throw (string) $this->status === '' ? $this->ownFailure() : $this->failure($this->status);
        }
        if ($this->query->handledNumber() === self::OUT_OF_MEMORY) {
            throw new Error('out of memory: the answer is not complete');
        }
        return $count;
    }

    /** The same for a method that returns the text of an answer or of an error. */
    public function answer(string $result): string
    {
        $this->reportRequest();
        if ($this->query->outcome()[0] !== self::SUCCEEDED) {
            throw $this->failure($result);
        }
        if ($this->query->handledNumber() !== 0) {
            throw $this->ownFailure();  // the outcome may be that of an earlier request
        }
        return $result;
    }

    /** Of a method that makes no request. */
    public function checkOwn(string $what): void
    {
        if ($this->query->handledNumber() !== 0) {
            throw new Error("$what: " . $this->handledText());
        }
    }

    /** Of a method that writes a file of its own. */
    public function checkFile(string $what): void
    {
        if ($this->query->handledNumber() !== 0) {
            throw new FileFailed("$what: " . $this->handledText());
        }
    }

    /** Of a method on the database. */
    public function fromDatabase(mixed $result): mixed
    {
        return match ($this->query->handledNumber()) {
            0 => $result,
            self::OBJECT_NOT_SET => throw new BadArgument('the settings name no web user database'),
            // A text that must not be part of a statement.
            self::INVALID_PROCEDURE_CALL => throw new BadArgument($this->handledText()),
            default => throw new DatabaseFailed($this->handledText()),
        };
    }

    /**
     * The records of a list, one after the other as lists of texts: the result of the method, then the outputs.
     *
     * @param list<int> $columns as Raw\Instance::fetchRows takes them
     */
    public function rows(string $method, int $count, string $what, array $columns = []): Rows
    {
        $rows = $this->query->fetchRows($method, max(0, $count), $columns);
        if (\count($rows) < $count) {
            throw new Error("$what " . \count($rows) + 1 . ' of the answer is malformed: ' . $this->handledText());
        }
        return $rows;
    }

    public function onRequest(?\Closure $call): void
    {
        $this->onRequest = $call;
        $this->requestNumber = $this->query->requestNumber();
    }

    /** @return list<Raw\Server> */
    public function servers(): array
    {
        return $this->query->servers();
    }

    public function cancel(): void
    {
        $this->query->cancel();
    }

    public function resume(): void
    {
        $this->query->resume();
    }

    /** What became of the last request. */
    public function report(): RequestReport
    {
        [$kind, $milliseconds, $wasSent, $count] = $this->query->outcome();
        // What an attempt without an error of its own came to; only the last one ends as the request does.
        $ownText = match ($kind) {
            self::SUCCEEDED, self::REFUSED => '',
            self::CANCELLED => 'cancelled',
            self::FAILED => 'failed',
            default => 'no answer',
        };
        $attempts = [];
        for ($i = 0; $i < $count; ++$i) {
            [$host, $port, $error, $duration] = $this->query->attempt($i);
            $attempts[] = new Attempt($host, $port, $error === '' ? $ownText : $error, $duration);
        }
        return new RequestReport($attempts, $milliseconds, $wasSent);
    }

    /** Closes the connections to server and database. A list of hits that has not been read is read before. */
    public function close(): void
    {
        $this->query()->free();
    }

    private function reportRequest(): void
    {
        $number = $this->onRequest === null ? $this->requestNumber : $this->query->requestNumber();
        if ($number === $this->requestNumber) {
            return;  // the method failed before it made one
        }
        $this->requestNumber = $number;
        $this->isReporting = true;
        try {
            ($this->onRequest)($this->report());
        } finally {
            $this->isReporting = false;
        }
    }

    private function assignServers(string $hosts): void
    {
        $before = $this->query->servers();
        $this->query->RemoteHosts = $hosts;
        if ($this->query->handledNumber() !== 0) {
            throw new BadArgument('the list of query servers is not valid: ' . $this->handledText());
        }
        // The servers of a process are those that its first instance named, from the place on where its list began.
        $used = array_map(static fn(Raw\Server $server): string => "$server->host,$server->port", $before);
        $wanted = array_map(static function (string $entry): string {
            [$host, $port] = explode(',', $entry) + ['', ''];
            return "$host," . (int) $port;
        }, explode('|', $hosts));
        sort($used);
        sort($wanted);
        if ($before !== [] && $used !== $wanted) {
            throw new BadArgument(
                'this process already uses other query servers: give each list of servers a pool of processes of its own',
            );
        }
        $this->query->trySickServersLast();
    }

    private function ownFailure(): Error
    {
        $isHandled = $this->query->handledNumber() !== 0;
        return new Error($isHandled ? $this->handledText() : 'the answer of the query server is empty');
    }

    private function failure(string $text): Error
    {
        $kind = $this->query->outcome()[0];
        if ($kind === self::ALL_BUSY && $this->query->servers() === []) {
            return new BadArgument('the settings name no query servers: give the archive its "hosts"');
        }
        $class = match ($kind) {
            self::REFUSED => Refused::class,
            self::TIMED_OUT => TimedOut::class,
            self::CONNECTION_FAILED => ConnectionFailed::class,
            self::ALL_BUSY => AllServersBusy::class,
            self::CANCELLED => Cancelled::class,
            default => Error::class,
        };
        return new $class($text, $this->report());
    }

    private function handledText(): string
    {
        return implode(' - ', $this->query->handledError());
    }
}
