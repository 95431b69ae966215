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

    /** The hits of one of his selections. */
    public function selection(string $id): StateFile
    {
        return new StateFile($this->settings, 'selections', "selection $id of $this->owner");
    }

    /** Which selections there are. */
    public function selections(): StateFile
    {
        return new StateFile($this->settings, 'selections', "list of $this->owner");
    }

    /** What became of the forms that he has sent. */
    public function forms(): StateFile
    {
        return new StateFile($this->settings, 'forms', $this->owner);
    }

    /** Held while one of his forms is carried out. */
    public function turn(string $name): StateFile
    {
        return new StateFile($this->settings, 'forms', "turn $name of $this->owner");
    }

    /** What a session must have been begun with to be one of his; "" ends all of them. */
    public function generation(): string
    {
        return (string) ($this->state()->read()['generation'] ?? '');
    }

    /** What a new session of his begins with. Two log-ons at once, the first ones of the user, get the same. */
    public function begunGeneration(): string
    {
        $new = ['generation' => bin2hex(random_bytes(8))];
        $this->generation() !== '' || $this->state()->change(static fn(array $state): array => $state + $new);
        return $this->generation();
    }

    /** Ends his sessions. */
    public function renewGeneration(): void
    {
        $this->state()->change(static fn(array $state): array => ['generation' => bin2hex(random_bytes(8))] + $state);
    }

    /** Forgets everything, which also ends his sessions. */
    public function remove(): void
    {
        foreach ($this->selections()->read()['ids'] ?? [] as $id) {
            $this->selection($id)->remove();
        }
        $this->selections()->remove();
        $this->forms()->remove();
        $this->state()->remove();
    }

    /** After the user was renamed. His sessions and selections end. */
    public function moveTo(self $renamed): void
    {
        $state = array_diff_key($this->state()->read(), ['generation' => true]);
        $this->remove();
        $renamed->state()->change(static fn(): array => $state);
    }
}
