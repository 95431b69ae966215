<?php

// A search page for the users of a database, see docs/php.md. php -d ffi.enable=true -S 127.0.0.1:8080 search.php serves
// it. The environment has OXAQRY_REMOTE_HOSTS, OXAQRY_USER, OXAQRY_PASSWORD and OXAQRY_DATABASE.

declare(strict_types=1);

use Oxaqrycln\{AllServersBusy, Archive, BadArgument, ConnectionFailed, DocumentName, Error, Refused, TimedOut};

class_exists(Archive::class) || require __DIR__ . '/../../bindings/php/autoload.php';
/** For HTML. Whatever comes from a visitor or the archive goes through it. */
$h = static fn(string $text): string => htmlspecialchars($text, ENT_QUOTES | ENT_SUBSTITUTE);
[$status, $body, $given] = [200, '', array_filter($_GET, 'is_string') + ['q' => '']];
try {
    $archive = new Archive(
        hosts: getenv('OXAQRY_REMOTE_HOSTS') ?: '',
        user: getenv('OXAQRY_USER') ?: '',
        password: getenv('OXAQRY_PASSWORD') ?: '',
        database: getenv('OXAQRY_DATABASE') ?: '',
    );
    $users = $archive->users();
    if (!$user = $users->logOn($_SERVER['PHP_AUTH_USER'] ?? '', $_SERVER['PHP_AUTH_PW'] ?? '')) {
        header('WWW-Authenticate: Basic realm="archive"', true, 401);
        exit('Please log on.');
    }
    $rights = $users->folderRights($user);
    if (isset($given['channel'], $given['archive'], $given['id'], $given['version'])) {
        $name = new DocumentName($given['channel'], $given['archive'], $given['id'], $given['version']);
        // The document comes from the browser, so the user's rights decide, not the hit list that he was shown.
        $allowed = ["$(#$name->channel)", "$(#$name->channel)\\$name->archive"];
        if (array_intersect($allowed, explode(';', $rights)) === []) {
            throw new Refused('there is no such document');
        }
        foreach ($archive->document($name, $given['q'])->segments as $segment) {
            $body .= "<h2>{$h($segment->title)}</h2><p>";
            foreach ($segment->text->pieces() as $piece) {
                $body .= nl2br($piece->isMarked ? "<mark>{$h($piece->text)}</mark>" : $h($piece->text));
            }
        }
    } elseif ($given['q'] !== '') {
        $hits = $archive->search($given['q'], max: 50, folderRights: $rights);
        $body = "{$hits->count()} of $hits->total hits<table><tr><th><th>" . implode('<th>', array_map($h, $hits->columns()));
        foreach ($hits as $hit) {
            $name = array_diff_key(get_object_vars($hit), ['values' => 0]);
            $link = $h('?' . http_build_query(['q' => $given['q']] + $name));
            $body .= "\n<tr><td><a href=\"$link\">open</a><td>" . implode('<td>', array_map($h, $hit->values));
        }
    }
} catch (Error $error) {
    $status = match (true) {
        $error instanceof TimedOut, $error instanceof ConnectionFailed, $error instanceof AllServersBusy => 503,
        $error instanceof Refused, $error instanceof BadArgument => 400,
        default => 500,
    };
    $status === 400 || error_log($error->getMessage());
    $body = $status === 400 ? "<p>{$h($error->getMessage())}</p>" : '<p>The archive does not work at present.</p>';
}
header("Content-Security-Policy: default-src 'none'; form-action 'self'; frame-ancestors 'none'", true, $status);
echo "<!DOCTYPE html><title>Search</title><form><input name=\"q\" value=\"{$h($given['q'])}\"></form>\n$body\n";
