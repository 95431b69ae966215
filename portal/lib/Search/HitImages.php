<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Content;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Files\TemporaryFile;
use Portal\Files\TiffJoiner;
use Portal\Web\Failure;
use Portal\Web\Visit;

/** The page images of documents, as one file. Raises Failure when the program that makes it is not installed. */
final class HitImages
{
    public const MOST = 200;
    private const SECONDS_EACH = 60;

    /** @var resource */
    private readonly mixed $file;
    private int $documents = 0;
    private readonly TiffJoiner $joiner;

    public function __construct(private readonly Visit $visit)
    {
        $this->file = TemporaryFile::open();
        $this->joiner = new TiffJoiner($this->file);
    }

    /** A document without page images, or one that the user may not see, adds none. Raises what the archive does. */
    public function add(DocumentName $name): void
    {
        set_time_limit(self::SECONDS_EACH + $this->visit->settings->timeout);
        $page = TemporaryFile::open();
        try {
            DocumentRequest::ofName($name)->checkFile($this->visit, null);
            $isThere = $this->visit->archive()->fetch($name, Content::pages(''), into: $page) !== null;
        } catch (Refused | Failure) {
            return;
        }
        if ($isThere && $this->joiner->add($page)) {
            ++$this->documents;
        }
    }

    /** The number of documents that have added pages. */
    public function documents(): int
    {
        return $this->documents;
    }

    public function length(): int
    {
        return (int) fstat($this->file)['size'];
    }

    public function write(): void
    {
        rewind($this->file);
        fpassthru($this->file);
    }
}
