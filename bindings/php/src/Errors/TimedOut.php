<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The time for a request has passed. */
class TimedOut extends Error
{
}
