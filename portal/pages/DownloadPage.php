<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Hit;
use Portal\Files\DocumentsZip;
use Portal\Files\FileName;
use Portal\Search\HitExport;
use Portal\Search\HitImages;
use Portal\Search\ListView;
use Portal\Search\SearchRequest;
use Portal\Search\Selection;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * A hit list, or what is selected of it, as a file. The search is made again, with the rights that the user has now: the
 * selection only says which of its hits are wanted.
 */
final class DownloadPage implements Page
{
    public const OF_SELECTIONS = ['csv', 'json', 'zip', 'image'];
    private const OF_LISTS = ['csv', 'json'];

    public function answer(Request $request, Visit $visit): Response
    {
        $search = SearchRequest::of($request);
        $isSelection = $request->text('what') === 'selection';
        if (!\in_array($request->text('as'), $isSelection ? self::OF_SELECTIONS : self::OF_LISTS, true)) {
            throw Failure::notFound();
        }
        $selection = $isSelection ? new Selection($visit, $search) : null;
        if ($selection !== null && $selection->count() === 0) {
            throw new Failure('nothing-selected', 422);
        }
        $hits = $search->run($visit);
        // A failure has a page of its own as long as nothing is sent; half a file would look like a whole one.
        $hits->checkRights();
        $view = ListView::of($visit, $search->place, $hits, '');
        $export = new HitExport($hits, $view->shown(), $selection, $visit->h->locale);
        return match ($request->text('as')) {
            'csv' => $this->file($search, 'csv', 'text/csv; charset=utf-8', $export->writeCsv(...)),
            'json' => $this->file($search, 'json', 'application/json', static fn() => $export->writeJson($search->query)),
            'zip' => $this->zip($visit, $search, $selection, [...$export->rows()]),
            'image' => $this->image($visit, $search, $selection, $hits->isMultiPageImage, [...$export->rows()]),
        };
    }

    /** @param list<Hit> $hits */
    private function zip(Visit $visit, SearchRequest $search, Selection $selection, array $hits): Response
    {
        $this->checkCount($visit, \count($hits), DocumentsZip::MOST);
        $lost = $selection->count() - \count($hits);
        $write = static fn() => (new DocumentsZip($visit))->write($hits, $lost);
        return $this->file($search, 'zip', 'application/zip', $write);
    }

    /** @param list<Hit> $hits */
    private function image(
        Visit $visit,
        SearchRequest $search,
        Selection $selection,
        bool $isOffered,
        array $hits,
    ): Response {
        $isOffered || throw new Failure('no-images', 404);
        $this->checkCount($visit, \count($hits), HitImages::MOST);
        $images = new HitImages($visit);
        foreach ($hits as $hit) {
            $images->add($hit);
        }
        $images->documents() > 0 || throw new Failure('no-images', 404);
        // The name says so when not every document had images.
        [$count, $wanted] = [$images->documents(), $selection->count()];
        $part = $count === $wanted ? '' : " ($count-$wanted)";
        return $this->file($search, 'tif', 'image/tiff', $images->write(...), $part)
            ->with('Content-Length', (string) $images->length());
    }

    private function checkCount(Visit $visit, int $count, int $most): void
    {
        if ($count > $most) {
            $text = $visit->h->locale->text('download-most');
            throw new Failure('too-many', 422, strtr($text, ['{0}' => (string) $count, '{1}' => (string) $most]));
        }
    }

    /** @param \Closure(): mixed $write */
    private function file(
        SearchRequest $search,
        string $extension,
        string $type,
        \Closure $write,
        string $part = '',
    ): Response {
        preg_match('/^.{0,60}/us', strtr($search->query, '/\\', '--'), $start);
        $name = FileName::of($start[0] . $part, 'hits') . ".$extension";
        return new Response($write, 200, [
            'Content-Type' => $type,
            'Content-Disposition' => FileName::disposition($name, true),
            'Content-Security-Policy' => "default-src 'none'; sandbox; frame-ancestors 'none'",
        ]);
    }
}
