<?php

declare(strict_types=1);

namespace Portal\Users;

use Portal\Web\Settings;
use Portal\Web\StateFile;

/**
 * What the portal remembers of a user from one session to the next. The files belong to his ID and name together, because the
 * database may give the ID of a removed user to a new one.
 */
final class UserFiles
{
    private readonly string $owner;
    private ?StateFile $state = null;

    public function __construct(private readonly Settings $settings, int $id, string $name)
    {
        $this->owner = "user $id " . strtolower($name);
    }

    public function state(): StateFile
    {
        return $this->state ??= new StateFile($this->settings, 'users', $this->owner);
    }

    /** The hits of one of the user's selections. */
    public function selection(string $id): StateFile
    {
        return new StateFile($this->settings, 'selections', "selection $id of $this->owner");
    }

    /** The names of the selections. */
    public function selections(): StateFile
    {
        return new StateFile($this->settings, 'selections', "list of $this->owner");
    }

    /** The outcomes of the forms that the user has sent. */
    public function forms(): StateFile
    {
        return new StateFile($this->settings, 'forms', $this->owner);
    }

    /** Locked while a form of the user is carried out. */
    public function turn(string $name): StateFile
    {
        return new StateFile($this->settings, 'forms', "turn $name of $this->owner");
    }

    /** The mark that all sessions of the user carry; a session with another one has ended. "" before the first log-on. */
    public function generation(): string
    {
        return (string) ($this->state()->read()['generation'] ?? '');
    }

    /** What a new session of the user begins with; the user's first two log-ons at once get the same. */
    public function begunGeneration(): string
    {
        $new = ['generation' => bin2hex(random_bytes(8))];
        $this->generation() !== '' || $this->state()->change(static fn(array $state): array => $state + $new);
        return $this->generation();
    }

    /** Ends all sessions of the user. */
    public function renewGeneration(): void
    {
        $this->state()->change(static fn(array $state): array => ['generation' => bin2hex(random_bytes(8))] + $state);
    }

    /** Deletes everything, which also ends the user's sessions. */
    public function remove(): void
    {
        foreach ($this->selections()->read()['ids'] ?? [] as $id) {
            $this->selection($id)->remove();
        }
        $this->selections()->remove();
        $this->forms()->remove();
        $this->state()->remove();
    }

    /** Moves the files after the user was renamed, and ends the sessions and selections. */
    public function moveTo(self $renamed): void
    {
        $state = array_diff_key($this->state()->read(), ['generation' => true]);
        $this->remove();
        $renamed->state()->change(static fn(): array => $state);
    }
}
