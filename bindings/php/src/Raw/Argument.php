<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/** What an optional argument of a member holds that the caller does not give; null is an Empty one. */
enum Argument
{
    case LeftOut;
}
