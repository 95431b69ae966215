<?php

declare(strict_types=1);

namespace Portal\Web;

use Portal\Output\Html;
use Portal\Pages\LogOnPage;
use Portal\Users\Right;

/** Answers one request: finds its route, checks the right, runs the page, and makes pages of failures. */
final class Portal
{
    /** @param list<Route> $routes */
    public function __construct(private readonly array $routes, private readonly Visit $visit)
    {
    }

    /** Answers the browser. */
    public static function answer(): void
    {
        ini_set('display_errors', '0');
        $request = Request::ofBrowser();
        try {
            $settings = Settings::read((string) ($_SERVER['PORTAL_SETTINGS'] ?? getenv('PORTAL_SETTINGS')));
            $response = self::responseOf($settings, $request);
        } catch (\Throwable $error) {
            error_log("portal: $error");
            $response = new Response("The portal is not available at present.\n", 500, ['Content-Type' => 'text/plain']);
        }
        $response->send(!$request->isHead());
    }

    private static function responseOf(Settings $settings, Request $request): Response
    {
        try {
            $visit = new Visit($settings, $request);
        } catch (\Throwable $error) {
            return FailurePage::bare($settings, $error, $request);
        }
        return (new self(require \dirname(__DIR__, 2) . '/routes.php', $visit))->respond($request);
    }

    public function respond(Request $request): Response
    {
        try {
            return $this->run($request);
        } catch (\Throwable $error) {
            return (new FailurePage($this->visit))->answer($error, $request, $this->typed($request));
        }
    }

    private function run(Request $request): Response
    {
        $route = $this->routeOf($request->path());
        if (!\in_array($request->method(), $route->methods, true)) {
            return (new FailurePage($this->visit))->answer(new Failure('method', 405), $request)
                ->with('Allow', implode(', ', $route->methods));
        }
        $refusal = $this->refusal($route, $request);
        if ($refusal !== null) {
            return $refusal;
        }
        if ($request->method() === 'GET') {
            $request = $this->filledIn($route, $request);
        } else {
            if ($request->isTooLarge()) {
                throw new Failure('too-large', 413);
            }
            if (!$request->isFromThisSite()) {
                throw new Failure('form', 403);
            }
            if (!$this->visit->session->isToken($request->field('token'))) {
                // The user has logged on anew since the form was shown: it is shown again, and not carried out.
                $kept = $this->typed($request);
                $request = $kept === [] ? throw new Failure('form', 403) : $request->shownAgain($kept);
            }
        }
        return (new ($route->page)())->answer($request, $this->visit);
    }

    /** The request with what was typed into the form of this page when the session was over. */
    private function filledIn(Route $route, Request $request): Request
    {
        $kept = $route->kept === [] ? null : $this->visit->session->get('kept');
        if (!\is_array($kept) || strtok($kept['target'], '#') !== $request->target()) {
            return $request;
        }
        $this->visit->session->take('kept');
        $filled = $request->shownAgain($kept['fields']);
        return $filled->shownAgain($filled->chosenFields($route->kept));
    }

    /**
     * What a form of this site has for its route to keep; nothing for a user who was not shown the form.
     *
     * @return array<string, string>
     */
    private function typed(Request $request): array
    {
        $route = $request->method() !== 'GET' && $request->isFromThisSite() ? $this->routeFor($request->path()) : null;
        $kept = $route === null ? [] : $request->chosenFields($route->kept);
        if ($kept === [] || $route->right === Right::Anyone) {
            return $kept;
        }
        $user = $this->visit->session->get('user');
        $by = $request->field(Route::BY);
        return $by !== '' && \in_array($user, [null, (int) $by], true) ? $kept + [Route::BY => $by] : [];
    }

    private function routeOf(string $path): Route
    {
        return $this->routeFor($path) ?? throw Failure::notFound();
    }

    private function routeFor(string $path): ?Route
    {
        foreach ($this->routes as $route) {
            if ($route->path === $path) {
                return $route;
            }
        }
        return null;
    }

    /** Where the form is that was sent to a route, to go back to it. */
    private function formOf(Route $route, Request $request): string
    {
        if ($route->form === '') {
            return \in_array('GET', $route->methods, true) ? $request->target() : '/';
        }
        [$path, $fragment] = explode('#', $route->form, 2) + ['', ''];
        return $path . substr($request->target(), strcspn($request->target(), '?')) . ($fragment === '' ? '' : "#$fragment");
    }

    /** Null when the route may be used. */
    private function refusal(Route $route, Request $request): ?Response
    {
        $right = $route->right;
        if ($right === Right::Anyone) {
            return null;
        }
        $user = $this->visit->user();
        if ($user !== null && !$user->exists()) {
            $this->visit->end();
            $user = null;
        }
        if ($user === null) {
            $target = $this->formOf($route, $request);
            $kept = $this->typed($request);
            if ($kept !== []) {
                return (new LogOnPage())->interrupted($this->visit, $target, $kept);
            }
            return Response::redirect(Html::plainUrl('/log-on', ['to' => $target === '/' ? '' : $target]));
        }
        if ($right === Right::NewPassword) {
            return null;
        }
        if ($user->mustChangePassword()) {
            return Response::redirect('/password');
        }
        if ($right === Right::Administrator && !$user->isAdministrator()) {
            throw Failure::forbidden();
        }
        return null;
    }
}
