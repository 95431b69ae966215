<?php

declare(strict_types=1);

namespace Portal\Search;

use Oxaqrycln\DocumentName;
use Portal\Users\UserFiles;
use Portal\Web\StateFile;
use Portal\Web\Visit;

/**
 * The hits of a search that its user has selected, on all pages of the list. The URL names the selection, so that two tabs
 * with the same search have one each; another search does not take it over.
 */
final class Selection
{
    public const MOST = 1000;
    /** selections of a user that are kept; older ones are removed */
    private const KEPT = 20;
    private const LONGEST_KEY = 400;

    private readonly UserFiles $files;
    private readonly StateFile $file;
    private readonly string $search;
    /** @var array<string, true> by the keys of the hits */
    private array $hits;

    public function __construct(Visit $visit, private readonly SearchRequest $request)
    {
        $this->files = $visit->files($visit->knownUser()->id);
        $this->file = $this->files->selection($request->selection);
        $this->search = $request->identity();
        $this->hits = $this->hitsOf($this->file->read());
    }

    /** Names a hit in a form. */
    public static function key(DocumentName $name): string
    {
        return rawurlencode($name->channel) . '/' . rawurlencode($name->archive) . '/' . rawurlencode($name->id) . '/'
            . rawurlencode($name->version);
    }

    public function has(DocumentName $name): bool
    {
        return $this->hasKey(self::key($name));
    }

    public function hasKey(string $key): bool
    {
        return isset($this->hits[$key]);
    }

    public function count(): int
    {
        return \count($this->hits);
    }

    public function isFull(): bool
    {
        return \count($this->hits) >= self::MOST;
    }

    /**
     * Adds and removes hits; those above MOST are left out.
     *
     * @param list<string> $add keys
     * @param list<string> $remove keys
     */
    public function change(array $add, array $remove): void
    {
        $content = $this->file->change(function (array $content) use ($add, $remove): array {
            $hits = array_diff_key($this->hitsOf($content), array_flip($remove));
            foreach ($add as $key) {
                if (\count($hits) < self::MOST && self::isKey($key)) {
                    $hits[$key] = true;
                }
            }
            return ['search' => $this->search, 'hits' => array_map('strval', array_keys($hits))];
        });
        $this->hits = $this->hitsOf($content);
        $this->removeOld();
    }

    public function clear(): void
    {
        $this->file->change(fn(): array => ['search' => $this->search, 'hits' => []]);
        $this->hits = [];
        $this->removeOld();
    }

    /**
     * @param array<string, mixed> $content
     * @return array<string, true>
     */
    private function hitsOf(array $content): array
    {
        return ($content['search'] ?? '') === $this->search ? array_fill_keys($content['hits'], true) : [];
    }

    private function removeOld(): void
    {
        $id = $this->request->selection;
        $list = $this->files->selections();
        if (($list->read()['ids'][0] ?? '') === $id) {
            return;
        }
        $old = [];
        $list->change(static function (array $content) use ($id, &$old): array {
            $ids = [$id, ...array_diff($content['ids'] ?? [], [$id])];
            $old = \array_slice($ids, self::KEPT);
            return ['ids' => \array_slice($ids, 0, self::KEPT)];
        });
        foreach ($old as $each) {
            $this->files->selection($each)->remove();
        }
    }

    private static function isKey(string $key): bool
    {
        return \strlen($key) <= self::LONGEST_KEY && preg_match('~^([\w.\~%-]+/){3}[\w.\~%-]*$~D', $key) === 1;
    }
}
