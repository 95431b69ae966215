<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** A value that cannot be sent, or settings that do not fit. Raised before any request. */
class BadArgument extends Error
{
}
