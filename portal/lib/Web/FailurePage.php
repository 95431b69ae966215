<?php

declare(strict_types=1);

namespace Portal\Web;

use Oxaqrycln\AllServersBusy;
use Oxaqrycln\Attempt;
use Oxaqrycln\BadArgument;
use Oxaqrycln\Cancelled;
use Oxaqrycln\ConnectionFailed;
use Oxaqrycln\DatabaseFailed;
use Oxaqrycln\Error;
use Oxaqrycln\FileFailed;
use Oxaqrycln\Refused;
use Oxaqrycln\TimedOut;
use Portal\Documents\DocumentRequest;
use Portal\Forms\Outcome;
use Portal\Output\Html;
use Portal\Output\Locale;

/** The page of a failure: what happened, what to do, and the way back with the query kept. */
final class FailurePage
{
    /** Failures whose help tells the user to change the query. */
    public const OF_QUERY = ['refused', 'timed-out'];

    public function __construct(private readonly Visit $visit)
    {
    }

    /** @param array<string, string> $typed fields of the form that was sent, to go back to it with them */
    public function answer(\Throwable $error, Request $request, array $typed = []): Response
    {
        $failure = self::failureOf($error);
        $title = $this->visit->h->locale->text("failure-$failure->kind");
        $values = self::values($failure, $error, $request, $typed);
        try {
            $response = $this->visit->page('failure', $title, $values, $failure->status);
        } catch (\Throwable $further) {
            // The user or the session cannot be read, most probably for the same reason.
            error_log('portal: ' . $further::class . ': ' . $further->getMessage());
            $response = Visit::bare($this->visit->settings, $this->visit->h, 'failure', $title, $values, $failure->status);
        }
        return self::withRetry($response);
    }

    /** The same before there is a visit. */
    public static function bare(Settings $settings, \Throwable $error, Request $request): Response
    {
        $failure = self::failureOf($error);
        $h = new Html(Locale::of($request->header('Accept-Language')));
        $title = $h->locale->text("failure-$failure->kind");
        $values = self::values($failure, $error, $request, []);
        return self::withRetry(Visit::bare($settings, $h, 'failure', $title, $values, $failure->status));
    }

    /**
     * @param array<string, string> $typed
     * @return array<string, mixed> of the template
     */
    private static function values(Failure $failure, \Throwable $error, Request $request, array $typed): array
    {
        // A server that has refused the request has not failed.
        $hasAttempts = $error instanceof Error && !$error instanceof Refused;
        $isHidden = \in_array($failure->kind, ['no-document', 'forbidden'], true);
        $asked = DocumentRequest::of($request);
        $isForm = $request->method() !== 'GET';
        $canRepeat = !$isForm || $failure->kind === 'too-large';
        return [
            'kind' => $failure->kind,
            'help' => $isForm && \in_array($failure->kind, self::OF_QUERY, true) ? 'failure-form-again' : "failure-$failure->kind-help",
            'isUncertain' => $isForm && Outcome::isOpen($error),
            'detail' => $failure->detail,
            'attempts' => array_map(self::shown(...), $hasAttempts ? $error->request->attempts : []),
            'milliseconds' => $error instanceof Error ? $error->request->milliseconds : 0,
            'again' => $canRepeat ? $request->target() : '',
            'typed' => $failure->kind === 'forbidden' ? [] : $typed,
            'target' => $request->target(),
            'document' => $asked->name->id === '' || $isHidden || $canRepeat ? '' : Html::plainUrl('/document', $asked->with()),
            'hits' => $asked->backUrl(),
            'search' => [
                'q' => $request->text('q'),
                'in' => $isHidden ? '' : $request->text('in'),
                'format' => $isHidden ? '' : $request->text('format'),
                'layout' => $request->text('layout'),
            ],
        ];
    }

    private static function withRetry(Response $response): Response
    {
        return $response->status === 503 ? $response->with('Retry-After', '10') : $response;
    }

    /** What the user is told about an error. Errors that are not the user's fault are logged. */
    public static function failureOf(\Throwable $error): Failure
    {
        $failure = self::kindOf($error);
        if ($failure->status >= 500) {
            error_log('portal: ' . ($error instanceof Error ? $error::class . ': ' . $error->getMessage() : $error));
        }
        return $failure;
    }

    private static function kindOf(\Throwable $error): Failure
    {
        return match (true) {
            $error instanceof Failure => $error,
            $error instanceof Refused => new Failure('refused', 422, $error->getMessage()),
            $error instanceof BadArgument => new Failure('argument', 400, $error->getMessage()),
            $error instanceof TimedOut => new Failure('timed-out', 504),
            $error instanceof AllServersBusy => new Failure('busy', 503),
            $error instanceof ConnectionFailed => new Failure($error->request->wasSent ? 'answer' : 'connection', 502),
            $error instanceof Cancelled => new Failure('cancelled', 503),
            $error instanceof DatabaseFailed => new Failure('database', 503),
            $error instanceof FileFailed => new Failure('disk', 507),
            $error instanceof Error => new Failure('answer', 502),
            $error instanceof DiskFull => new Failure('disk', 507),
            default => new Failure('internal', 500),
        };
    }

    /** @return array{string, int, int} the server as the list names it, the error's number or 0 for none, milliseconds */
    private static function shown(Attempt $attempt): array
    {
        return ["$attempt->host:$attempt->port", (int) $attempt->error, $attempt->milliseconds];
    }
}
