<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Output\Html;
use Portal\Search\SearchRequest;
use Portal\Search\Selection;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Keeps what is ticked in a hit list, and goes on with the list or with a download of the selection. */
final class SelectionPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $search = SearchRequest::of($request);
        $selection = new Selection($visit, $search);
        $ticked = $request->repeated('hit');
        $before = $request->repeated('was');
        $what = $request->field('do');
        $isDownload = \in_array($what, DownloadPage::OF_SELECTIONS, true);
        match (true) {
            $isDownload, \in_array($what, ['', 'keep'], true) =>
                $selection->change($ticked, array_values(array_diff($before, $ticked))),
            $what === 'page' => $selection->change([...$ticked, ...$this->keys($visit, $search, true)], []),
            $what === 'all' => $selection->change([...$ticked, ...$this->keys($visit, $search, false)], []),
            $what === 'clear' => $selection->clear(),
            default => throw new Failure('argument', 400),
        };
        if (str_contains($request->header('Accept'), 'application/json')) {
            return new Response(
                json_encode(['count' => $selection->count(), 'text' => $this->text($visit, $selection)], JSON_THROW_ON_ERROR),
                200,
                ['Content-Type' => 'application/json'],
            );
        }
        if ($isDownload) {
            return Response::redirect(Html::plainUrl('/download', $search->with(['as' => $what, 'what' => 'selection'])));
        }
        return Response::redirect(Html::plainUrl('/hits', $search->with(), 'selection'));
    }

    private function text(Visit $visit, Selection $selection): string
    {
        $locale = $visit->h->locale;
        $text = strtr($locale->text('selected'), ['{0}' => $locale->number($selection->count())]);
        $full = strtr($locale->text('selection-full'), ['{0}' => $locale->number($selection::MOST)]);
        return $selection->isFull() ? "$text $full" : $text;
    }

    /** @return list<string> of the hits of the page that is shown, or of the whole list */
    private function keys(Visit $visit, SearchRequest $search, bool $isPage): array
    {
        $hits = $search->run($visit);
        $page = min($search->page, max(1, intdiv(\count($hits) + $search->size - 1, $search->size)));
        $shown = $isPage ? $hits->slice(($page - 1) * $search->size, $search->size) : $hits->slice(0, Selection::MOST);
        return array_map(static fn(DocumentName $hit): string => Selection::key($hit), array_values(array_filter($shown)));
    }
}
