<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Mask;
use Portal\Documents\ChangeRights;
use Portal\Forms\MaskForm;
use Portal\Output\Html;
use Portal\Search\SearchScope;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * The form of a search, over the channels and archives that the user may see. When an archive is chosen, it offers the
 * archive's query formats, search masks, outliners, and what else the user may do there.
 */
final class SearchPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        $place = $request->text('in');
        $channels = SearchScope::visible($visit->archive(), $user);
        if ($place !== '' && !\in_array($place, SearchScope::places($channels), true)) {
            throw Failure::noDocument();
        }
        $values = $place === '' ? [] : $this->ofArchive($request, $visit, $place);
        $form = $values['form'] ?? null;
        $isChecked = $form !== null && $request->text('run') !== '';
        $isValid = $isChecked && $form->isValid() && $form->query() !== '';
        if ($isValid) {
            return Response::redirect(Html::plainUrl('/hits', [
                'q' => $form->query(),
                'in' => $place,
                'layout' => $request->text('layout'),
            ]));
        }
        return $visit->page('search', $visit->h->locale->text('search'), $values + [
            'channels' => $channels,
            'query' => $request->text('q'),
            'chosen' => $place,
            'format' => $request->text('format'),
            'layout' => $request->text('layout'),
            'layouts' => $visit->settings->layouts,
            'recent' => $visit->state($user->id)->read()['recent'] ?? [],
            'formats' => [],
            'masks' => [],
            'form' => null,
            'isChecked' => $isChecked,
            'trees' => [],
            'fixed' => [],
            'mayCreate' => false,
        ], $isChecked ? 422 : 200);
    }

    /** @return array<string, mixed> what the template shows of an archive */
    private function ofArchive(Request $request, Visit $visit, string $place): array
    {
        $user = $visit->knownUser();
        [$channel, $name] = SearchScope::parts($place);
        $visit->requireArchive($channel, $name);
        $archive = $visit->archive();
        $restriction = $user->searchRestriction($channel, $name);
        $masks = $archive->masks($channel, $name);
        $chosen = array_filter($masks, static fn(Mask $mask): bool => $mask->name === $request->text('mask'));
        $given = $request->text('run') === '' ? null : $request->texts();
        return [
            'formats' => $restriction->allowsFormats() ? $archive->formats($channel, $name) : [],
            'masks' => array_filter($masks, static fn(Mask $mask): bool => $mask->fields !== []),
            'form' => $chosen === [] ? null : MaskForm::forSearch(reset($chosen), $restriction, $given),
            'trees' => $archive->outline($channel, $name),
            'fixed' => $restriction->fixedValues(),
            'mayCreate' => (new ChangeRights($visit, $channel, $name))->mayCreate(),
        ];
    }
}
