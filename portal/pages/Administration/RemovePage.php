<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Accounts;
use Portal\Administration\DatabasePage;
use Portal\Administration\Refusal;
use Portal\Administration\UserDatabase;
use Portal\Output\Html;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Asks whether a user or group is to be removed, and removes it. */
final class RemovePage extends DatabasePage
{
    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        if ($request->method() === 'GET') {
            return $this->form($visit, $database, self::idOf($request->text('id')));
        }
        $id = self::idOf($request->field('id'));
        try {
            $this->remove($request, $visit, $database, $id);
        } catch (Refusal $refusal) {
            return $this->form($visit, $database, $id, $refusal);
        }
        return Response::redirect(Html::plainUrl('/administration', ['done' => 'removed']));
    }

    private function remove(Request $request, Visit $visit, UserDatabase $database, int $id): void
    {
        $request->field('confirmed') !== '' || throw new Refusal('unconfirmed');
        $accounts = new Accounts($database);
        $files = $visit->files($id, $accounts->get($id)->name);
        $remove = static fn() => $accounts->remove($accounts->unchanged($id, $request->field('stamp')));
        // Within the change, so that the user is not removed when his sessions cannot be ended.
        $database->change($remove, $files->renewGeneration(...));
        $files->remove();
    }

    private function form(Visit $visit, UserDatabase $database, int $id, ?Refusal $refusal = null): Response
    {
        $accounts = new Accounts($database);
        $account = $accounts->get($id);
        return $visit->page('administration/remove', $visit->h->locale->text('admin-remove'), [
            'account' => $account,
            'memberCount' => $accounts->memberCount($id),
            'isSelf' => $id === $visit->knownUser()->id,
            'refusal' => $refusal,
        ], $refusal->status ?? 200);
    }
}
