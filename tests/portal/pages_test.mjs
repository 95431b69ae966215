// What each page does, and who may use it.
import { describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { chief, fillIn, invoice, letter, siteAndBrowser } from './site.mjs';

const [site, browser] = siteAndBrowser();

describe('rights', () => {
  // The status of each page for the administrator, the clerk and the reader.
  const table = [
    ['/', 200, 200, 200],
    ['/?in=Finance/Invoices', 200, 200, 404],
    ['/?in=Finance/INVOICES', 404, 404, 404],
    ['/hits?q=copper', 200, 200, 200],
    ['/hits?q=copper&in=Finance/invoices', 404, 404, 404],
    [`/document?${letter}`, 200, 200, 200],
    [`/document?${invoice}`, 200, 200, 404],
    ['/document?channel=Finance&archive=INVOICES&id=1085', 404, 404, 404],
    [`/preview?${invoice}`, 200, 200, 404],
    [`/file?${invoice}&first=`, 404, 404, 404],
    [`/edit?${letter}`, 403, 200, 403],
    ['/create?in=Mail/Inbox', 403, 200, 403],
    ['/create?in=Finance/Orders', 403, 403, 404],
    [`/document/delete?${letter}`, 403, 403, 403],
    ['/outline?in=Finance/Invoices&tree=1', 200, 200, 404],
    ['/download?q=copper&as=csv', 200, 200, 200],
    ['/keys', 200, 200, 200],
    ['/administration', 200, 403, 403],
    ['/administration/add', 200, 403, 403],
    ['/administration/account?id=2', 200, 403, 403],
    ['/administration/why?id=2', 200, 403, 403],
    ['/administration/servers', 200, 403, 403],
    ['/administration/logs', 200, 403, 403],
  ];
  ['administrator', 'clerk', 'reader'].forEach((name, column) => {
    test(`of the ${name}`, () => browser.asUser(site, name, async (page, context) => {
      const found = [];
      for (const [target] of table) found.push([target, (await context.request.get(target, { maxRedirects: 0 })).status()]);
      assert.deepEqual(found, table.map((row) => [row[0], row[column + 1]]));
    }));
  });

  test('of a visitor: every page but the log-on asks him to log on', () => browser.visit(site, async (page, context) => {
    for (const [target] of table) {
      const answer = await context.request.get(target, { maxRedirects: 0 });
      assert.equal(answer.status(), 303, target);
      assert.match(answer.headers().location, /^\/log-on/, target);
    }
  }));
});

describe('hit list', () => {
  test('a selection is kept over the pages of a list and downloaded', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto('/hits?q=*&size=20');
    await page.locator('tbody [name=hit]').nth(0).check();
    await page.locator('tbody [name=hit]').nth(3).check();
    await page.getByRole('link', { name: 'Next', exact: true }).click();
    await page.locator('tbody [name=hit]').nth(1).check();
    await assert.doesNotReject(page.locator('.selected', { hasText: '3' }).waitFor());
    const csv = await page.locator('.downloads a[href*=csv]').first().getAttribute('href');
    const lines = (await (await context.request.get(`${csv}&what=selection`)).text()).trim().split('\r\n');
    assert.equal(lines.length, 4);
  }));

  test('the preview beside the list shows the first page image', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/hits?q=*&in=Mail/Fax');
    await page.locator('a.look').first().click();
    await page.locator('.preview .image img').scrollIntoViewIfNeeded();
    await page.waitForFunction(() => document.querySelector('.preview .image img').naturalWidth > 100);
    assert.match(await page.locator('.preview h3').last().innerText(), /^Page 1 of \d+$/);
  }));
});

describe('documents', () => {
  test('a note is added, and deleted after a confirmation', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto(`/document?${letter}`);
    await page.locator('textarea').fill('<b>Call back</b> "tomorrow"');
    await page.locator('form[action*="/document/notes"] button').first().click();
    assert.match(await page.locator('.note').last().innerText(), /<b>Call back<\/b> "tomorrow"/);
    await page.goto(`/document/notes/delete?${letter}`);
    await page.locator('main form[method=post] button').first().click();
    assert.equal(await page.locator('.note').count(), 0);
  }));

  test('a document is made with a mask and a file, found, and its file comes back byte for byte', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto('/create?in=Mail/Inbox');
    await fillIn(page, 'Letter of the "browser" test <i>');
    const bytes = Buffer.from(Array.from({ length: 70000 }, (_, i) => (i * 7919) & 255));
    await page.locator('input[type=file]').setInputFiles({ name: 'täst file.bin', mimeType: 'application/octet-stream', buffer: bytes });
    await chief(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), 'Letter of the "browser" test <i>');
    const file = await page.locator('a[href*="/file?"][href*=segment]').first().getAttribute('href');
    const answer = await context.request.get(file);
    assert.ok(bytes.equals(await answer.body()));
    assert.match(answer.headers()['content-disposition'], /^attachment; filename="[ -~]*"; filename\*=UTF-8''t%C3%A4st%20file\.bin$/);
    assert.match(answer.headers()['content-security-policy'], /sandbox/);
    const part = await context.request.get(file, { headers: { Range: 'bytes=100-199' } });
    assert.equal(part.status(), 206);
    assert.ok(bytes.subarray(100, 200).equals(await part.body()));
  }));

  test('what was typed is kept when the session has ended', () => browser.asUser(site, 'clerk', async (page, context) => {
    await page.goto('/create?in=Mail/Inbox');
    await fillIn(page, 'Typed before');
    await context.clearCookies();
    await chief(page).click();
    await page.getByLabel('User name').fill('clerk');
    await page.getByLabel('Password').fill(site.users.clerk);
    await page.getByRole('main').getByRole('button', { name: 'Log on' }).click();
    assert.equal(await page.locator('input[name=title]').inputValue(), 'Typed before');
  }));
});

describe('administration', () => {
  test('a user is added, may search when he gets a channel, and may not when it is withdrawn', () => browser.asUser(site, 'administrator', async (page) => {
    await page.goto('/administration/add');
    await page.locator('input[name=name]').fill('temporary');
    for (const input of await page.locator('main form input[type=password]').all()) await input.fill('temporary-pass1');
    await page.locator('main form input[name=must-change]').uncheck();
    await chief(page).click();
    await page.waitForURL(/\/administration\/account\?id=/);
    const account = page.url();
    const id = new URL(account).searchParams.get('id');
    await page.locator('[name=value-channel]').fill('Mail');
    await page.locator('form:has([name=value-channel]) button').first().click();
    await page.goto(`/administration/account?id=${id}`);
    assert.match(await page.getByRole('main').innerText(), /Mail/);
    await browser.visit(site, async (other) => {
      await other.goto('/log-on');
      await other.getByLabel('User name').fill('temporary');
      await other.getByLabel('Password').fill('temporary-pass1');
      await other.getByRole('main').getByRole('button', { name: 'Log on' }).click();
      await other.goto('/hits?q=copper');
      assert.match(await other.getByRole('status').first().innerText(), /^8 hits/);
      await page.goto(`/administration/account?id=${id}`);
      await page.locator('form:has([value=take]):has([value=channel]) button').first().click();
      const answer = await other.reload();
      assert.equal(answer.status(), 200);
      assert.match(await other.getByRole('heading', { level: 1 }).innerText(), /No hits/);
    });
  }));
});
