<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The shared library cannot be used; the message says what to change. */
class LibraryFailed extends Error
{
}
