<?php

declare(strict_types=1);

namespace Portal\Pages\Administration;

use Oxaqrycln\Error;
use Portal\Administration\Account;
use Portal\Administration\Accounts;
use Portal\Administration\DatabasePage;
use Portal\Administration\Names;
use Portal\Administration\Passwords;
use Portal\Administration\Refusal;
use Portal\Administration\Rights;
use Portal\Administration\SessionLogs;
use Portal\Administration\UserDatabase;
use Portal\Output\Html;
use Portal\Users\FolderRights;
use Portal\Web\Failure;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** A user or group: name, password, account of the archive system, memberships and rights, each with a form. */
final class AccountPage extends DatabasePage
{
    /** What a form asks for: the section of the page that has it. */
    private const ACTIONS = [
        'rename' => 'name',
        'password' => 'password',
        'disable' => 'password',
        'must-change' => 'password',
        'archive-account' => 'archive-account',
        'join' => 'groups',
        'leave' => 'groups',
        'give' => 'rights',
        'take' => 'rights',
        'edit-right' => 'edit-rights',
    ];
    /** Changes that end the user's sessions. */
    private const ENDS_SESSIONS = ['rename', 'password', 'disable'];
    private const MOST_MEMBERS = 100;

    protected function answerWith(Request $request, Visit $visit, UserDatabase $database): Response
    {
        if ($request->method() === 'GET') {
            return $this->show($visit, $database, self::idOf($request->text('id')), null, $request);
        }
        $id = self::idOf($request->field('id'));
        $action = $request->field('action');
        $section = self::ACTIONS[$action] ?? throw new Failure('form', 400);
        try {
            $this->change($request, $visit, $database, $id, $action);
        } catch (Refusal $refusal) {
            return $this->show($visit, $database, $id, $refusal, $request);
        }
        return Response::redirect(Html::plainUrl('/administration/account', [
            'id' => $id,
            'done' => $action,
            'unknown' => $this->isUnknown($request, $visit, $action) ? 1 : '',
        ], $section));
    }

    private function change(Request $request, Visit $visit, UserDatabase $database, int $id, string $action): void
    {
        $accounts = new Accounts($database);
        $do = $this->changeOf($request, $visit, $database, $action);
        $change = static fn() => $do($accounts->unchanged($id, $request->field('stamp')));
        if (!\in_array($action, self::ENDS_SESSIONS, true)) {
            $database->change($change);
        } else {
            $files = $visit->files($id, $accounts->get($id)->name);
            // Within the change, so that nothing is changed when the sessions cannot be ended.
            $database->change($change, $files->renewGeneration(...));
            $name = $accounts->get($id)->name;
            // Again, for sessions that have begun in the meantime.
            $action === 'rename' ? $files->moveTo($visit->files($id, $name)) : $files->renewGeneration();
            $id === $visit->knownUser()->id && $visit->begin($id, $name);
        }
    }

    /**
     * The change that the form asks for, with everything checked that does not depend on the account.
     *
     * @return \Closure(Account): void
     */
    private function changeOf(Request $request, Visit $visit, UserDatabase $database, string $action): \Closure
    {
        $accounts = new Accounts($database);
        $mustChange = $request->field('must-change') !== '';
        switch ($action) {
            case 'rename':
                $name = Names::checked($request->field('name'));
                return static fn(Account $account) => $accounts->rename($account, $name);
            case 'password':
                $request->field('password') === $request->field('again') || throw new Refusal('differ');
                $password = (new Passwords($visit->archive()->query()))->ofUser($request->field('password'));
                return static fn(Account $account) => $accounts->setPassword($account, $password, $mustChange);
            case 'disable':
                return static fn(Account $account) => $accounts->disable($account);
            case 'must-change':
                return static fn(Account $account) => $accounts->setMustChange($account, $mustChange);
            case 'archive-account':
                return $this->archiveAccountOf($request, $visit, $accounts);
            case 'join':
                $group = self::idOf($request->field('group'));
                return static fn(Account $account) => $accounts->join($account, $accounts->get($group));
            case 'leave':
                $group = self::idOf($request->field('group'));
                return static fn(Account $account) => $accounts->leave($account->id, $group);
            default:
                return $this->rightOf($request, $database, $action);
        }
    }

    /** @return \Closure(Account): void */
    private function archiveAccountOf(Request $request, Visit $visit, Accounts $accounts): \Closure
    {
        $user = trim($request->field('archive-user'));
        $user === '' || Names::checked($user);
        $typed = $request->field('archive-password');
        $password = $typed === '' ? null : (new Passwords($visit->archive()->query()))->ofArchive($typed);
        return static fn(Account $account) => $accounts->setArchiveAccount($account, $user, $password);
    }

    /** @return \Closure(Account): void */
    private function rightOf(Request $request, UserDatabase $database, string $action): \Closure
    {
        $rights = new Rights($database);
        if ($action === 'edit-right') {
            $numbers = array_map(
                static fn(string $name): int => Names::number($request->field($name)),
                ['new', 'edit', 'delete'],
            );
            $was = $request->field('was');
            // An entry that is there already keeps its name, also when no entry could be made of that name now.
            $archive = $was === '' ? Names::archive($request->field('archive')) : $request->field('archive');
            return static fn(Account $account) => $rights->setEditRight($account, $archive, $numbers, $was);
        }
        $kind = $request->field('kind');
        \in_array($kind, Rights::kinds(), true) || throw new Failure('form', 400);
        if ($action === 'take') {
            $value = Rights::isNumber($kind) ? Names::number($request->field('entry')) : $request->field('entry');
            return static fn(Account $account) => $rights->take($account, $kind, $value);
        }
        $value = Rights::value($kind, $request->field("value-$kind"));
        return static fn(Account $account) => $rights->give($account, $kind, $value);
    }

    /** Whether a right names a channel or an archive that the servers, as far as they answer, do not list. */
    private function isUnknown(Request $request, Visit $visit, string $action): bool
    {
        $kind = $action === 'edit-right' && $request->field('was') === '' ? 'edit' : $request->field('kind');
        $isName = $action === 'give' && \in_array($kind, ['channel', 'archive'], true) || $kind === 'edit';
        if (!$isName) {
            return false;
        }
        $wanted = $kind === 'channel'
            ? Names::channel($request->field('value-channel'))
            : Names::archive($request->field($kind === 'edit' ? 'archive' : 'value-archive'));
        try {
            foreach ($visit->archive()->archives() as $channel) {
                foreach ($kind === 'channel' ? [] : $channel->archives as $archive) {
                    if (\in_array($wanted, [$archive->name, FolderRights::reference($channel->name, $archive->name)], true)) {
                        return false;
                    }
                }
                if ($kind === 'channel' && $channel->name === $wanted) {
                    return false;
                }
            }
            return true;
        } catch (Error) {
            return false;
        }
    }

    private function show(Visit $visit, UserDatabase $database, int $id, ?Refusal $refusal, Request $request): Response
    {
        $accounts = new Accounts($database);
        $rights = new Rights($database);
        $account = $accounts->get($id);
        $editRights = $rights->editRightsOf($id);
        $done = $request->method() === 'GET' ? $request->text('done') : '';
        return $visit->page('administration/account', $account->name, [
            'account' => $account,
            'isSelf' => $id === $visit->knownUser()->id,
            'memberships' => $accounts->groupsOf($id),
            'groups' => $account->isGroup() ? [] : $accounts->groups(),
            'members' => $account->hasMembers
                ? $accounts->find('', '', $id, self::MOST_MEMBERS, static fn(): int => 0)[1]
                : [],
            'memberCount' => $account->hasMembers ? $accounts->memberCount($id) : 0,
            'rights' => array_map(
                static fn(string $kind): array => ['kind' => $kind, 'entries' => $rights->of($id, $kind)],
                Rights::kinds(),
            ),
            'editRights' => $editRights,
            'edited' => $this->edited($request, $editRights),
            'sessions' => $this->sessionsOf($visit, $account),
            'done' => $done === 'added' || isset(self::ACTIONS[$done]) ? $done : '',
            'isUnknown' => $request->text('unknown') !== '' && $request->method() === 'GET',
            'refusal' => $refusal,
            'action' => $request->field('action'),
            'typed' => $refusal === null ? [] : $request->fields(),
        ], $refusal->status ?? 200);
    }

    /** @return list<array{log: string, time: \DateTimeImmutable}> the last sessions that have a log */
    private function sessionsOf(Visit $visit, Account $account): array
    {
        $logs = new SessionLogs($visit->settings, '');
        $sessions = [];
        foreach ($visit->state($account->id, $account->name)->read()['sessions'] ?? [] as ['log' => $log, 'time' => $time]) {
            if ($logs->has($log)) {
                $sessions[] = ['log' => $log, 'time' => new \DateTimeImmutable(date('Y-m-d H:i:s', $time))];
            }
        }
        return $sessions;
    }

    /**
     * What the form of edit rights shows: the entry that the URL names, what was typed, or a new one.
     *
     * @param list<array{string, int, int, int}> $editRights
     * @return array{archive: string, new: string, edit: string, delete: string, was: string}
     */
    private function edited(Request $request, array $editRights): array
    {
        $wanted = $request->text('archive');
        foreach ($editRights as [$archive, $new, $edit, $delete]) {
            if (($archive === $wanted && $wanted !== '') || ($archive === $request->field('archive') && $request->field('was') !== '')) {
                $numbers = array_map(strval(...), ['new' => $new, 'edit' => $edit, 'delete' => $delete]);
                return ['archive' => $archive, 'was' => "$new,$edit,$delete"] + $numbers;
            }
        }
        $typed = $request->field('action') === 'edit-right' && $request->field('was') === '' ? $request->fields() : [];
        return [
            'archive' => $typed['archive'] ?? '',
            'new' => $typed['new'] ?? '0',
            'edit' => $typed['edit'] ?? '0',
            'delete' => $typed['delete'] ?? '0',
            'was' => '',
        ];
    }
}
