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
use Oxaqrycln\Refused;
use Oxaqrycln\TimedOut;

/** The page of a failure: what happened, what to do, and the way back with the query kept. */
final class FailurePage
{
    public function __construct(private readonly Visit $visit)
    {
    }

    /** @param array<string, string> $typed fields of the form that was sent, to go back to it with them */
    public function answer(\Throwable $error, Request $request, array $typed = []): Response
    {
        $failure = self::failureOf($error);
        $attempts = $error instanceof Error ? $error->request->attempts : [];
        $response = $this->visit->page('failure', $this->visit->h->locale->text("failure-$failure->kind"), [
            'kind' => $failure->kind,
            'detail' => $failure->detail,
            'attempts' => array_map(self::shown(...), $attempts),
            'milliseconds' => $error instanceof Error ? $error->request->milliseconds : 0,
            'again' => $request->method() === 'GET' || $failure->kind === 'too-large' ? $request->target() : '',
            'typed' => $failure->kind === 'forbidden' ? [] : $typed,
            'target' => $request->target(),
            'query' => $request->text('q'),
            'place' => \in_array($failure->kind, ['no-document', 'forbidden'], true) ? '' : $request->text('in'),
        ], $failure->status);
        return $failure->status === 503 ? $response->with('Retry-After', '10') : $response;
    }

    /** What the user is told about an error. What is not his own fault goes into the log as well. */
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
            $error instanceof ConnectionFailed => new Failure('connection', 502),
            $error instanceof Cancelled => new Failure('cancelled', 503),
            $error instanceof DatabaseFailed => new Failure('database', 503),
            $error instanceof Error => new Failure('answer', 502),
            $error instanceof DiskFull => new Failure('disk', 507),
            default => new Failure('internal', 500),
        };
    }

    /** @return array{string, int, int} the server as the list names it, the error's number or 0, milliseconds */
    private static function shown(Attempt $attempt): array
    {
        return ["$attempt->host:$attempt->port", (int) $attempt->error, $attempt->milliseconds];
    }
}
