<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Oxaqrycln\Refused;
use Portal\Failure;
use Portal\Page;
use Portal\Request;
use Portal\Response;
use Portal\Visit;

/** A document: its segments with the hits of the query marked, its properties and notes. */
final class DocumentPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $name = new DocumentName(
            $request->text('channel'),
            $request->text('archive'),
            $request->text('id'),
            $request->text('version'),
        );
        // The name comes from the browser, so the user's rights decide, not the hit list that he was shown.
        if (!$visit->knownUser()->maySee($name->channel, $name->archive)) {
            throw Failure::noDocument();
        }
        try {
            $document = $visit->archive()->document($name, $request->text('q'));
        } catch (Refused $refused) {
            throw new Failure('no-document', 404, $refused->getMessage());
        }
        $segments = [];
        $marks = 0;
        foreach ($document->segments as $segment) {
            $segments[] = ['segment' => $segment, 'firstMark' => $marks + 1];
            $marks += \count($segment->text->marks);
        }
        return $visit->page('document', $document->title, [
            'document' => $document,
            'segments' => $segments,
            'marks' => $marks,
            'query' => $request->text('q'),
            'back' => Request::isLocal($request->text('back')) ? $request->text('back') : '',
        ]);
    }
}
