<?php

declare(strict_types=1);

namespace Portal\Web;

/** A file of the portal cannot be written. */
final class DiskFull extends \RuntimeException
{
}
