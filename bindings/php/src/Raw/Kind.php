<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

/** What a value holds. */
enum Kind: int
{
    case Empty = 0;
    case Null = 1;
    case Boolean = 2;
    case Byte = 3;
    case Integer = 4;
    case Long = 5;
    case Double = 6;
    case Date = 7;
    case Text = 8;
    case Bytes = 9;
    case Object = 10;
}
