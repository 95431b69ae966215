<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\DocumentName;
use Portal\Documents\DocumentRequest;
use Portal\Forms\OneTimeForm;
use Portal\Forms\Outcome;
use Portal\Output\Html;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Deletes a document or one of its versions, after a confirmation. */
final class DeletePage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $asked = DocumentRequest::of($request);
        if ($request->method() === 'GET') {
            return $request->text('done') === '' ? $this->question($asked, $visit) : $this->deleted($asked, $visit);
        }
        $what = $request->field('what');
        if (!\in_array($what, ['document', 'version'], true)) {
            return $this->question($asked, $visit, 'delete-choose', 422);
        }
        $outcomes = OneTimeForm::sent($request, $visit)->carryOut(function () use ($asked, $visit, $what): \Generator {
            $this->delete($asked, $visit, $what === 'version');
            yield new Outcome();
        });
        return $outcomes === []
            ? $this->question($asked, $visit, 'delete-unknown', 409)
            : Response::redirect(Html::plainUrl('/document/delete', $asked->with(['done' => 1])));
    }

    private function delete(DocumentRequest $asked, Visit $visit, bool $isVersion): void
    {
        $name = $asked->read($visit)->name;
        $asked->changeRights($visit)->mayDelete() || throw Failure::forbidden();
        $version = $isVersion ? $name->version : '';
        $visit->archive()->delete(new DocumentName($name->channel, $name->archive, $name->id, $version));
    }

    private function question(DocumentRequest $asked, Visit $visit, string $problem = '', int $status = 200): Response
    {
        $document = $asked->read($visit);
        $asked->changeRights($visit)->mayDelete() || throw Failure::forbidden();
        $version = $document->name->version;
        return $visit->page('delete', $visit->h->locale->text('delete-document'), [
            'heading' => 'delete-document',
            'action' => '/document/delete',
            'asked' => $asked,
            'title' => $document->title,
            'version' => $version,
            'noteCount' => \count($document->notes),
            'number' => OneTimeForm::newNumber(),
            'seen' => '',
            'choices' => ['document' => 'delete-all-versions'] + ($version === '' ? [] : ['version' => 'delete-one-version']),
            'problem' => $problem,
        ], $status);
    }

    private function deleted(DocumentRequest $asked, Visit $visit): Response
    {
        return $visit->page('deleted', $visit->h->locale->text('deleted'), [
            'id' => $asked->name->id,
            'back' => $asked->backUrl(),
        ]);
    }
}
