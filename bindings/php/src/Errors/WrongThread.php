<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** An archive is used in another thread or process than the one that made it. */
class WrongThread extends Error
{
}
