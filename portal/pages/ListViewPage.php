<?php

declare(strict_types=1);

namespace Portal\Pages;

use Portal\Search\ListView;
use Portal\Web\Page;
use Portal\Web\Request;
use Portal\Web\Response;
use Portal\Web\Visit;

/** Remembers the columns and the density of an archive's hit lists, and goes back to the list. */
final class ListViewPage implements Page
{
    public function answer(Request $request, Visit $visit): Response
    {
        if ($request->field('do') === 'reset') {
            ListView::forget($visit, $request->field('in'));
            return Response::redirect($request->field('back'));
        }
        [$places, $hidden] = [[], []];
        for ($number = 0; $number < ListView::MOST_COLUMNS && $request->field("key-$number") !== ''; ++$number) {
            $key = $request->field("key-$number");
            // A column that is moved comes in front of the one that has the place.
            $place = $request->field("place-$number");
            $wanted = preg_match('/^\d{1,6}$/D', $place) ? (int) $place : $number + 1;
            $places[$key] = [$wanted, $wanted === $number + 1 ? 1 : ($wanted > $number + 1 ? 2 : 0), $number];
            if ($request->field("show-$number") === '') {
                $hidden[] = $key;
            }
        }
        uasort($places, static fn(array $one, array $other): int => $one <=> $other);
        ListView::remember(
            $visit,
            $request->field('in'),
            array_map('strval', array_keys($places)),
            $hidden,
            $request->field('density'),
        );
        return Response::redirect($request->field('back'));
    }
}
