<?php

declare(strict_types=1);

namespace Portal;

use Oxaqrycln\Archive;
use Oxaqrycln\HitList;
use Oxaqrycln\Order;

/** A search as the URL of a hit list describes it. Nothing else has a part in what the list shows. */
final class SearchRequest
{
    public const SIZES = [20, 50, 100, 1000];

    private function __construct(
        public readonly string $query,
        /** "channel/archive", or "" for all that the user may see */
        public readonly string $place,
        /** title of the column to sort by; "" keeps the server's order */
        public readonly string $sort,
        public readonly bool $isDescending,
        public readonly int $size,
        /** counted from 1, as the URL says */
        public readonly int $page,
        /** names the selection of this list; a new one when the URL names none */
        public readonly string $selection,
    ) {
    }

    public static function of(Request $request): self
    {
        $size = $request->number('size', self::SIZES[0], 1, max(self::SIZES));
        $selection = $request->text('sel');
        return new self(
            trim($request->text('q')),
            $request->text('in'),
            $request->text('sort'),
            $request->text('order') === 'down',
            \in_array($size, self::SIZES, true) ? $size : self::SIZES[0],
            $request->number('page', 1, 1, 100000),
            preg_match('/^[0-9a-f]{8}$/D', $selection) ? $selection : bin2hex(random_bytes(4)),
        );
    }

    /** Raises Failure for an archive that the user may not see, before the archive is asked. */
    public function run(Archive $archive, User $user, int $limit): HitList
    {
        return $archive->search(
            $this->query,
            max: $limit,
            queryMax: 0,
            folderRights: $this->folderRights($user),
            sort: $this->sort,
            order: $this->isDescending ? Order::Descending : Order::Ascending,
        );
    }

    /**
     * The query of its URL, with changes.
     *
     * @param array<string, string|int> $changes
     * @return array<string, string|int>
     */
    public function with(array $changes = []): array
    {
        return $changes + [
            'q' => $this->query,
            'in' => $this->place,
            'sort' => $this->sort,
            'order' => $this->isDescending ? 'down' : '',
            'size' => $this->size === self::SIZES[0] ? '' : $this->size,
            'page' => $this->page === 1 ? '' : $this->page,
            'sel' => $this->selection,
        ];
    }

    /** The same for all URLs that find the same hits, in whatever order and on whatever page they show them. */
    public function identity(): string
    {
        $list = $this->with(['sort' => '', 'order' => '', 'size' => '', 'page' => '', 'sel' => '']);
        ksort($list);
        return hash('sha256', Html::plainUrl('/', $list));
    }

    private function folderRights(User $user): string
    {
        if ($this->place === '') {
            return $user->folderRights();
        }
        [$channel, $archive] = explode('/', $this->place, 2) + ['', ''];
        if (!$user->maySee($channel, $archive)) {
            throw Failure::noDocument();
        }
        return "$(#$channel)\\$archive;";
    }
}
