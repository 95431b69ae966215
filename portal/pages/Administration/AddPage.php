<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Portal\Administration\Accounts;
use Portal\Administration\DatabasePage;
use Portal\Administration\Names;
use Portal\Administration\Passwords;
use Portal\Administration\Refusal;
use Portal\Administration\UserDatabase;
use Portal\Output\Html;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Adds a user or a group. */
final class AddPage extends DatabasePage
{
    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        if ($request->method() === 'GET') {
            return $this->form($visit, $request->text('kind') === 'group');
        }
        try {
            $id = $this->add($request, $visit, $database);
        } catch (Refusal $refusal) {
            return $this->form($visit, $request->field('kind') === 'group', $refusal, $request);
        }
        return Response::redirect(Html::plainUrl('/administration/account', ['id' => $id, 'done' => 'added']));
    }

    private function add(Request $request, Visit $visit, UserDatabase $database): int
    {
        $name = Names::checked($request->field('name'));
        $password = null;
        if ($request->field('kind') !== 'group') {
            $request->field('password') === $request->field('again') || throw new Refusal('differ');
            $password = (new Passwords($visit->archive()->query()))->ofUser($request->field('password'));
        }
        $accounts = new Accounts($database);
        $id = 0;
        $database->change(static function () use ($accounts, $name, $password, $request, &$id): void {
            $id = $accounts->add($name, $password, $request->field('must-change') !== '');
        });
        // A user of that name whom another program has removed may have had the ID.
        $visit->files($id, $name)->remove();
        return $id;
    }

    private function form(Visit $visit, bool $isGroup, ?Refusal $refusal = null, ?Request $request = null): Response
    {
        $title = $visit->h->locale->text($isGroup ? 'admin-add-group' : 'admin-add-user');
        return $visit->page('administration/add', $title, [
            'isGroup' => $isGroup,
            'refusal' => $refusal,
            'name' => $request?->field('name') ?? '',
            'mustChange' => $request === null || $request->field('must-change') !== '',
        ], $refusal->status ?? 200);
    }
}
