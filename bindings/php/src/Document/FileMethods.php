<?php

declare(strict_types=1);

namespace Oxaqrycln;

/**
 * The methods of Archive on files, printed lists and transport orders. Files need a local blob directory. Those that receive
 * one return its path there, and the caller removes it; given a stream in $into, they copy the file to it and remove it
 * themselves. The stream stays open.
 */
trait FileMethods
{
    /**
     * Has the server put a file into the blob directory: its path there, or null when there is no such content. Raises
     * Error when the file is not there or has another length than the server says.
     *
     * @param ?resource $into
     */
    public function fetch(DocumentName $name, Content $content, mixed $into = null): ?string
    {
        $key = [...$this->key($name), Text::request($content->argument, 'what is fetched')];
        return $this->fetchedFile($into, $content->method, ...$key);
    }

    /**
     * The same for the hits of a search, as a PDF file with the title on each page; null when the rights allow no archive.
     *
     * @param string $sort column to sort by, as in search()
     * @param ?resource $into
     * @param mixed ...$search further arguments of search(), by name
     */
    public function printHits(
        string $query,
        string $title,
        string $sort = '',
        Order $order = Order::Ascending,
        mixed $into = null,
        mixed ...$search,
    ): ?string {
        $this->blobDirectory();  // before any request
        self::checkStream($into);
        $title = Text::request($title, 'the title');
        $access = $this->access;
        $hits = $this->search($query, ...$search);
        if ($hits->columns() === []) {
            return null;
        }
        if ($sort !== '') {
            // The first sort of the component's list is ascending when its first row is greater than the last one,
            // otherwise descending; each further one is the other way round.
            $column = $hits->column($sort);
            $sorts = $hits->beginsGreater($column) === ($order === Order::Descending) ? 2 : 1;
            for ($i = 0; $i < $sorts; ++$i) {
                $access->query()->TELOSortHitlistInit($column + 1);
                $access->checkOwn('the hit list cannot be sorted');
            }
        }
        return $this->fetchedFile($into, 'FennikPrintHitlistPDF', $title);
    }

    /**
     * Receives a file of the server's blob directory over the connection, complete or not at all.
     *
     * @param string $file its name there, or its path as the server gives it
     * @param ?resource $into
     * @return string its path in the local blob directory
     */
    public function transfer(string $file, int $byteCount, mixed $into = null): string
    {
        self::checkStream($into);
        $access = $this->access;
        $directory = $this->blobDirectory();
        $name = Text::request($file, 'the file');
        $access->count($access->query()->TELOTransferBLOB($name, $byteCount, $access->status()));
        return self::delivered("$directory/" . self::nameOf($name), $into);
    }

    /**
     * Sends a file, wherever it is, into the server's blob directory.
     *
     * @param string|resource $file a path, or a stream that is read to its end
     * @param string $name under which it is stored; "" for the file's own, which a stream has not
     */
    public function upload(mixed $file, string $name = ''): void
    {
        self::isStream($file) || \is_string($file) || throw new BadArgument('a file to send is a path or an open stream');
        if ($name === '' && \is_string($file)) {
            $this->send($file);
            return;
        }
        Text::line($name, 'the name');
        if (\in_array($name, ['', '.', '..'], true) || $name !== self::nameOf($name)) {
            throw new BadArgument('a file to send needs a name without directories');
        }
        if (\is_string($file) && !is_file($file)) {
            throw new BadArgument("there is no file \"$file\" to send");
        }
        $directory = sys_get_temp_dir() . '/oxaqrycln-upload-' . bin2hex(random_bytes(16));
        $copy = "$directory/$name";
        Raw\Owned::keepForRemoval($copy);
        Raw\Owned::keepForRemoval($directory);
        $from = \is_string($file) ? @fopen($file, 'rb') : $file;
        try {
            if ($from === false) {
                throw new BadArgument("the file \"$file\" cannot be read");
            }
            if (!@mkdir($directory, 0700) || @file_put_contents($copy, $from) === false) {
                throw new Error("the copy \"$copy\" of the file to send cannot be written");
            }
            $this->send($copy);
        } finally {
            \is_string($file) && $from !== false && fclose($from);
            Raw\Owned::removeFile($copy);
            Raw\Owned::removeFile($directory);
        }
    }

    /** Writes a test file into the local blob directory and removes it. Raises Error when that fails. No request. */
    public function testBlobDirectory(): void
    {
        $this->blobDirectory();
        $this->access->query()->WriteTest();
        $this->access->checkOwn('no file can be written into the blob directory');
    }

    /**
     * @param string $query of the server's own language, "*" for all
     * @param int $max the most orders, 0 for all
     * @return list<TransportOrder>
     */
    public function orders(string $query = '*', int $max = 0): array
    {
        if ($max < 0) {
            throw new BadArgument('the limit of a list is 0 or more');
        }
        $access = $this->access;
        $count = $access->count($access->query()->OstranaQueryFahrauftraegeInit(
            Text::request($query, 'the query'),
            $max === 0 ? 2147483647 : $max,
            $access->status(),
        ));
        $rows = $access->rows('OstranaQueryFahrauftraegeNext', $count, 'transport order', [0, 1, 2]);
        return $this->map($rows, static function (array $row): TransportOrder {
            $columns = Text::fields($row[0]);
            return new TransportOrder((string) array_shift($columns), $row[1], $row[2], $row[3], $columns);
        });
    }

    public function setOrderStatus(string $order, string $status): void
    {
        $access = $this->access;
        $access->count($access->query()->OstranaUpdateFahrauftraegeStatus(
            Text::request($order, 'the order'),
            Text::request($status, 'the status'),
            $access->status(),
        ));
    }

    /**
     * The page images of orders as one file, as fetch() does it.
     *
     * @param list<string> $orders
     * @param ?resource $into
     */
    public function fetchOrders(array $orders, mixed $into = null): ?string
    {
        $list = array_map(static fn(string $order): string => Text::request($order, 'the order'), $orders);
        return $this->fetchedFile($into, 'OstranaGetFahrauftraegeMultiTIFF', implode(',', $list));
    }

    /** Sends a file under its own name. */
    private function send(string $file): void
    {
        // Not realpath(): the name is that of the link, not that of its target.
        $isAbsolute = preg_match('~^([a-zA-Z]:)?[/\\\\]~', $file) === 1;
        $path = $this->pathText($isAbsolute ? $file : getcwd() . "/$file");
        if (!is_file($path)) {
            throw new BadArgument("there is no file \"$file\" to send");
        }
        if (filesize($path) > 2147483647) {
            throw new BadArgument("\"$file\" is larger than 2147483647 bytes");
        }
        $access = $this->access;
        $query = $access->query();
        $before = $query->strBlobPathLocal;
        if ($query->strBlobPathRemote === '') {
            throw new BadArgument('the settings name no blob directory');
        }
        // The component sends files of its local blob directory only.
        $query->strBlobPathLocal = \dirname($path);
        try {
            $access->count($query->TELOUploadFile(self::nameOf($path), $access->status()));
        } finally {
            $query->strBlobPathLocal = $before;
        }
    }

    private function blobDirectory(): string
    {
        if ($this->settings->blobLocal === '') {
            throw new BadArgument('the settings name no local blob directory');
        }
        return str_replace('\\', '/', $this->settings->blobLocal);
    }

    /** A path as the component takes it, which separates its parts with "/" and "\". */
    private function pathText(string $path): string
    {
        if (DIRECTORY_SEPARATOR === '/' && str_contains($path, '\\')) {
            throw new BadArgument("the path \"$path\" holds a \"\\\"");
        }
        return Text::request(str_replace('\\', '/', $path), "the path \"$path\"");
    }

    /** Calls a method that has the server put a file into the blob directory; the name and the length are outputs. */
    private function fetchedFile(mixed $into, string $method, mixed ...$arguments): ?string
    {
        self::checkStream($into);
        $directory = $this->blobDirectory();
        $access = $this->access;
        $status = &$access->status();
        $outputs = [&$name, &$length, &$status];
        $access->count($access->query()->$method(...$arguments, ...$outputs));
        if ((string) $name === '') {
            return null;
        }
        $file = "$directory/$name";
        clearstatcache(true, $file);
        $size = is_file($file) ? filesize($file) : null;
        if ($size === null) {
            throw new Error("the query server's file \"$file\" is not there: the local and the remote blob directory of "
                . 'the settings must be the same directory');
        }
        if ((string) $size !== (string) $length) {
            throw new Error("the query server's file \"$file\" has $size bytes instead of $length");
        }
        return self::delivered($file, $into);
    }

    /** @return string the path, also of a file that was copied to the stream and removed */
    private static function delivered(string $path, mixed $into): string
    {
        if ($into === null) {
            return $path;
        }
        Raw\Owned::keepForRemoval($path);
        try {
            $file = @fopen($path, 'rb');
            $isCopied = $file !== false && @stream_copy_to_stream($file, $into) === fstat($file)['size'];
            $file === false || fclose($file);
        } finally {
            Raw\Owned::removeFile($path);
        }
        return $isCopied ? $path : throw new Error("the file \"$path\" cannot be copied to the stream, and is removed");
    }

    private static function isStream(mixed $value): bool
    {
        return \is_resource($value) && get_resource_type($value) === 'stream';
    }

    /** Before any request. */
    private static function checkStream(mixed $into): void
    {
        if ($into !== null && !self::isStream($into)) {
            throw new BadArgument('a file can be copied to an open stream only, not to ' . get_debug_type($into));
        }
    }

    /** The last part of a path of this machine or of the query server. */
    private static function nameOf(string $path): string
    {
        return preg_replace('/^.*[\\\\\/]/s', '', $path);
    }
}
