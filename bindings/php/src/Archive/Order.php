<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** The direction of a sort. */
enum Order
{
    case Ascending;
    case Descending;
}
