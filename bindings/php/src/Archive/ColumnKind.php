<?php

declare(strict_types=1);

namespace Oxaqrycln;

/** What a column holds, as the server says. Dates and numbers come as the server writes them. */
enum ColumnKind
{
    case Text;
    case Date;
    case Number;
}
