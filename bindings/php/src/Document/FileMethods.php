<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The methods of Archive on files, printed lists and transport orders. Files need a local blob directory. */
trait FileMethods
{
    /**
     * Has the server put a file into the blob directory: its path there, or null when there is no such content. The
     * caller removes it. Raises Error when the file is not there or has another length than the server says.
     */
    public function fetch(DocumentName $name, Content $content): ?string
    {
        $key = [...$this->key($name), Text::request($content->argument, 'what is fetched')];
        return $this->fetchedFile($content->method, ...$key);
    }

    /** The same for the hits of a search, whose other arguments follow, as a PDF file with the title on each page. */
    public function printHits(
        string $title,
        string $query,
        string $sort = '',
        Order $order = Order::Ascending,
        mixed ...$search,
    ): ?string {
        $this->blobDirectory();  // before any request
        $title = Text::request($title, 'the title');
        $access = $this->access;
        $hits = $this->search($query, ...$search);
        if ($hits->columns() === []) {
            return null;  // the rights allow no archive
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
        return $this->fetchedFile('FennikPrintHitlistPDF', $title);
    }

    /**
     * Receives a file of the server's blob directory over the connection, complete or not at all.
     *
     * @return string its path in the local blob directory
     */
    public function transfer(string $file, int $byteCount): string
    {
        $access = $this->access;
        $directory = $this->blobDirectory();
        $name = Text::request($file, 'the file');
        $access->count($access->query()->TELOTransferBLOB($name, $byteCount, $access->status()));
        return "$directory/" . preg_replace('/^.*[\\\\\/]/s', '', $name);
    }

    /** Sends a file, wherever it is, into the server's blob directory under its own name. */
    public function upload(string $file): void
    {
        if (!is_file($file)) {
            throw new BadArgument("there is no file \"$file\" to send");
        }
        if (filesize($file) > 2147483647) {
            throw new BadArgument("\"$file\" is larger than 2147483647 bytes");
        }
        $access = $this->access;
        $query = $access->query();
        $before = $query->strBlobPathLocal;
        if ($query->strBlobPathRemote === '') {
            throw new BadArgument('the settings name no blob directory');
        }
        $path = $this->pathText(realpath($file));
        // The component sends files of its local blob directory only.
        $query->strBlobPathLocal = \dirname($path);
        try {
            $access->count($query->TELOUploadFile(basename($path), $access->status()));
        } finally {
            $query->strBlobPathLocal = $before;
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
     */
    public function fetchOrders(array $orders): ?string
    {
        $list = array_map(static fn(string $order): string => Text::request($order, 'the order'), $orders);
        return $this->fetchedFile('OstranaGetFahrauftraegeMultiTIFF', implode(',', $list));
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
    private function fetchedFile(string $method, mixed ...$arguments): ?string
    {
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
        return $file;
    }
}
