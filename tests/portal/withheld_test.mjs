// What search rights and document rights keep from a user, and the limit on a user's selections.
import { after, test } from 'node:test';
import { execFileSync } from 'node:child_process';
import { readdirSync } from 'node:fs';
import assert from 'node:assert/strict';
import { setTimeout } from 'node:timers/promises';
import { ArchiveServer } from './archive_server.mjs';
import { siteAndBrowser } from './site.mjs';

const list = 'q=*&in=Finance/Invoices';
const document = (id, query = '') => `/document?channel=Finance&archive=Invoices&id=${id}&q=${query}`;
const [site, browser] = siteAndBrowser({
  options: ['--setting=timeout=5'],
  prepare: () => {
    execFileSync('python3', ['-c', `import sqlite3, sys
database = sqlite3.connect(sys.argv[1])
database.executescript("""INSERT INTO SearchRights VALUES (70); INSERT INTO SearchRightArchives VALUES (70, 'Finance', '');
  INSERT INTO SearchRightFields VALUES (70, 12, '', 1, 0); INSERT INTO DocRights VALUES (71, 'Finance', 'Invoices');
  INSERT INTO DocRightFields VALUES (71, 15, '<', '3000', 'NUM', 1)""")`, `${site.directory}/users.sqlite`]);
    site.addUser('unseeing', '--channel', 'Finance', '--search-right', '70');
    site.addUser('small-sums', '--channel', 'Finance', '--doc-right', '71');
  },
});
const archive = new ArchiveServer(site);
after(() => archive.close());

const hitsOf = async (request, query) => (await (await request.get(`/download?as=json&${query}`)).json()).hits.map((hit) => hit.document);

test('a document that is withheld looks like one that does not exist', async () => {
  let all;
  await browser.asUser(site, 'clerk', async (page, { request }) => { all = await hitsOf(request, list); });
  await browser.asUser(site, 'small-sums', async (page, { request }) => {
    const shown = await hitsOf(request, list);
    const withheld = all.find((id) => !shown.includes(id));
    for (const query of ['', 'amount', '(']) {
      const [one, other] = await Promise.all([withheld, '987654'].map(async (id) => {
        const answer = await request.get(document(id, query));
        assert.equal(answer.status(), 404);
        return (await answer.text()).match(/<main.*<\/main>/s)[0].replaceAll(id, 'ID');
      }));
      assert.equal(one, other, query);
    }
    // The server's own text about a query is shown with a document that may be seen.
    assert.match(await (await request.get(document(shown[0], '('))).text(), /class="problem" role="status"/);
  });
});

test('a query format cannot search in a hidden field alone', () => browser.asUser(site, 'unseeing', async (page, { request }) => {
  assert.deepEqual(await hitsOf(request, `${list}&format=Title`), await hitsOf(request, list));
  await page.goto('/?in=Finance/Invoices');
  assert.equal(await page.locator('[name=format] option').count(), 0);
}));

test('no more than twenty selections of a user are kept, cleared ones included', () => browser.asUser(site, 'clerk', async (page, { request }) => {
  await page.goto(`/hits?${list}`);
  const token = await page.locator('#selection [name=token]').getAttribute('value');
  for (let i = 10; i < 40; ++i) {
    const answer = await request.post(`/selection?${list}&sel=000000${i}`, { form: { token, do: 'clear' }, maxRedirects: 0 });
    assert.equal(answer.status(), 303);
  }
  const files = readdirSync(`${site.directory}/state/selections`).filter((name) => name.endsWith('.json'));
  assert.equal(files.length, 20 + 1, 'with the list of them');
}));

test('a download fails as a whole when a document of the list cannot be checked', () => browser.asUser(site, 'small-sums', async (page, { request }) => {
  await archive.replace('--misbehave', 'delay:100');
  const answer = request.get(`/download?as=csv&${list}`);
  await setTimeout(1500);
  await archive.stop();
  assert.equal((await answer).status(), 502);
}));
