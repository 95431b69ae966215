<?php

declare(strict_types=1);

namespace Portal;

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
            $portal = new self(require __DIR__ . '/../routes.php', new Visit($settings, $request));
            $response = $portal->respond($request);
        } catch (\Throwable $error) {
            error_log("portal: $error");
            $response = new Response("The portal is not available at present.\n", 500, ['Content-Type' => 'text/plain']);
        }
        $response->send(!$request->isHead());
    }

    public function respond(Request $request): Response
    {
        try {
            return $this->run($request);
        } catch (\Throwable $error) {
            return (new FailurePage($this->visit))->answer($error, $request);
        }
    }

    private function run(Request $request): Response
    {
        $route = $this->routeOf($request->path());
        if (!\in_array($request->method(), $route->methods, true)) {
            return (new FailurePage($this->visit))->answer(new Failure('method', 405), $request)
                ->with('Allow', implode(', ', $route->methods));
        }
        $refusal = $this->refusal($route->right, $request);
        if ($refusal !== null) {
            return $refusal;
        }
        if ($request->method() !== 'GET') {
            if (!$request->isFromThisSite() || !$this->visit->session->isToken($request->field('token'))) {
                throw new Failure('form', 403);
            }
        }
        return (new ($route->page)())->answer($request, $this->visit);
    }

    private function routeOf(string $path): Route
    {
        foreach ($this->routes as $route) {
            if ($route->path === $path) {
                return $route;
            }
        }
        throw Failure::notFound();
    }

    /** Null when the route may be used. */
    private function refusal(Right $right, Request $request): ?Response
    {
        if ($right === Right::Anyone) {
            return null;
        }
        $user = $this->visit->user();
        if ($user === null) {
            $target = $request->method() === 'GET' ? $request->target() : '/';
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
