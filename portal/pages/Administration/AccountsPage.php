<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Accounts;
use Portal\Administration\DatabasePage;
use Portal\Administration\Paging;
use Portal\Administration\UserDatabase;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The users and groups, page by page, and the members of a group. */
final class AccountsPage extends DatabasePage
{
    private const SIZE = 50;

    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        $accounts = new Accounts($database);
        $kind = \in_array($request->text('kind'), Accounts::kinds(), true) ? $request->text('kind') : '';
        $group = self::idOf($request->text('group'));
        $paging = new Paging($request->number('page', 1, 1, 10000000), self::SIZE);
        [, $found] = $accounts->find(trim($request->text('q')), $kind, $group, self::SIZE, $paging->first(...));
        return $visit->page('administration/accounts', $visit->h->locale->text('admin-accounts'), [
            'accounts' => $found,
            'paging' => $paging,
            'text' => trim($request->text('q')),
            'kind' => $kind,
            'kinds' => Accounts::kinds(),
            'group' => $group === 0 ? null : $accounts->get($group),
            'isRemoved' => $request->text('done') === 'removed',
        ]);
    }
}
