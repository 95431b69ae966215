// Texts that try to run scripts or to break out of where they are shown: in queries, documents, notes, names and downloads.
import { describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { chief, letter, siteAndBrowser } from './site.mjs';

const [site, browser] = siteAndBrowser();

describe('hostile texts', () => {
  // Each tries to run attack() or to end the text, attribute or element that it is in. The last ones are those of the wire.
  const TEXTS = ['<script>attack()</script>', '"><img src=x onerror=attack()>', "' onmouseover='attack()' x='", '</title><script>attack()</script>',
    'javascript:attack()', '<mark>not a hit</mark>', '&amp;&lt;b&gt;', '{{attack()}}${attack()}', '=HYPERLINK("http://x")', '\u0080\u0085\u009f',
    'a\u0001\u0007b', 'a\u202Eb', '\u{1F600}', 'W'.repeat(255), 'a^b', '^,^', 'a|b~c#d', '$(#x)\\..\\', '%00%0d%0aSet-Cookie: a=b', '--></style>'];
  const isHarmless = async (page, where) => {
    const found = await page.evaluate(() => [typeof globalThis.attacked, document.querySelectorAll('main :is(script:not([src]), style, img[onerror], [onmouseover], b), a[href^="javascript:"]').length,
      document.documentElement.scrollWidth > innerWidth, /[\u0080-\u009f\u0001-\u0008\u202a-\u202e]/.test(document.body.innerText)]);
    assert.deepEqual(found, ['undefined', 0, false, false], where);
  };
  const asHostile = (name, body) => browser.asUser(site, name, async (page) => {
    await page.addInitScript(() => { globalThis.attack = () => { globalThis.attacked = true; }; });
    await body(page);
  }, { viewport: { width: 320, height: 640 } });

  test('are shown as text in the search, its list and its failures', () => asHostile('clerk', async (page) => {
    for (const text of TEXTS) {
      for (const path of ['/hits?q=', '/?q=', '/hits?q=copper&in=', '/hits?q=copper&sort=', `/document?${letter}&q=`, `/document?${letter}&back=`, '/keys?back=', '/']) {
        const answer = await page.goto(path === '/' ? `/${encodeURIComponent(text)}` : path + encodeURIComponent(text));
        assert.ok(answer.status() < 500, `${path}${text}: ${answer.status()}`);
        await isHarmless(page, path + text);
      }
    }
  }));

  test('are stored as they are or refused, and shown as text', () => asHostile('clerk', async (page) => {
    let stored = 0;
    for (const text of TEXTS) {
      await page.goto('/create?in=Mail/Inbox');
      await page.locator('input[name=title]').fill(text);
      for (const input of await page.locator('#document-form :is(input:not([type]), textarea)').all()) {
        if (await input.getAttribute('name') !== 'title' && await input.inputValue() === '') await input.fill(text);
      }
      await chief(page).click();
      await isHarmless(page, text);
      if (new URL(page.url()).pathname !== '/document') continue;  // the form again, or a page that says why not
      ++stored;
      // The archive replaces its separators by blanks, and the page shows a sign for invisible characters.
      const expected = text.replace(/[\u0001-\u001f^]/g, ' ').replace(/[\u0080-\u009f]/g, '\uFFFD');
      assert.equal(await page.getByRole('heading', { level: 1 }).textContent(), expected);
      await page.locator('#note').fill(text);
      await page.getByRole('button', { name: 'Add the note' }).click();
      await isHarmless(page, `note ${text}`);
      for (const view of ['properties', 'print']) {
        await page.goto(`${page.url().split('#')[0]}&view=${view}`);
        await isHarmless(page, `${view} ${text}`);
      }
    }
    assert.ok(stored >= 10, `${stored} stored`);
    await page.goto('/hits?q=*&in=Mail/Inbox&size=1000');
    await isHarmless(page, 'the list');
    const shown = await page.locator('tbody a.hit').allInnerTexts();
    assert.deepEqual(TEXTS.slice(0, 5).filter((each) => !shown.includes(each)), []);
    await page.goto('/hits?q=attack&in=Mail/Inbox');
    for (let i = 0; i < await page.locator('table.hits tbody tr').count(); ++i) {
      await page.keyboard.press('j');
      if (i === 0) await page.keyboard.press('Space');
      await page.locator(`.preview[data-row=hit-${i + 1}] h2`).waitFor();
      await isHarmless(page, 'the preview');
    }
    const files = await Promise.all(['csv', 'json'].map((kind) => page.request.get(`/download?q=*&in=Mail/Inbox&as=${kind}`)));
    const [csv, json] = await Promise.all(files.map((each) => each.text()));
    assert.ok(csv.includes('"<script>attack()</script>"') && csv.includes('"\'=HYPERLINK(""http://x"")"'));
    assert.ok(JSON.parse(json).hits.some((each) => each.values[0] === TEXTS[1]));
    for (const file of files) assert.match(file.headers()['content-disposition'], /^attachment/);
  }));

  test('as names of users are shown as text, in the administration and in the logs', () => asHostile('administrator', async (page) => {
    const names = TEXTS.filter((each) => /^[\x20-\x7e]+$/.test(each) && !each.includes("'"));
    for (const name of names) {
      await page.goto('/administration/add');
      await page.locator('input[name=name]').fill(name);
      for (const input of await page.locator('main [type=password]').all()) await input.fill('hostile-pass1');
      await chief(page).click();
      await isHarmless(page, name);
    }
    await page.goto('/administration');
    const shown = await page.locator('tbody a').allInnerTexts();
    assert.ok(names.filter((each) => shown.includes(each)).length >= 8, shown.join());
    await page.goto(`/hits?q=${encodeURIComponent(TEXTS[0])}`);
    await page.goto('/administration/logs');
    await page.locator('tbody tr', { hasText: 'this session' }).locator('a').click();
    await isHarmless(page, 'a log');
    assert.match(await page.getByRole('main').innerText(), /<script>attack/);
  }));
});
