<?php

declare(strict_types=1);

namespace Portal\Users;

/** Who may use a route. What a page shows of an archive also depends on the user's rights there. */
enum Right
{
    /** also visitors who are not logged on */
    case Anyone;
    /** users who are logged on, also those who must change their password first */
    case NewPassword;
    case User;
    /** users with the general right 1 */
    case Administrator;
}
