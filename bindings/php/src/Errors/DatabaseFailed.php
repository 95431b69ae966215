<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The web user database cannot be opened, or refused a statement. */
class DatabaseFailed extends Error
{
}
