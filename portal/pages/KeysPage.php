<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The list of keys, and whether single keys are in use. */
final class KeysPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $state = $visit->state($visit->knownUser()->id);
        if ($request->method() === 'GET') {
            return $visit->page('keys', $visit->h->locale->text('keys'), [
                'isOn' => $visit->hasKeys(),
                'back' => Request::isLocal($request->text('back')) ? $request->text('back') : '',
            ]);
        }
        $isOn = $request->field('keys') !== '';
        $state->change(static fn(array $content): array => ['keys' => $isOn] + $content);
        return Response::redirect($request->field('back') === '' ? '/keys' : $request->field('back'));
    }
}
