<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Users\LogOnLimit;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Route;
use Portal\Web\Visit;

/**
 * Logs a user of the web user database on, and continues with the page that was asked for. What was typed into a form when the
 * session had ended is kept: in hidden fields of this form, and then in the new session until that form is shown again. If
 * another user logs on, the search is shown.
 */
final class LogOnPage implements Page
{
    /** Begins the names of these hidden fields. */
    private const KEPT = 'kept-';

    /** @var array<string, string> */
    private array $kept = [];

    /**
     * The form in place of a page that a form was sent to.
     *
     * @param array<string, string> $kept fields of that form
     */
    public function interrupted(Visit $visit, string $target, array $kept): Response
    {
        $this->kept = $kept;
        return $this->form($visit, $target, '', 'kept', 0, 403);
    }

    public function answer(Request $request, Visit $visit): Response
    {
        if ($request->method() === 'GET') {
            return $this->show($request, $visit);
        }
        [$name, $to] = [$request->field('name'), $request->field('to')];
        $this->readKept($request);
        $limit = new LogOnLimit($visit->settings, $name, $request->address());
        $wait = $limit->attempt();
        if ($wait > 0) {
            return $this->form($visit, $to, $name, 'wait', $wait, 429)->with('Retry-After', (string) $wait);
        }
        $user = $visit->users()->logOn($name, $request->field('password'));
        if ($user === null) {
            return $this->form($visit, $to, $name, 'wrong', 0, 403);
        }
        $limit->succeeded();
        $visit->begin($user, $name);
        $by = $this->kept[Route::BY] ?? '';
        if ($by !== '' && $by !== (string) $user) {
            return Response::redirect('/');
        }
        $typed = array_diff_key($this->kept, [Route::BY => '']);
        if ($typed !== []) {
            $visit->session->set('kept', ['target' => $to, 'fields' => $typed]);
        }
        return Response::redirect($to);
    }

    private function show(Request $request, Visit $visit): Response
    {
        if ($request->fields() !== []) {
            // The form itself was too old.
            $this->readKept($request);
            return $this->form($visit, $request->field('to'), $request->field('name'), 'repeat', 0, 403);
        }
        $by = $visit->session->expiredUser();
        $this->kept = $by === null ? [] : [Route::BY => (string) $by];
        return $this->form($visit, $request->text('to'), '', $visit->session->isExpired() ? 'expired' : '');
    }

    private function readKept(Request $request): void
    {
        foreach ($request->chosenFields([self::KEPT . '*']) as $key => $value) {
            $this->kept[substr($key, \strlen(self::KEPT))] = $value;
        }
    }

    private function form(
        Visit $visit,
        string $to,
        string $name,
        string $problem,
        int $wait = 0,
        int $status = 200,
    ): Response {
        return $visit->page('log-on', $visit->h->locale->text('log-on'), [
            'to' => Request::isLocal($to) ? $to : '',
            'name' => $name,
            'problem' => $problem,
            'wait' => $wait,
            'kept' => $this->kept,
        ], $status);
    }
}
