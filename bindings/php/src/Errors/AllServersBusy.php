<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** All servers are in use by other requests of this process, and none was tried. */
class AllServersBusy extends Error
{
}
