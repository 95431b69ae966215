// Every text and every failure that the pages name exists in English. check_locale.php compares the other languages.
import { test } from 'node:test';
import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import assert from 'node:assert/strict';

const portal = fileURLToPath(new URL('../../portal', import.meta.url));
const en = JSON.parse(execFileSync('php', ['-r', 'echo json_encode(require $argv[1]);', `${portal}/locale/en.php`]));
const sources = ['lib', 'pages', 'templates'].flatMap((folder) => readdirSync(`${portal}/${folder}`, { recursive: true })
  .filter((name) => name.endsWith('.php')).map((name) => [`${folder}/${name}`, readFileSync(`${portal}/${folder}/${name}`, 'utf8')]));

test('every text and every failure that the pages name is there', () => {
  const missing = [];
  for (const [file, source] of sources) {
    for (const [, key] of source.matchAll(/->text\('([\w-]+)'[,)]/g)) {
      // Request::text() takes names of parameters, which have no hyphen.
      if (!(key in en) && (file.startsWith('templates/') || key.includes('-'))) missing.push(`${file}: ${key}`);
    }
    for (const [, kind] of source.matchAll(/new (?:self|Failure)\('([a-z-]+)', \d+/g)) {
      for (const key of [`failure-${kind}`, `failure-${kind}-help`]) if (!(key in en)) missing.push(`${file}: ${key}`);
    }
  }
  assert.deepEqual(missing, []);
});
