<?php

declare(strict_types=1);

namespace Portal;

use Oxaqrycln\Archive;
use Oxaqrycln\HitList;
use Oxaqrycln\Order;

/** A search as the URL of a hit list describes it. Nothing else has a part in what the list shows. */
final class SearchRequest
{
    public const SIZES = [20, 50, 100];

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
    ) {
    }

    public static function of(Request $request): self
    {
        $size = $request->number('size', self::SIZES[0], 1, 100);
        return new self(
            trim($request->text('q')),
            $request->text('in'),
            $request->text('sort'),
            $request->text('order') === 'down',
            \in_array($size, self::SIZES, true) ? $size : self::SIZES[0],
            $request->number('page', 1, 1, 100000),
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
        ];
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
