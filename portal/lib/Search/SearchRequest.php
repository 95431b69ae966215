<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\Order;
use Portal\Documents\DocumentRights;
use Portal\Output\Html;
use Portal\Web\Request;
use Portal\Web\Visit;

/** A search as the URL of a hit list describes it. The URL and the rights of the user alone decide what the list shows. */
final class SearchRequest
{
    public const SIZES = [20, 50, 100, 1000];

    private ?SearchScope $scope = null;

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
        /** one of the archive's query formats; "" for all fields */
        public readonly string $format = '',
        /** id of a layout of the settings; "" for the server's own */
        public readonly string $layout = '',
    ) {
    }

    public static function of(Request $request): self
    {
        $size = $request->number('size', self::SIZES[0], 1, max(self::SIZES));
        $selection = $request->text('sel');
        // The form offers the formats of one archive, "of", and may be sent with another one.
        $isOther = $request->text('of') !== '' && $request->text('of') !== $request->text('in');
        return new self(
            trim($request->text('q')),
            $request->text('in'),
            $request->text('sort'),
            $request->text('order') === 'down',
            \in_array($size, self::SIZES, true) ? $size : self::SIZES[0],
            $request->number('page', 1, 1, 100000),
            preg_match('/^[0-9a-f]{8}$/D', $selection) ? $selection : bin2hex(random_bytes(4)),
            $isOther ? '' : $request->text('format'),
            $request->text('layout'),
        );
    }

    /**
     * Raises Failure for an archive that the user may not see, and for a query that his search rights refuse, before the
     * archive is searched. $query is without the conditions that these rights add.
     */
    public function run(Visit $visit): FoundHits
    {
        $archive = $visit->archive();
        $this->scope = SearchScope::of($archive, $visit->knownUser(), $this->place);
        $restriction = $this->scope->restriction;
        $hits = new FoundHits($archive->search(
            $restriction->applied($this->query),
            max: $visit->settings->searchLimit,
            queryMax: 0,
            format: $restriction->allowsFormats() ? $this->format : '',
            folderRights: $this->scope->folderRights,
            layout: $this->layout,
        ), $restriction, new DocumentRights($visit));
        if ($this->sort !== '') {
            $hits->sort($this->sort, $this->isDescending ? Order::Descending : Order::Ascending);
        }
        return $hits;
    }

    /** @return list<string> "channel/archive", which run() has left out because the search rights for them are others */
    public function leftOut(): array
    {
        return $this->scope?->leftOut ?? [];
    }

    /** @return list<array{string, string}> field and value that run() has added */
    public function fixedValues(): array
    {
        return $this->scope?->restriction->fixedValues() ?? [];
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
            'format' => $this->format,
            'layout' => $this->layout,
        ];
    }

    /** The same for all URLs that find the same hits, in whatever order and on whatever page they show them. */
    public function identity(): string
    {
        $list = $this->with(['sort' => '', 'order' => '', 'size' => '', 'page' => '', 'sel' => '']);
        ksort($list);
        return hash('sha256', Html::plainUrl('/', $list));
    }
}
