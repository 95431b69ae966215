<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Accounts;
use Portal\Administration\DatabasePage;
use Portal\Administration\Explanation;
use Portal\Administration\Refusal;
use Portal\Administration\UserDatabase;
use Portal\Users\User;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Why a user may do something: the answer of the pages, and his own entries and those of his groups behind it. */
final class WhyPage extends DatabasePage
{
    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        $accounts = new Accounts($database);
        $account = $accounts->get(self::idOf($request->text('id')));
        $kind = \in_array($request->text('kind'), Explanation::KINDS, true) ? $request->text('kind') : Explanation::KINDS[0];
        $asked = trim($request->text('entry'));
        $explanation = $refusal = null;
        if ($asked !== '') {
            try {
                $user = new User($visit->users(), $account->id, $account->name);
                $explanation = Explanation::of($database, $user, $kind, $asked);
            } catch (Refusal $refusal) {
            }
        }
        return $visit->page('administration/why', $visit->h->locale->text('admin-why'), [
            'account' => $account,
            'kind' => $kind,
            'kinds' => Explanation::KINDS,
            'asked' => $asked,
            'explanation' => $explanation,
            'refusal' => $refusal,
        ], $refusal->status ?? 200);
    }
}
