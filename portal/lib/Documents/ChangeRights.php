<?php

declare(strict_types=1);

namespace Portal\Documents;

use Oxaqrycln\ArchiveProperties;
use Portal\Web\Visit;

/** What the user may change in an archive: what his rights, the archive and the settings of the site allow together. */
final class ChangeRights
{
    private ?ArchiveProperties $properties = null;

    /** For an archive that the user may see. */
    public function __construct(
        private readonly Visit $visit,
        private readonly string $channel,
        private readonly string $archive,
    ) {
    }

    public function mayCreate(): bool
    {
        return $this->visit->knownUser()->mayCreate($this->channel, $this->archive)
            && $this->hasForms() && $this->properties()->canCreate;
    }

    public function mayEdit(): bool
    {
        return $this->visit->knownUser()->mayEdit($this->channel, $this->archive)
            && $this->hasForms() && $this->properties()->canEdit;
    }

    public function mayDelete(): bool
    {
        return $this->visit->knownUser()->mayDelete($this->channel, $this->archive) && $this->properties()->canDelete;
    }

    public function properties(): ArchiveProperties
    {
        return $this->properties ??= $this->visit->archive()->properties($this->channel, $this->archive);
    }

    /** The archive takes documents from files of the blob directory. */
    private function hasForms(): bool
    {
        return $this->visit->settings->blobLocal !== '';
    }
}
