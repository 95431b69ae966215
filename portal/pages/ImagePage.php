<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Content;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Files\FileName;
use Portal\Files\StoredFile;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The image of a segment, as browsers show it: a page ("page", from 1 on) of a TIFF file becomes PNG. */
final class ImagePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $segment = $request->number('segment', 0, 0, 99999);
        $asked->checkFile($visit, $segment);
        $archive = $visit->archive();
        try {
            $file = StoredFile::fetch($archive, $asked->name, Content::ofSegment($segment)) ?? throw Failure::noFile();
        } catch (Refused $refused) {
            throw new Failure('no-file', 404, $refused->getMessage());
        }
        $archive->close();
        $image = $file->type->isImage ? $file : $file->page($request->number('page', 1, 1, 9999));
        return $image->answer($request, FileName::of("{$asked->name->id}-$segment"), false);
    }
}
