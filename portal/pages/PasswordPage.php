<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\BadArgument;
use Portal\Users\LogOnLimit;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Changes the password of the user, and ends his other sessions. */
final class PasswordPage implements Page
{
    private const SHORTEST = 8;

    public function answer(Request $request, Visit $visit): Response
    {
        return $request->method() === 'GET' ? $this->form($visit) : $this->change($request, $visit);
    }

    private function change(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        [$old, $new] = [$request->field('old'), $request->field('new')];
        if ($new !== $request->field('again')) {
            return $this->form($visit, 'differ', 422);
        }
        if (preg_match_all('/./us', $new) < self::SHORTEST || $new === $old) {
            return $this->form($visit, 'weak', 422);
        }
        $limit = new LogOnLimit($visit->settings, $user->name, $request->address());
        if ($limit->attempt() > 0) {
            return $this->form($visit, 'wait', 429);
        }
        try {
            $isChanged = $visit->users()->changePassword($user->name, $old, $new);
        } catch (BadArgument) {
            return $this->form($visit, 'characters', 422);
        }
        if (!$isChanged) {
            return $this->form($visit, 'wrong', 403);
        }
        $limit->succeeded();
        $visit->users()->setMustChangePassword($user->id, false);
        $visit->endEverywhere($user->id);
        $kept = $visit->session->get('kept');
        $visit->begin($user->id, $user->name);
        if ($kept !== null) {
            $visit->session->set('kept', $kept);
        }
        return Response::redirect($kept['target'] ?? '/');
    }

    private function form(Visit $visit, string $problem = '', int $status = 200): Response
    {
        return $visit->page('password', $visit->h->locale->text('change-password'), [
            'problem' => $problem,
            'isForced' => $visit->knownUser()->mustChangePassword(),
            'shortest' => self::SHORTEST,
        ], $status);
    }
}
