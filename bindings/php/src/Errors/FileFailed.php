<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A file that a request needs cannot be written into the blob directory. The request was not made. */
class FileFailed extends Error
{
}
