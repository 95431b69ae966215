<?php

declare(strict_types=1);

namespace Portal\Documents;

use Oxaqrycln\Document;
use Oxaqrycln\Segment;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Request;

/** What the page of a document shows of it: the tab, its segments, and where the marks are. */
final class DocumentView
{
    private const IMAGES = ['tif', 'tiff', 'png', 'jpg', 'jpeg', 'gif', 'webp', 'bmp'];

    /** "all", "segment", "properties" or "print" */
    public readonly string $tab;
    /** of the tab "segment" */
    public readonly ?Segment $segment;
    /** @var list<Segment> those that are shown */
    public readonly array $shown;
    /** @var list<Segment> of imagesOf() */
    public readonly array $images;
    public readonly int $markCount;
    /** @var array<int, int> number of the first mark by the segment's index */
    private readonly array $firstMarks;

    /** Raises Failure for a segment or page that the document has not. */
    public function __construct(
        private readonly DocumentRequest $asked,
        private readonly Document $document,
        Request $request,
    ) {
        $this->images = self::imagesOf($document);
        $this->segment = $this->chosen($request);
        $view = $request->text('view');
        $this->tab = $this->segment !== null ? 'segment' : (\in_array($view, ['properties', 'print'], true) ? $view : 'all');
        $this->shown = match ($this->tab) {
            'segment' => [$this->segment],
            'properties' => [],
            default => $document->segments,
        };
        [$firstMarks, $next] = [[], 1];
        foreach ($document->segments as $segment) {
            $firstMarks[$segment->index] = $next;
            $next += \count($segment->text->marks);
        }
        [$this->firstMarks, $this->markCount] = [$firstMarks, $next - 1];
    }

    /** @return list<Segment> the page images of a document, in its order */
    public static function imagesOf(Document $document): array
    {
        $isImage = static fn(Segment $segment): bool =>
            $segment->contentLength > 0 && \in_array(strtolower($segment->extension), self::IMAGES, true);
        return array_values(array_filter($document->segments, $isImage));
    }

    public function firstMark(Segment $segment): int
    {
        return $this->firstMarks[$segment->index];
    }

    /** Of a mark: on this page, or on that of its segment. */
    public function markUrl(int $mark): string
    {
        foreach ($this->document->segments as $segment) {
            if ($mark < $this->firstMark($segment) + \count($segment->text->marks)) {
                $isHere = $this->tab !== 'properties' && ($this->segment === null || $this->segment === $segment);
                $tab = $this->asked->with(['segment' => $segment->index]);
                return $isHere ? "#hit-$mark" : Html::plainUrl('/document', $tab, "hit-$mark");
            }
        }
        return '#content';
    }

    public function titleOf(Segment $segment): string
    {
        return $segment->title !== '' ? $segment->title : $segment->name;
    }

    /** The number of a page image, counted from 1; 0 for another segment. */
    public function pageOf(Segment $segment): int
    {
        $at = array_search($segment, $this->images, true);
        return $at === false ? 0 : $at + 1;
    }

    private function chosen(Request $request): ?Segment
    {
        [$index, $page] = [$request->text('segment'), $request->text('page')];
        if ($index !== '') {
            foreach ($this->document->segments as $segment) {
                if ((string) $segment->index === $index) {
                    return $segment;
                }
            }
            throw new Failure('no-segment', 404);
        }
        return $page === '' ? null : $this->images[(int) $page - 1] ?? throw new Failure('no-segment', 404);
    }
}
