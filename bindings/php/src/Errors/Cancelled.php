<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** Archive::cancel() was called. */
class Cancelled extends Error
{
}
