<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** No server could be reached, or the connection broke. */
class ConnectionFailed extends Error
{
}
