<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Hit;
use Portal\Output\Html;
use Portal\Search\ListView;
use Portal\Search\SearchRequest;
use Portal\Search\Selection;
use Portal\Web\DiskFull;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The hits of a search, page by page. */
final class HitsPage implements Page
{
    private const RECENT = 10;

    public function answer(Request $request, Visit $visit): Response
    {
        $search = SearchRequest::of($request);
        if ($search->query === '') {
            return Response::redirect(Html::plainUrl('/', ['in' => $search->place]));
        }
        $user = $visit->knownUser();
        $limit = $visit->settings->searchLimit;
        $hits = $search->run($visit);
        $count = \count($hits);
        $pageCount = max(1, intdiv($count + $search->size - 1, $search->size));
        $page = min($search->page, $pageCount);
        $first = ($page - 1) * $search->size;
        $shown = $hits->slice($first, $search->size);
        if ($request->text('page') === '') {
            try {
                $this->remember($visit, $user->id, $search);
            } catch (DiskFull $error) {
                error_log("portal: $error");  // the user can search without it
            }
        }
        return $visit->page($count === 0 ? 'no-hits' : 'hits', $search->query, [
            'search' => $search,
            'view' => ListView::of($visit, $search->place, $hits, $visit->h->locale->text('archive')),
            'selection' => new Selection($visit, $search),
            'hasImages' => $hits->isMultiPageImage,
            'hits' => array_map(
                fn(?Hit $hit, int $at): array => ['hit' => $hit, 'at' => $at],
                $shown,
                array_keys($shown),
            ),
            'withheld' => \count($shown) - \count(array_filter($shown)),
            'first' => $first,
            'count' => $count,
            'total' => max($count, $hits->total),
            'isCut' => $hits->total > $count,
            'limit' => $limit,
            'page' => $page,
            'pageCount' => $pageCount,
            'wasBeyond' => $search->page > $pageCount,
        ]);
    }

    private function remember(Visit $visit, int $user, SearchRequest $search): void
    {
        $entry = ['q' => $search->query, 'in' => $search->place];
        $file = $visit->state($user);
        if (($file->read()['recent'][0] ?? null) === $entry) {
            return;
        }
        $file->change(static function (array $state) use ($entry): array {
            $others = array_filter($state['recent'] ?? [], static fn(array $each): bool => $each !== $entry);
            return ['recent' => \array_slice([$entry, ...$others], 0, self::RECENT)] + $state;
        });
    }
}
