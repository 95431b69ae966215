<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Content;
use Oxaqrycln\Refused;
use Portal\Documents\DocumentRequest;
use Portal\Files\FileName;
use Portal\Files\KeptFiles;
use Portal\Files\StoredFile;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * A file of a document: the content of a segment ("segment"), page images as one file ("pages", as "1" or "1,3"; all with
 * "all"), or a file to print ("print", a field's ID or "all").
 */
final class FilePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        $content = $this->content($request);
        $segment = $request->text('segment');
        $asked->checkFile($visit, $segment === '' ? null : (int) $segment, $request->text('print') !== '');
        $kept = new KeptFiles($visit->settings);
        $place = get_object_vars($asked->name);
        $key = json_encode([$visit->knownUser()->id, $place, $content->method, $content->argument], JSON_THROW_ON_ERROR);
        // The newest version may be another one for each part.
        $isPart = $request->header('Range') !== '' && $asked->name->version !== '';
        [$file, $name] = ($isPart ? $kept->find($key) : null) ?? $this->fetch($request, $asked, $visit, $content, $kept, $key);
        $visit->archive()->close();  // the browser may take its time
        $isAttachment = $request->text('download') !== '';
        return $file->answer($request, FileName::of($name), $isAttachment);
    }

    /** @return array{StoredFile, string} with its name */
    private function fetch(
        Request $request,
        DocumentRequest $asked,
        Visit $visit,
        Content $content,
        KeptFiles $kept,
        string $key,
    ): array {
        $into = $kept->begin();
        try {
            $file = StoredFile::fetch($visit->archive(), $asked->name, $content, $into) ?? throw Failure::noFile();
            $name = $this->name($request, $asked, $visit);
            $kept->keep($key, $into, $file, $name);
            return [$file, $name];
        } catch (Refused $refused) {
            throw new Failure('no-file', 404, $refused->getMessage());
        } finally {
            $kept->finish($into);
        }
    }

    private function content(Request $request): Content
    {
        foreach (['segment', 'pages', 'print'] as $kind) {
            $value = $request->text($kind);
            if ($value === '') {
                continue;
            }
            if (!preg_match($kind === 'pages' ? '/^(all|\d{1,4}(,\d{1,4}){0,99})$/D' : '/^(all|\d{1,5})$/D', $value)) {
                throw Failure::noFile();
            }
            $argument = $value === 'all' ? '' : $value;
            return match ($kind) {
                'segment' => $argument === '' ? throw Failure::noFile() : Content::ofSegment((int) $argument),
                'pages' => Content::pages($argument),
                'print' => Content::printable($argument),
            };
        }
        throw Failure::noFile();
    }

    /** As the archive names the file. The name is no part of the URL, so that no link can give a file another one. */
    private function name(Request $request, DocumentRequest $asked, Visit $visit): string
    {
        if ($request->text('pages') !== '') {
            return "{$asked->name->id}-pages.tif";
        }
        if ($request->text('print') !== '') {
            return "{$asked->name->id}.txt";
        }
        foreach ($visit->archive()->document($asked->name)->segments as $segment) {
            if ((string) $segment->index === $request->text('segment')) {
                $extension = $segment->contentLength > 0 ? $segment->extension : 'txt';
                return $segment->fileName !== '' ? $segment->fileName : "{$asked->name->id}-$segment->name.$extension";
            }
        }
        return '';
    }
}
