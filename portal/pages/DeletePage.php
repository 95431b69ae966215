<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Documents\DocumentRequest;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Deletes a document or one of its versions, after a question. */
final class DeletePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        if ($request->method() === 'GET' && $request->text('done') !== '') {
            return $visit->page('deleted', $visit->h->locale->text('deleted'), [
                'id' => $asked->name->id,
                'back' => $asked->backUrl(),
            ]);
        }
        $document = $asked->read($visit);
        if (!$asked->mayDelete($visit)) {
            throw Failure::forbidden();
        }
        $name = $document->name;
        $choices = ['document' => 'delete-all-versions'] + ($name->version === '' ? [] : ['version' => 'delete-one-version']);
        $what = $request->field('what');
        if ($request->method() === 'POST' && isset($choices[$what])) {
            $version = $what === 'version' ? $name->version : '';
            $visit->archive()->delete(new DocumentName($name->channel, $name->archive, $name->id, $version));
            return Response::redirect(Html::plainUrl('/document/delete', $asked->with(['done' => 1])));
        }
        return $visit->page('delete', $visit->h->locale->text('delete-document'), [
            'heading' => 'delete-document',
            'action' => '/document/delete',
            'asked' => $asked,
            'title' => $document->title,
            'version' => $name->version,
            'noteCount' => \count($document->notes),
            'seen' => '',
            'choices' => $choices,
            'problem' => $request->method() === 'POST' ? 'delete-choose' : '',
        ], $request->method() === 'POST' ? 422 : 200);
    }
}
