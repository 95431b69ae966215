<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The server reports that it does not carry the request out. */
class Refused extends Error
{
}
