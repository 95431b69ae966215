<?php

declare(strict_types=1);

namespace Portal\Forms;

use Portal\Web\DiskFull;

/** A file that the browser sent with a form. PHP removes it when the page has ended. */
final class UploadedFile
{
    public function __construct(
        /** as the browser says */
        public readonly string $name,
        /** "" when it did not arrive whole */
        public readonly string $path,
        /** one of PHP's UPLOAD_ERR_... */
        public readonly int $error,
    ) {
    }

    /** The text of what is wrong with it: "upload-large", "upload-broken", "upload-name", or "". Raises DiskFull. */
    public function problem(): string
    {
        return match ($this->error) {
            UPLOAD_ERR_OK => StoredName::of($this->name) === null ? 'upload-name' : '',
            UPLOAD_ERR_INI_SIZE, UPLOAD_ERR_FORM_SIZE => 'upload-large',
            UPLOAD_ERR_NO_TMP_DIR, UPLOAD_ERR_CANT_WRITE => throw new DiskFull('an uploaded file cannot be written'),
            default => 'upload-broken',
        };
    }

    /** Whether it is a TIFF image, whatever its name. */
    public function isImage(): bool
    {
        return \in_array((string) file_get_contents($this->path, false, null, 0, 4), ["II*\0", "MM\0*"], true);
    }
}
