<?php

declare(strict_types=1);

namespace Portal\Pages;

use Oxaqrycln\ArchiveEntry;
use Portal\Page;
use Portal\Request;
use Portal\Response;
use Portal\Visit;

/** The form of a search, over the channels and archives that the user may see. */
final class SearchPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        $user = $visit->knownUser();
        $channels = [];
        foreach ($user->folderRights() === '' ? [] : $visit->archive()->archives() as $channel) {
            $maySee = fn(ArchiveEntry $archive): bool => $user->maySee($channel->name, $archive->name);
            $archives = array_values(array_filter($channel->archives, $maySee));
            if ($archives !== []) {
                $channels[] = ['name' => $channel->name, 'description' => $channel->description, 'archives' => $archives];
            }
        }
        return $visit->page('search', $visit->h->locale->text('search'), [
            'channels' => $channels,
            'query' => $request->text('q'),
            'chosen' => $request->text('in'),
            'recent' => $visit->state($user->id)->read()['recent'] ?? [],
        ]);
    }
}
