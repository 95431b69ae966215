// The pages of failures: of the archive server, the database, the disk, and forms.
import { after, before, describe, test } from 'node:test';
import { once } from 'node:events';
import { createServer } from 'node:http';
import { mkdirSync, readFileSync, readdirSync, renameSync, rmdirSync, writeFileSync } from 'node:fs';
import assert from 'node:assert/strict';
import AxeBuilder from '@axe-core/playwright';
import { ArchiveServer, limitFiles } from './archive_server.mjs';
import { fillIn, letter, logOn, siteAndBrowser } from './site.mjs';

const narrow = { viewport: { width: 320, height: 640 } };
const scriptless = { ...narrow, javaScriptEnabled: false };
const list = '/hits?q=copper&in=Mail/Inbox&format=&sort=Title';

const [site, browser] = siteAndBrowser({
  options: ['--setting=timeout=2'],
  // No server of the list takes print requests, so that all of those for them are busy.
  prepare: () => changeSettings((text) => text.replace(/^(hosts = "[^"]*)"/m, '$1,0"')),
});
const archive = new ArchiveServer(site);
after(() => archive.close());

function changeSettings(change) {
  const file = `${site.directory}/portal.ini`;
  const old = readFileSync(file, 'utf8');
  writeFileSync(file, change(old));
  return () => writeFileSync(file, old);
}

/** Expects the page of a failure, without any secret in it. */
async function expectFailure(page, answer, status, heading, { axe = true } = {}) {
  assert.equal(answer.status(), status, heading);
  assert.match(await page.getByRole('heading', { level: 1 }).innerText(), new RegExp(heading));
  const headers = answer.headers();
  assert.match(headers['content-security-policy'], /^default-src 'none'.*frame-ancestors 'none'/);
  assert.equal(headers['x-content-type-options'], 'nosniff');
  assert.equal(headers['referrer-policy'], 'same-origin');
  const html = await page.content();
  for (const secret of [site.directory, '/tmp/', '.php', 'Stack trace', 'secret', ...Object.values(site.users)]) {
    assert.ok(!html.includes(secret), `${heading}: the page has "${secret}"`);
  }
  assert.equal(await page.locator('main script:not([src]), main img').count(), 0);
  if (axe) {
    const { violations } = await new AxeBuilder({ page }).analyze();
    assert.deepEqual(violations.map((each) => `${heading}: ${each.id} ${each.nodes[0].html}`), []);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 320, heading);
  }
}

/** The answer to a form that the page sends. */
async function submit(page, button) {
  const [answer] = await Promise.all([page.waitForResponse((each) => each.request().isNavigationRequest()), button.click()]);
  await page.waitForLoadState();
  return answer;
}

/** Logs on with the form that is shown in place of another page. */
async function logOnHere(page, name, password) {
  await page.getByLabel('User name').fill(name);
  await page.getByLabel('Password').fill(password);
  await submit(page, page.getByRole('main').getByRole('button', { name: 'Log on' }));
}

describe('the archive', () => {
  test('finds nothing: the query can be changed', () => browser.asUser(site, 'clerk', async (page) => {
    const answer = await page.goto('/hits?q=nothingatall&in=Mail/Inbox');
    await expectFailure(page, answer, 200, 'No hits for nothingatall');
    assert.equal(await page.getByLabel('Query').inputValue(), 'nothingatall');
  }, narrow));

  test('refuses a query: its own text is shown, and the query is kept', () => browser.asUser(site, 'clerk', async (page) => {
    const answer = await page.goto('/hits?q=%3Cb%3Ex%3C/b%3E:y&in=Mail/Inbox');
    await expectFailure(page, answer, 422, 'The archive refuses the request');
    assert.match(await page.locator('.problem').innerText(), /there is no field '<b>x<\/b>'/);
    assert.equal(await page.getByText('Servers tried').count(), 0);
    await page.getByRole('link', { name: 'Back to the search' }).click();
    assert.equal(await page.getByLabel('Query').inputValue(), '<b>x</b>:y');
    assert.equal(await page.getByLabel('Search in', { exact: true }).inputValue(), 'Mail/Inbox');
  }, narrow));

  test('has no server left for a request', () => browser.asUser(site, 'clerk', async (page) => {
    const answer = await page.goto(`/file?${letter}&print=all&back=${encodeURIComponent(list)}&q=copper`);
    await expectFailure(page, answer, 503, 'All archive servers are busy');
    assert.match(answer.headers()['retry-after'], /^\d+$/);
    await page.getByRole('link', { name: 'Back to the hit list' }).click();
    assert.match(page.url(), /\/hits\?q=copper&in=Mail/);
  }, narrow));

  const table = [
    [null, 502, 'No archive server can be reached', /127\.0\.0\.1:\d+: error 10061/],
    ['refuse', 502, 'No archive server can be reached|is incomplete', /127\.0\.0\.1:\d+: error \d+/],
    ['silent', 504, 'did not answer in time', /Servers tried, [2-9],?\d{3} ms in all\s+127\.0\.0\.1:\d+: no answer after [2-9]\d{3} ms/],
    ['cut:40', 502, 'is incomplete', /error 10054/],
    ['reset:40', 502, 'is incomplete', /error 10054/],
    ['count:x', 504, 'did not answer in time', /no answer/],
  ];
  test('misbehaves: the page names the servers tried, and keeps the query', () => browser.asUser(site, 'clerk', async (page) => {
    for (const [mode, status, heading, tried] of table) {
      await (mode === null ? archive.stop() : archive.replace('--misbehave', mode));
      await expectFailure(page, await page.goto(list), status, heading);
      assert.match(await page.getByRole('main').innerText(), tried, String(mode));
      assert.equal(await page.getByRole('link', { name: 'Try again' }).getAttribute('href'), list);
      const back = await page.getByRole('link', { name: 'Back to the search' }).getAttribute('href');
      assert.equal(new URL(back, site.address).searchParams.get('q'), 'copper');
    }
    await archive.replace();
    await page.getByRole('link', { name: 'Try again' }).click();
    assert.equal(await page.getByLabel('Query').inputValue(), 'copper');
  }, narrow));

  test('fails when a note is sent: its text can be sent again', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto(`/document?${letter}`);
    await page.getByLabel('New note').fill('A "note" with <b> and\nlines');
    for (const [mode, status, text] of [['silent', 504, /It is not known whether this was carried out/], [null, 502, /^No archive server/]]) {
      await (mode === null ? archive.stop() : archive.replace('--misbehave', mode));
      const answer = await submit(page, page.getByRole('button', { name: 'Add the note' }));
      await expectFailure(page, answer, status, 'did not answer in time|No archive server can be reached');
      assert.match(await page.getByRole('main').innerText(), text);
      await archive.replace();
      await page.getByRole('button', { name: 'Back to the form' }).click();
      assert.equal(await page.getByLabel('New note').inputValue(), 'A "note" with <b> and\nlines');
    }
    await page.getByRole('button', { name: 'Add the note' }).click();
    assert.equal(await page.locator('.note', { hasText: 'A "note" with <b> and' }).count(), 1);
  }, narrow));
});

describe('rights and documents that are gone', () => {
  /** A new document, as the query of a URL names it. */
  async function make(page) {
    await page.goto('/create?in=Finance/Orders');
    await fillIn(page, 'Short-lived');
    await submit(page, page.getByRole('button', { name: 'Create document' }));
    await page.waitForURL(/\/document\?/);
    return new URL(page.url()).search.slice(1);
  }

  before(() => {
    site.addUser('leaver', '--channel', 'Finance', '--edit', 'Finance/Orders=NED');
    site.users.leaver = 'leaver-pass1';
  });

  test('a right is withdrawn while its pages are open', async () => {
    let made;
    await browser.asUser(site, 'leaver', async (page, context) => {
      made = await make(page);
      const form = await context.newPage();
      await form.goto('/create?in=Finance/Orders');
      await fillIn(form, 'Too late');
      const question = await context.newPage();
      await question.goto(`/document/delete?${made}`);
      await question.getByLabel('The document with all its versions').check();
      await page.goto(`/document?${made}&q=copper&back=${encodeURIComponent(list)}`);
      await page.getByLabel('New note').fill('Too late');
      site.userCommand('revoke', 'leaver', '--channel', 'Finance');
      const noDocument = [404, 'There is no such document'];
      await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Add the note' })), ...noDocument);
      await expectFailure(form, await submit(form, form.getByRole('button', { name: 'Create document' })), ...noDocument);
      await expectFailure(question, await submit(question, question.getByRole('button', { name: 'Delete the document' })), ...noDocument);
      for (const target of [`/document?${made}`, `/file?${made}&segment=1`, `/preview?${made}`, `/edit?${made}`, '/hits?q=short&in=Finance/Orders']) {
        await expectFailure(page, await page.goto(target), ...noDocument, { axe: false });
      }
      assert.equal((await page.goto('/hits?q=copper')).status(), 200);
      assert.match(await page.getByRole('heading', { level: 1 }).innerText(), /^No hits/);
    }, narrow);
    await browser.asUser(site, 'clerk', async (page) => {
      assert.equal((await page.goto(`/document?${made}`)).status(), 200);
      assert.equal(await page.locator('.note', { hasText: 'Too late' }).count(), 0);
    });
  });

  test('a document is deleted in another window', () => browser.asUser(site, 'leaver', async (page, context) => {
    site.userCommand('grant', 'leaver', '--channel', 'Finance');
    const gone = await make(page);
    await page.goto(`/document?${gone}&q=copper&back=${encodeURIComponent('/hits?q=copper&in=Finance/Orders')}`);
    await page.getByLabel('New note').fill('Nobody reads it');
    const other = await context.newPage();
    await other.goto(`/document/delete?${gone}`);
    await other.getByLabel('The document with all its versions').check();
    await submit(other, other.getByRole('button', { name: 'Delete the document' }));
    await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Add the note' })), 404, 'There is no such document|The archive refuses', { axe: false });
    await expectFailure(page, await page.goto(`/document?${gone}&q=copper&back=${encodeURIComponent('/hits?q=copper&in=Finance/Orders')}`), 404, 'There is no such document');
    await page.getByRole('link', { name: 'Back to the hit list' }).click();
    assert.equal(await page.getByLabel('Query').inputValue(), 'copper');
  }, narrow));
});

describe('disks that are full', () => {
  const full = [507, 'The portal cannot store anything'];

  test('the state directory: what needs no file works, and what was typed is kept', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto(`/document?${letter}`);
    await page.getByLabel('New note').fill('On a full disk');
    limitFiles(site, 0);
    try {
      await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Add the note' })), ...full);
      const other = await context.newPage();
      assert.equal((await other.goto(list)).status(), 200);
      assert.match(await other.getByRole('status').first().innerText(), /^\d+ hits/);
    } finally {
      limitFiles(site, 'unlimited');
    }
    await page.getByRole('button', { name: 'Back to the form' }).click();
    assert.equal(await page.getByLabel('New note').inputValue(), 'On a full disk');
    assert.equal(await page.locator('.note', { hasText: 'On a full disk' }).count(), 0);
  }, narrow));

  test('the session directory', () => browser.visit(site, async (page) => {
    await page.goto('/log-on');
    limitFiles(site, 0);
    try {
      await page.getByLabel('User name').fill('clerk');
      await page.getByLabel('Password').fill(site.users.clerk);
      await expectFailure(page, await submit(page, page.getByRole('main').getByRole('button', { name: 'Log on' })), ...full);
      await page.context().clearCookies();
      await expectFailure(page, await page.goto('/log-on'), ...full, { axe: false });
    } finally {
      limitFiles(site, 'unlimited');
    }
  }, narrow));

  const create = async (page, change) => {
    await page.goto('/create?in=Mail/Inbox');
    await fillIn(page, 'On a full disk');
    await change();
    limitFiles(site, 20000);
    try {
      await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Create document' })), 507, '.', { axe: false });
    } finally {
      limitFiles(site, 'unlimited');
    }
    assert.match(await page.getByRole('main').innerText(), /The portal cannot store anything/);
    const back = page.getByRole('button', { name: 'Back to the form' });
    if (await back.count() > 0) await back.click();
    assert.equal(await page.locator('#title').inputValue(), 'On a full disk');
    await page.goto('/hits?q=title:%22On a full disk%22');
    assert.match(await page.getByRole('heading', { level: 1 }).innerText(), /^No hits/);
    for (const name of ['blobs', 'uploads']) assert.deepEqual(readdirSync(`${site.directory}/${name}`), []);
  };
  test('the blob directory', () => browser.asUser(site, 'clerk', (page) =>
    create(page, () => page.getByLabel('text', { exact: true }).fill('words '.repeat(10000))), scriptless));
  test('the directory of uploads', () => browser.asUser(site, 'clerk', (page) =>
    create(page, () => page.locator('#files').setInputFiles({ name: 'a.bin', mimeType: 'a/b', buffer: Buffer.alloc(100000) })), scriptless));
});

describe('files that are too large or too many', () => {
  const file = (name, byteCount) => ({ name, mimeType: 'application/octet-stream', buffer: Buffer.alloc(byteCount) });
  test('the form says beforehand what fits, and keeps what was typed', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/create?in=Mail/Inbox');
    assert.match(await page.locator('#files-help').innerText(), /At most 20 files, each of at most 2.MB\. Together at most 8.MB\./);
    for (const [files, status, text] of [
      [[file('large.bin', 3 << 20)], 413, /This file is too large: large\.bin/],
      [Array.from({ length: 21 }, (_, i) => file(`${i}.txt`, 10)), 413, /These are too many files/],
    ]) {
      await fillIn(page, 'Large');
      await page.locator('#files').setInputFiles(files);
      await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Create document' })), status, 'Create document', { axe: false });
      assert.match(await page.getByRole('main').innerText(), text);
      assert.equal(await page.locator('#title').inputValue(), 'Large');
    }
  }, scriptless));

  for (const [where, megabytes] of [['PHP', 9], ['the web server', 65]]) {
    test(`beyond the limit of ${where}`, () => browser.asUser(site, 'clerk', async (page) => {
      await page.goto('/create?in=Mail/Inbox');
      await page.evaluate(() => document.querySelectorAll('[required]').forEach((each) => each.removeAttribute('required')));
      const path = `${site.directory}/large.bin`;
      writeFileSync(path, Buffer.alloc(megabytes << 20));
      await page.locator('#files').setInputFiles(path);
      // Without the script, which would refuse the file itself.
      const answer = page.waitForResponse((each) => each.request().method() === 'POST');
      await page.evaluate(() => HTMLFormElement.prototype.submit.call(document.getElementById('document-form')));
      await (await answer).finished();
      await page.waitForLoadState();
      await expectFailure(page, await answer, 413, 'The files are too large');
      assert.match(await page.getByRole('link', { name: 'Try again' }).getAttribute('href'), /^\/create\?in=Mail/);
    }, narrow));
  }
});

describe('sessions and forms', () => {
  test('an ended session returns to the note that was typed', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto(`/document?${letter}&q=copper#notes`);
    await page.getByLabel('New note').fill('Typed\n"before" <i>');
    await context.clearCookies();
    await submit(page, page.getByRole('button', { name: 'Add the note' }));
    assert.match(await page.getByRole('alert').innerText(), /what you typed is kept/);
    await logOnHere(page, 'clerk', 'wrong');
    await logOnHere(page, 'clerk', site.users.clerk);
    assert.match(page.url(), /\/document\?.*q=copper.*#notes$/);
    assert.equal(await page.getByLabel('New note').inputValue(), 'Typed\n"before" <i>');
    await page.reload();
    assert.equal(await page.getByLabel('New note').inputValue(), '');
  }));

  test('a search mask is filled in again', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto('/?in=Finance/Invoices&mask=Standard');
    const field = page.locator('form[aria-label] input:not([type=hidden])').first();
    await field.fill('A & "B"');
    await context.clearCookies();
    await page.getByRole('button', { name: 'Search with the mask' }).click();
    await logOnHere(page, 'clerk', site.users.clerk);
    assert.match(new URL(page.url()).searchParams.get('q') ?? '', /A & B/);
  }));

  for (const [name, leave] of [
    ['after the session was over', async (page, context) => { await context.clearCookies(); }],
    ['after the session was idle', async () => {
      for (const each of readdirSync(`${site.directory}/state/sessions`)) {
        const path = `${site.directory}/state/sessions/${each}`;
        writeFileSync(path, readFileSync(path, 'utf8').replace(/(last\|i:)\d+/, '$11'));
      }
    }],
  ]) {
    test(`another user does not get what was typed, ${name}`, () => browser.asUser(site, 'clerk', async (page, context) => {
      await page.goto(`/document?${letter}`);
      await page.getByLabel('New note').fill('For my eyes alone');
      await leave(page, context);
      await submit(page, page.getByRole('button', { name: 'Add the note' }));
      await logOnHere(page, 'administrator', site.users.administrator);
      assert.equal(new URL(page.url()).pathname, '/');
      for (const target of [page.url(), `/document?${letter}`]) {
        await page.goto(target);
        assert.ok(!(await page.content()).includes('For my eyes alone'));
      }
    }));
  }

  test('a double click logs on', () => browser.visit(site, async (page, context) => {
    await page.goto('/log-on?to=/keys');
    await page.getByLabel('User name').fill('clerk');
    await page.getByLabel('Password').fill(site.users.clerk);
    await page.getByRole('main').getByRole('button', { name: 'Log on' }).dblclick();
    await page.waitForURL((url) => url.pathname === '/keys');
    await page.waitForLoadState('networkidle');
    assert.equal((await context.request.get('/keys', { maxRedirects: 0 })).status(), 200);
  }));

  test('a form that another user was shown is refused, without what is in it', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto('/create?in=Mail/Inbox');
    await fillIn(page, 'For my eyes alone');
    await context.clearCookies();
    const other = await context.newPage();
    await other.goto('/log-on');
    await logOn(other, 'administrator', site.users.administrator);
    await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Create document' })), 403, 'The form is no longer valid');
    assert.ok(!(await page.content()).includes('For my eyes alone'));
  }, narrow));

  test('a form without its token, or from another site, changes nothing', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/keys');
    await page.evaluate(() => document.querySelectorAll('[name=token]').forEach((each) => each.remove()));
    await expectFailure(page, await submit(page, page.getByRole('button', { name: 'Log off', exact: true })), 403, 'The form is no longer valid');
    const elsewhere = createServer((request, response) => response.setHeader('Content-Type', 'text/html')
      .end(`<form method="post" action="${site.address}/log-off"><button>Win</button></form>`)).listen(0, '127.0.0.1');
    await once(elsewhere, 'listening');
    try {
      await page.goto(`http://127.0.0.1:${elsewhere.address().port}/`);
      await expectFailure(page, await submit(page, page.getByRole('button')), 403, 'The form is no longer valid', { axe: false });
    } finally {
      elsewhere.closeAllConnections();
      elsewhere.close();
    }
    await page.goto('/');
    assert.equal(await page.getByRole('button', { name: 'Log off', exact: true }).count(), 1);
  }, narrow));

  test('unknown addresses and methods have pages of their own', () => browser.asUser(site, 'clerk', async (page) => {
    await expectFailure(page, await page.goto('/nothing?q=copper'), 404, 'There is no such page');
    assert.equal(new URL(await page.getByRole('link', { name: 'Back to the search' }).getAttribute('href'), site.address).search, '?q=copper');
    await page.evaluate(() => document.body.insertAdjacentHTML('beforeend', '<form method="post" action="/hits"><button>Wrong</button></form>'));
    const answer = await submit(page, page.getByRole('button', { name: 'Wrong' }));
    await expectFailure(page, answer, 405, 'The page does not accept this kind of request');
    assert.equal(answer.headers().allow, 'GET');
  }, narrow));
});

describe('the portal itself', () => {
  for (const [name, breakIt, mend] of [
    ['the user database is another file', () => { renameSync(users(), `${users()}.old`); mkdirSync(users()); }, () => rmdirSync(users())],
    ['the user database is empty', () => { renameSync(users(), `${users()}.old`); writeFileSync(users(), ''); }, () => {}],
  ]) {
    test(name, () => browser.asUser(site, 'clerk', async (page, context) => {
      breakIt();
      try {
        await expectFailure(page, await page.goto(list), 503, 'The user database is not available');
        await context.clearCookies();
        await page.goto('/log-on');
        if (await page.getByLabel('Password').count() > 0) {
          await page.getByLabel('User name').fill('clerk');
          await page.getByLabel('Password').fill(site.users.clerk);
          await expectFailure(page, await submit(page, page.getByRole('main').getByRole('button', { name: 'Log on' })), 503, 'The user database is not available');
        }
      } finally {
        mend();
        renameSync(`${users()}.old`, users());
      }
      await page.goto('/log-on');
      await logOn(page, 'clerk', site.users.clerk);
      assert.equal((await page.goto(list)).status(), 200);
    }, narrow));
  }
  const users = () => `${site.directory}/users.sqlite`;

  test('settings that cannot be read', () => browser.visit(site, async (page) => {
    for (const text of ['nonsense', 'unknown = "1"', '']) {
      const restore = changeSettings(() => text);
      try {
        const answer = await page.goto('/');
        assert.equal(answer.status(), 500);
        assert.match(answer.headers()['content-security-policy'], /^default-src 'none'/);
        assert.equal(await answer.text(), 'The portal is not available at present.\n');
      } finally {
        restore();
      }
    }
  }));

  test('none of these failures is a PHP warning', () => {
    const warnings = readFileSync(`${site.directory}/fpm-errors.log`, 'utf8').split('\n')
      .filter((line) => /PHP (Warning|Notice|Deprecated|Fatal|Parse)/.test(line))
      // PHP's own words about a form that is too large.
      .filter((line) => !/POST Content-Length of \d+ bytes exceeds|Maximum number of allowable file uploads/.test(line));
    assert.deepEqual(warnings, []);
  });
});
