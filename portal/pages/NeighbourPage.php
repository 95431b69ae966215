<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Documents\DocumentRequest;
use Portal\Output\Html;
use Portal\Search\FoundHits;
use Portal\Search\SearchRequest;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * Goes to the hit before or behind a document. The search runs again only here, not for each document that is shown, and
 * the list as it is now decides.
 */
final class NeighbourPage implements Page
{
    /** the most withheld hits in a row that are skipped; each is read to check it */
    private const MOST_SKIPPED = 100;

    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        if ($asked->back === '' || $asked->at === 0) {
            throw Failure::notFound();
        }
        $search = SearchRequest::of(Request::ofUrl($asked->back));
        if ($search->query === '') {
            throw Failure::notFound();
        }
        $hits = $search->run($visit);
        $isNext = $request->text('step') !== 'previous';
        $here = $this->find($hits, $asked);
        // If the document has left the list, the next one is now at its position.
        $target = $here === null ? $asked->at - ($isNext ? 1 : 2) : $here + ($isNext ? 1 : -1);
        for ($tries = 0; $tries < self::MOST_SKIPPED && $hits->name($target) !== null && !$hits->isShown($target); ++$tries) {
            $target += $isNext ? 1 : -1;
        }
        $hit = $hits->name($target);
        if ($hit === null) {
            $end = ['at' => $here === null ? '' : $here + 1, 'of' => \count($hits), 'end' => $isNext ? 'last' : 'first'];
            return Response::redirect(Html::plainUrl('/document', $asked->with($end)));
        }
        $page = intdiv($target, $search->size) + 1;
        return Response::redirect(Html::plainUrl('/document', [
            'channel' => $hit->channel,
            'archive' => $hit->archive,
            'id' => $hit->id,
            'version' => $hit->version,
            'q' => $search->query,
            'back' => Html::plainUrl('/hits', $search->with(['page' => $page === 1 ? '' : $page])),
            'at' => $target + 1,
            'of' => \count($hits),
        ]));
    }

    /** The position of a document, counted from 0; in most cases that of the link. Null when it is not in the list. */
    private function find(FoundHits $hits, DocumentRequest $asked): ?int
    {
        $isIt = static fn(?DocumentName $hit): bool => $hit !== null && $hit->id === $asked->name->id
            && $hit->channel === $asked->name->channel && $hit->archive === $asked->name->archive;
        if ($isIt($hits->name($asked->at - 1))) {
            return $asked->at - 1;
        }
        for ($position = 0; $position < \count($hits); ++$position) {
            if ($isIt($hits->name($position))) {
                return $position;
            }
        }
        return null;
    }
}
