<?php

declare(strict_types=1);

namespace Portal\Forms;

use Oxaqrycln\BadArgument;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Error;
use Oxaqrycln\Refused;
use Portal\Output\Html;
use Portal\Web\FailurePage;

/** The outcome of a part of a form, such as one document or a note. */
final class Outcome
{
    public function __construct(
        /** the file's name; "" when the part is not about one file */
        public readonly string $file = '',
        /** URL of the document that was made; "" for none */
        public readonly string $made = '',
        /** text of what went wrong, "" when nothing did, its detail and what to do */
        public readonly string $problem = '',
        public readonly string $detail = '',
        public readonly string $help = '',
        /** of the answer */
        public readonly int $status = 200,
        /** whether the archive may have carried the part out although it has not said so */
        public readonly bool $isUncertain = false,
    ) {
    }

    public static function ofDocument(DocumentName $name, string $file = ''): self
    {
        return new self($file, Html::plainUrl('/document', get_object_vars($name)));
    }

    public static function ofError(\Throwable $error, string $file = ''): self
    {
        $failure = FailurePage::failureOf($error);
        $help = \in_array($failure->kind, FailurePage::OF_QUERY, true) ? '' : "failure-$failure->kind-help";
        return new self($file, '', "failure-$failure->kind", $failure->detail, $help, $failure->status, self::isOpen($error));
    }

    /** Whether the request of an error may have been carried out. */
    public static function isOpen(\Throwable $error): bool
    {
        return $error instanceof Error && !$error instanceof Refused && !$error instanceof BadArgument
            && $error->request->wasSent;
    }

    /** Whether nothing was carried out, so that the same form may be sent again. */
    public function isWithoutEffect(): bool
    {
        return $this->problem !== '' && !$this->isUncertain;
    }
}
