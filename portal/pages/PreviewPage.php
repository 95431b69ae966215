<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Segment;
use Portal\Documents\DocumentRequest;
use Portal\Documents\DocumentView;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * The beginning of a document with its hits, and its first page image: a page of its own, which the script shows beside the
 * hit list.
 */
final class PreviewPage implements Page
{
    private const LONGEST = 4000;

    public function answer(Request $request, Visit $visit): Response
    {
        $wanted = DocumentRequest::of($request);
        [$document] = $wanted->readMarked($visit);
        $marks = array_sum(array_map(static fn(Segment $segment): int => \count($segment->text->marks), $document->segments));
        return $visit->page('preview', $document->title, [
            'document' => $document,
            'texts' => $this->texts($document->segments),
            'images' => DocumentView::imagesOf($document),
            'marks' => $marks,
            'longest' => self::LONGEST,
            'wanted' => $wanted,
        ]);
    }

    /**
     * The first texts up to a limited length, and at least one with hits if there is one.
     *
     * @param list<Segment> $segments
     * @return list<Segment>
     */
    private function texts(array $segments): array
    {
        $texts = array_values(array_filter($segments, static fn(Segment $segment): bool => $segment->text->text !== ''));
        $shown = [];
        $length = 0;
        $hasMarks = false;
        foreach ($texts as $segment) {
            if ($length < self::LONGEST || (!$hasMarks && $segment->text->marks !== [])) {
                $shown[] = $segment;
                $length += \strlen($segment->text->text);
                $hasMarks = $hasMarks || $segment->text->marks !== [];
            }
        }
        return $shown;
    }
}
