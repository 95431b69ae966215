<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Content;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Files\FileName;
use Portal\Files\StoredFile;
use Portal\Files\TiffImage;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** The image of a segment, as browsers show it: a scanned page, which is a TIFF file, becomes PNG. */
final class ImagePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $asked->check($visit);
        $segment = $request->number('segment', 0, 0, 99999);
        $archive = $visit->archive();
        try {
            $file = StoredFile::fetch($archive, $asked->name, Content::ofSegment($segment)) ?? throw Failure::noFile();
        } catch (Refused $refused) {
            throw new Failure('no-file', 404, $refused->getMessage());
        }
        $archive->close();
        $name = FileName::of("{$asked->name->id}-$segment");
        if ($file->type->isImage) {
            return $file->answer($request, $name, false);
        }
        $content = $file->content(TiffImage::MOST_BYTES);
        $image = $content === null ? null : TiffImage::png($content);
        return new Response($image ?? throw new Failure('no-image', 415), 200, [
            'Content-Type' => 'image/png',
            'Content-Length' => (string) \strlen($image),
            'Content-Disposition' => FileName::disposition("$name.png", false),
            'Content-Security-Policy' => StoredFile::POLICY,
            'Cross-Origin-Resource-Policy' => 'same-origin',
        ]);
    }
}
