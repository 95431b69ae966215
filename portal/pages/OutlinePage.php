<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\Archive;
use Oxaqrycln\Outliner;
use Oxaqrycln\OutlinerNode;
use Portal\Output\Html;
use Portal\Search\SearchRestriction;
use Portal\Search\SearchScope;
use Portal\Web\Failure;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/**
 * A tree of predefined searches in an archive. The URL says which nodes are open, "open=1.4", or leaves it to the tree;
 * "go=1.3", the path from a root to a node, leads to the hits of the node.
 */
final class OutlinePage implements Page
{
    private const DEEPEST = 20;
    private const MOST_NODES = 2000;

    /** @var list<int>|null ids of the open nodes; null as the tree has them */
    private ?array $open;
    private int $nodeCount = 0;

    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        $place = $request->text('in');
        [$channel, $name] = SearchScope::parts($place);
        $visit->requireArchive($channel, $name);
        $archive = $visit->archive();
        $tree = $this->tree($archive->outline($channel, $name), $request->text('tree'));
        $go = $request->text('go');
        if ($go !== '') {
            return Response::redirect(Html::plainUrl('/hits', ['q' => $this->query($archive, $tree->id, $go), 'in' => $place]));
        }
        $this->open = $request->text('open') === '' ? null : self::ids($request->text('open'));
        $nodes = $this->nodes($archive, $tree->id, $user->searchRestriction($channel, $name), 0, '', 1);
        return $visit->page('outline', $tree->name, [
            'tree' => $tree,
            'place' => $place,
            'nodes' => $nodes,
            'open' => self::openIds($nodes),
        ]);
    }

    /** @param list<Outliner> $trees */
    private function tree(array $trees, string $id): Outliner
    {
        foreach ($trees as $tree) {
            if ($tree->id === $id) {
                return $tree;
            }
        }
        throw Failure::noDocument();
    }

    /**
     * The nodes below one, and below those of them that are open.
     *
     * @return list<array{node: OutlinerNode, path: string, isSearched: bool, children: ?list<mixed>}>
     */
    private function nodes(
        Archive $archive,
        string $tree,
        SearchRestriction $restriction,
        int $parent,
        string $path,
        int $depth,
    ): array {
        $nodes = [];
        $isSearched = [];
        foreach ($archive->nodes($tree, $parent) as $node) {
            if (++$this->nodeCount > self::MOST_NODES) {
                throw new Failure('tree-size', 422);
            }
            $way = $path === '' ? (string) $node->id : "$path.$node->id";
            $isOpen = $this->open === null ? $node->isExpanded : \in_array($node->id, $this->open, true);
            // It depends on the levels above alone, so it is the same for the nodes of one level below one node.
            $isSearched[$node->level] ??= $this->isSearched($archive->nodeQuery($node->id), $restriction);
            $nodes[] = [
                'node' => $node,
                'path' => $way,
                'isSearched' => $isSearched[$node->level],
                'children' => $isOpen && $node->childCount > 0 && $depth < self::DEEPEST
                    ? $this->nodes($archive, $tree, $restriction, $node->id, $way, $depth + 1)
                    : null,
            ];
        }
        return $nodes;
    }

    private function isSearched(string $query, SearchRestriction $restriction): bool
    {
        try {
            $restriction->check($query);
            return $query !== '';
        } catch (Failure) {
            return false;
        }
    }

    /** The query of the node at the end of a path. Each step is checked, so that nodes of other trees are not found. */
    private function query(Archive $archive, string $tree, string $go): string
    {
        $parent = 0;
        foreach (\array_slice(self::ids($go), 0, self::DEEPEST) as $id) {
            $ids = array_map(static fn(OutlinerNode $node): int => $node->id, $archive->nodes($tree, $parent));
            \in_array($id, $ids, true) || throw Failure::noDocument();
            $parent = $id;
        }
        return $parent === 0 ? '' : $archive->nodeQuery($parent);
    }

    /** @return list<int> */
    private static function ids(string $text): array
    {
        return preg_match('/^\d{1,9}(\.\d{1,9})*$/D', $text) ? array_map(intval(...), explode('.', $text)) : [];
    }

    /**
     * @param list<array<string, mixed>> $nodes as nodes() gives them
     * @return list<int>
     */
    private static function openIds(array $nodes): array
    {
        $ids = [];
        foreach ($nodes as $entry) {
            if ($entry['children'] !== null) {
                $ids = [...$ids, $entry['node']->id, ...self::openIds($entry['children'])];
            }
        }
        return $ids;
    }
}
