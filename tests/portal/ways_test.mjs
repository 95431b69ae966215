// What users do, from log-on to log-off, and what they are refused.
import { describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { logOn, siteAndBrowser } from './site.mjs';

const [site, browser] = siteAndBrowser();

const search = async (page, query) => {
  await page.goto('/');
  await page.getByLabel('Query').fill(query);
  await page.getByRole('main').getByRole('button', { name: 'Search' }).click();
};

describe('tasks of the users', () => {
  for (const [name, hitCount] of [['administrator', 21], ['clerk', 21], ['reader', 8]]) {
    test(`${name} logs on, searches, reads a document, comes back and logs off`, () => browser.asUser(site, name, async (page) => {
      await search(page, 'copper');
      assert.match(await page.getByRole('status').innerText(), new RegExp(`^${hitCount} hits`));
      const rows = page.locator('table.hits tbody tr');
      assert.equal(await rows.count(), Math.min(20, hitCount));
      const title = await rows.first().locator('a.hit').innerText();
      await rows.first().locator('a.hit').click();
      assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), title);
      await page.goBack();
      assert.equal(await rows.count(), Math.min(20, hitCount));
      await page.getByRole('button', { name: 'Log off', exact: true }).click();
      await page.goto('/hits?q=copper');
      assert.match(page.url(), /\/log-on\?to=/);
      await logOn(page, name, site.users[name]);
      assert.match(page.url(), /\/hits\?q=copper$/);
    }));
  }

  test('the hits in a text are marked, and links lead to them', () => browser.asUser(site, 'clerk', async (page) => {
    await search(page, 'Zahlung');
    await page.locator('table.hits tbody a.hit').first().click();
    assert.deepEqual(new Set(await page.locator('mark').allInnerTexts()), new Set(['Zahlung']));
    await page.getByRole('link', { name: 'Go to the first hit in the text' }).click();
    assert.equal(await page.locator('mark:target').count(), 1);
  }));

  test('a list is sorted by the component, in both directions, and paged', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/hits?q=*&size=50');
    const titles = () => page.locator('tbody a.hit').allInnerTexts();
    await page.getByRole('link', { name: 'Title', exact: true }).click();
    const ascending = await titles();
    assert.equal(await page.getByRole('columnheader', { name: 'Title' }).getAttribute('aria-sort'), 'ascending');
    await page.getByRole('link', { name: 'Title', exact: true }).click();
    assert.notDeepEqual(await titles(), ascending);
    await page.goto('/hits?q=*&size=50&page=999');
    assert.match(await page.getByRole('status').innerText(), /There is no such page; this is the last one, 6\./);
  }));
});

describe('refusals', () => {
  test('a user reaches nothing beyond his rights', () => browser.asUser(site, 'reader', async (page) => {
    for (const target of ['/document?channel=Finance&archive=Invoices&id=1085&version=1', '/hits?q=copper&in=Finance/Invoices',
      '/document?channel=Mail\\..&archive=x&id=1', '/nothing']) {
      const answer = await page.goto(target);
      assert.equal(answer.status(), 404, target);
    }
  }));

  test('wrong passwords make an account wait, and tell nothing about users', () => browser.visit(site, async (page) => {
    const texts = new Set();
    for (const name of ['clerk', 'nobody', "o'clerk"]) {
      await page.goto('/log-on');
      await logOn(page, name, 'wrong');
      texts.add(await page.getByRole('alert').innerText());
    }
    assert.deepEqual([...texts], ['The user name or the password is wrong.']);
    // Twelve at once: no more than four of them are looked at.
    const token = await page.locator('main input[name=token]').inputValue();
    const form = { name: 'guessed', password: 'wrong', token };
    const answers = await Promise.all(Array.from({ length: 12 }, () => page.context().request.post('/log-on', { form })));
    assert.deepEqual(answers.map((answer) => answer.status()).sort(), [...Array(4).fill(403), ...Array(8).fill(429)]);
    await logOn(page, 'guessed', 'wrong');
    assert.match(await page.getByRole('alert').innerText(), /Too many attempts/);
  }));

  test('a form without its token, or from another site, changes nothing', () => browser.asUser(site, 'clerk', async (page, context) => {
    for (const [form, headers] of [[{}, {}], [{ token: 'x' }, {}]]) {
      const answer = await context.request.post('/log-off', { form, headers, maxRedirects: 0 });
      assert.equal(answer.status(), 403);
    }
    const token = await page.locator('input[name=token]').first().inputValue();
    const answer = await context.request.post('/log-off', { form: { token }, headers: { Origin: 'http://elsewhere.example' }, maxRedirects: 0 });
    assert.equal(answer.status(), 403);
    await page.reload();
    assert.equal(await page.getByRole('button', { name: 'Log off', exact: true }).count(), 1);
  }));

  test('every answer has the security headers', () => browser.asUser(site, 'clerk', async (page, context) => {
    for (const target of ['/', '/nothing', '/hits?q=copper', '/hits?q=((', '/portal.css']) {
      const headers = (await context.request.get(target)).headers();
      assert.match(headers['content-security-policy'], /^default-src 'none'/, target);
      assert.equal(headers['x-content-type-options'], 'nosniff', target);
    }
  }));
});
