<?php

declare(strict_types=1);

namespace Portal\Documents;

use Oxaqrycln\DocumentCondition;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Refused;
use Portal\Web\Visit;

/** Whether the user's document rights let him see documents. Reads those whose archive has conditions for him. */
final class DocumentRights
{
    private const SECONDS_EACH = 30;

    /** @var array<string, list<DocumentCondition>> by "channel/archive" */
    private array $conditions = [];
    /** @var array<string, bool> by the document's name */
    private array $found = [];

    public function __construct(private readonly Visit $visit)
    {
    }

    /** False also for a document that is gone. */
    public function maySee(DocumentName $name): bool
    {
        $conditions = $this->conditions["$name->channel/$name->archive"] ??= $this->visit->knownUser()
            ->documentConditions($name->channel, $name->archive);
        if ($conditions === []) {
            return true;
        }
        $key = "$name->channel/$name->archive/$name->id/$name->version";
        return $this->found[$key] ??= $this->read($name, $conditions);
    }

    /** @param list<DocumentCondition> $conditions */
    private function read(DocumentName $name, array $conditions): bool
    {
        set_time_limit(self::SECONDS_EACH + $this->visit->settings->timeout);
        try {
            return DocumentConditions::areMet($conditions, $this->visit->archive()->document($name));
        } catch (Refused) {
            return false;
        }
    }
}
