<?php

declare(strict_types=1);

namespace Portal\Web;

use Oxaqrycln\Archive;
use Oxaqrycln\BadArgument;
use Oxaqrycln\Error;
use Oxaqrycln\Users;
use Portal\Files\KeptFiles;
use Portal\Output\Html;
use Portal\Output\Locale;
use Portal\Output\Template;
use Portal\Search\SearchScope;
use Portal\Users\User;
use Portal\Users\UserFiles;

/** What a page works with besides the request: settings, session, user, archive and templates. */
final class Visit
{
    /** How many of a user's sessions are remembered, for the administration. */
    private const SESSIONS = 10;

    public readonly Session $session;
    public readonly Html $h;
    public readonly Template $templates;
    private ?Archive $archive = null;
    /** @var list<string>|null "channel/archive" of all archives that the user may see */
    private ?array $places = null;
    private ?User $user = null;
    /** @var array<string, UserFiles> by ID and name */
    private array $files = [];

    public function __construct(public readonly Settings $settings, public readonly Request $request)
    {
        $this->session = new Session($request, $settings);
        $this->h = new Html(Locale::of($request->header('Accept-Language')));
        $this->templates = new Template($this->h);
    }

    /** Null for a visitor. */
    public function user(): ?User
    {
        $id = $this->session->get('user');
        if ($this->user === null && \is_int($id)) {
            $name = (string) $this->session->get('name');
            $generation = $this->files($id, $name)->generation();
            if ($generation !== '' && $generation === $this->session->get('generation')) {
                $this->user = new User($this->users(), $id, $name, $this->settings->fields);
            }
        }
        return $this->user;
    }

    /** The user of a page whose route requires one. */
    public function knownUser(): User
    {
        return $this->user() ?? throw new \LogicException('the route does not need a user');
    }

    public function users(): Users
    {
        return $this->open()->users();
    }

    /** With the user's own account, when he has one. */
    public function archive(): Archive
    {
        $archive = $this->open();
        $account = $this->users()->accountOf($this->knownUser()->id);
        if ($account !== null) {
            $archive->query()->strTELOUser = $account->user;
            $archive->query()->strTELOPwd = $account->password;
        }
        return $archive;
    }

    /**
     * Raises Failure unless the user may see the archive, and it has exactly that name: search rights and document rights have
     * that name alone, whereas a server also takes others for it.
     */
    public function requireArchive(string $channel, string $archive): void
    {
        if ($this->knownUser()->maySee($channel, $archive)) {
            $this->places ??= SearchScope::places(SearchScope::visible($this->archive(), $this->knownUser()));
            if (\in_array("$channel/$archive", $this->places, true)) {
                return;
            }
        }
        throw Failure::noDocument();
    }

    /** What the portal remembers of the user who is logged on, or of another one, from one session to the next. */
    public function state(int $user, string $name = ''): StateFile
    {
        return $this->files($user, $name)->state();
    }

    /** The name may be left out for the user who is logged on. */
    public function files(int $user, string $name = ''): UserFiles
    {
        $name = $name === '' ? (string) $this->session->get('name') : $name;
        return $this->files["$user $name"] ??= new UserFiles($this->settings, $user, $name);
    }

    /** Whether single keys do something for the user. */
    public function hasKeys(): bool
    {
        return (bool) ($this->state($this->knownUser()->id)->read()['keys'] ?? true);
    }

    /** Logs the user on. */
    public function begin(int $user, string $name): void
    {
        $files = $this->files($user, $name);
        $this->session->begin(['user' => $user, 'name' => $name, 'generation' => $files->begunGeneration()]);
        (new KeptFiles($this->settings))->removeOld();
        $this->user = null;
        if ($this->settings->logDir !== '') {
            $entry = ['log' => $this->session->logName() . '.log', 'time' => time()];
            $files->state()->change(static fn(array $state): array =>
                ['sessions' => \array_slice([$entry, ...$state['sessions'] ?? []], 0, self::SESSIONS)] + $state);
        }
    }

    /** Ends all sessions of the user who is logged on, or of another one. */
    public function endEverywhere(int $user, string $name = ''): void
    {
        $this->files($user, $name)->renewGeneration();
    }

    /** Logs the user off. */
    public function end(): void
    {
        $this->session->end();
        $this->user = null;
    }

    /**
     * A page of the portal.
     *
     * @param array<string, mixed> $values of the template
     */
    public function page(string $template, string $title, array $values = [], int $status = 200): Response
    {
        return self::laidOut($this->settings, $this->templates, $template, $title, $values, $status, [
            'userName' => $this->user()?->name,
            'isAdministrator' => $this->isAdministrator(),
            'token' => $this->session->token(),
            'hasKeys' => $this->user() !== null && $this->hasKeys(),
        ]);
    }

    /**
     * A page as page() makes it that needs neither session nor user, for when these cannot be read.
     *
     * @param array<string, mixed> $values of the template
     */
    public static function bare(
        Settings $settings,
        Html $h,
        string $template,
        string $title,
        array $values,
        int $status,
    ): Response {
        $nobody = ['userName' => null, 'isAdministrator' => false, 'token' => '', 'hasKeys' => false];
        return self::laidOut($settings, new Template($h), $template, $title, $values, $status, $nobody);
    }

    /**
     * @param array<string, mixed> $values of the template
     * @param array<string, mixed> $visitor what the layout shows of him
     */
    private static function laidOut(
        Settings $settings,
        Template $templates,
        string $template,
        string $title,
        array $values,
        int $status,
        array $visitor,
    ): Response {
        $body = $templates->render($template, $values + ['token' => $visitor['token']]);
        $page = [
            'title' => $title,
            'siteTitle' => $settings->title,
            'style' => $settings->style,
            'logo' => $settings->logo,
            'body' => $body,
        ];
        return Response::page($templates->render('layout', $page + $visitor), $status);
    }

    /** For the navigation, which the page of a failing database has, too. */
    private function isAdministrator(): bool
    {
        try {
            return $this->user()?->isAdministrator() ?? false;
        } catch (Error) {
            return false;
        }
    }

    private function open(): Archive
    {
        try {
            return $this->archive ??= $this->connected();
        } catch (BadArgument $error) {
            // Nothing that the user has typed is part of them.
            throw new \RuntimeException('the settings of the archive cannot be used', 0, $error);
        }
    }

    private function connected(): Archive
    {
        return new Archive(
            hosts: $this->settings->hosts,
            user: $this->settings->user,
            password: $this->settings->password,
            timeout: $this->settings->timeout,
            session: $this->session->logName(),
            logDir: $this->settings->logDir,
            blobLocal: $this->settings->blobLocal,
            blobRemote: $this->settings->blobRemote,
            database: $this->settings->database,
            webUser: (string) $this->session->get('name'),
            webUserAddress: $this->request->address(),
        );
    }
}
