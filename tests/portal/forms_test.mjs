// Forms and uploads: sent twice, broken off, with names and files that the archive cannot take.
import { after, describe, test } from 'node:test';
import { connect } from 'node:net';
import { once } from 'node:events';
import { readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { createHash } from 'node:crypto';
import assert from 'node:assert/strict';
import AxeBuilder from '@axe-core/playwright';
import { ArchiveServer, until } from './archive_server.mjs';
import { fillIn, siteAndBrowser } from './site.mjs';

const [site, browser] = siteAndBrowser({ prepare: () => site.grantOrders() });
const archive = new ArchiveServer(site);
after(() => archive.close());

const file = (name, content = 'content of the file') => ({ name, mimeType: 'application/octet-stream', buffer: Buffer.from(content) });

/** The form of a new document, filled in. */
async function open(page, title) {
  await page.goto('/create?in=Finance/Orders');
  await fillIn(page, title);
}

const create = (page) => page.getByRole('button', { name: 'Create document' });

/** How many documents have the title, whatever follows it. */
async function count(page, title) {
  const answer = await page.context().request.get(`/hits?q=${encodeURIComponent(`title:"${title}"`)}&in=Finance/Orders`);
  assert.equal(answer.status(), 200);
  return Number(/role="status"[^>]*>\s*(\d+) hits?\b/.exec(await answer.text())?.[1] ?? 0);
}

/** The names of the directories that files pass through. */
const passing = () => ['blobs', 'uploads'].flatMap((name) => readdirSync(`${site.directory}/${name}`));

/** Waits until they are empty; PHP removes its own files after the answer. */
const nothingIsLeft = () => until(() => passing().length === 0);

describe('a form that is sent twice', () => {
  test('makes one document, by a double click, a reload or both at once', () => browser.asUser(site, 'clerk', async (page, context) => {
    await open(page, 'Twice by mouse');
    await create(page).dblclick();
    await page.waitForURL(/\/document\?/);
    assert.equal(await count(page, 'Twice by mouse'), 1);
    await open(page, 'Twice at once');
    const multipart = Object.fromEntries(await page.evaluate(() => [...new FormData(document.getElementById('document-form'))].filter(([, value]) => typeof value === 'string')));
    const target = await page.locator('#document-form').getAttribute('action');
    const answers = await Promise.all([1, 2, 3].map(() => context.request.post(target, { multipart, maxRedirects: 0 })));
    assert.deepEqual(answers.map((answer) => answer.status()), [303, 303, 303]);
    assert.equal(new Set(answers.map((answer) => answer.headers().location)).size, 1);
    assert.equal(await count(page, 'Twice at once'), 1);
    const changed = await context.request.post(target, { multipart: { ...multipart, title: 'Twice, and changed' }, maxRedirects: 0 });
    assert.notEqual(changed.headers().location, answers[0].headers().location);
    assert.equal(await count(page, 'Twice, and changed'), 1);
  }, { javaScriptEnabled: true }));

  test('adds one note, makes one version, and deletes once', () => browser.asUser(site, 'clerk', async (page, context) => {
    await open(page, 'Sent twice');
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    const name = new URL(page.url()).search;
    const twice = async (selector, button) => {
      const form = Object.fromEntries(await page.evaluate((each) => [...new FormData(document.querySelector(each))].filter(([, value]) => typeof value === 'string'), selector));
      const target = await page.locator(selector).getAttribute('action');
      const answers = [];
      for (let i = 0; i < 2; ++i) answers.push(await context.request.post(target, { form, maxRedirects: 0 }));
      assert.deepEqual(answers.map((answer) => answer.status()), [303, 303], selector);
      assert.equal(answers[0].headers().location, answers[1].headers().location);
      return answers[0].headers().location;
    };
    await page.getByLabel('New note').fill('Said once');
    await twice('form[action*="/document/notes"]');
    await page.goto(`/document${name}`);
    assert.equal(await page.locator('.note').count(), 1);
    await page.goto(`/edit${name}`);
    await page.locator('#title').fill('Sent twice, changed');
    assert.match(await twice('#document-form'), /version=2/);
    await page.goto(`/document/notes/delete${name}`);
    await twice('main form');
    await page.goto(`/document/delete${name.replace('version=1', 'version=2')}`);
    await page.getByLabel('The document with all its versions').check();
    assert.match(await twice('main form'), /done=1/);
    assert.equal(await count(page, 'Sent twice'), 0);
  }));

  test('is carried out again when the archive had refused it', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Refused, 1:11');
    await create(page).click();
    assert.match(await page.getByRole('alert').first().innerText(), /cannot store or search this text[^]*Nothing was stored/);
    await page.locator('#title').fill('Not refused');
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await count(page, 'Not refused'), 1);
  }));
});

describe('names of files', () => {
  // The file's name as the browser sends it, and the one that the document has; null for a refusal.
  const table = [
    ['täst €uro.bin', 'täst €uro.bin'],
    ['..\\..\\windows\\evil.txt', 'evil.txt'],
    ['/etc/passwd', 'passwd'],
    ['@FIELD,11.txt', 'FIELD,11.txt'],
    ['con.txt', null],
    ['LPT1', null],
    ['..', null],
    ['a:b.txt', null],
    ['dot.', null],
    ['blank ', null],
    [`${'n'.repeat(260)}.txt`, null],
    ['control\u0001.txt', null],
    ['c1\u0081.txt', null],
    ['\u{1F600}.txt', null],
  ];
  test('follow the rules of the component', () => browser.asUser(site, 'clerk', async (page, context) => {
    await open(page, 'Named file');
    const target = await page.locator('#document-form').getAttribute('action');
    for (const [name, expected] of table) {
      await open(page, 'Named file');
      const form = await page.evaluate(() => [...new FormData(document.getElementById('document-form'))].filter(([, value]) => typeof value === 'string'));
      const answer = await sendMultipart(context, target, form, name);
      if (expected === null) {
        assert.equal(answer.status, 422, name);
        assert.match(answer.text, /id="files-problem"[^]*cannot be stored under this name/, name);
        assert.match(answer.text, /id="title" name="title" value="Named file"/, name);
      } else {
        assert.equal(answer.status, 303, name);
        const made = await (await context.request.get(answer.location)).text();
        assert.ok(made.includes(expected.replace('&', '&amp;')), `${name}: ${expected}`);
      }
      await nothingIsLeft();
    }
  }));

  async function sendMultipart(context, target, form, name) {
    const boundary = 'the-boundary';
    const parts = form.map(([key, value]) => `--${boundary}\r\nContent-Disposition: form-data; name="${key}"\r\n\r\n${value}\r\n`).join('');
    const body = `${parts}--${boundary}\r\nContent-Disposition: form-data; name="files[]"; filename="${name.replaceAll('\\', '\\\\')}"\r\n\r\nx\r\n--${boundary}--\r\n`;
    const answer = await context.request.post(target, {
      headers: { 'Content-Type': `multipart/form-data; boundary=${boundary}` }, data: Buffer.from(body), maxRedirects: 0,
    });
    return { status: answer.status(), text: await answer.text(), location: answer.headers().location };
  }

  test('texts that the archive cannot hold are named next to their fields', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Happy \u{1F600}');
    const author = page.locator('#f0');
    await author.fill('A \u{1F600} author');
    await create(page).click();
    assert.match(await page.locator('#title-problem').innerText(), /such as emoji/);
    assert.match(await page.locator('#f0-problem').innerText(), /such as emoji/);
    assert.equal(await page.locator('#title').inputValue(), 'Happy \u{1F600}');
    assert.equal(await author.inputValue(), 'A \u{1F600} author');
    const { violations } = await new AxeBuilder({ page }).analyze();
    assert.deepEqual(violations.map((each) => `${each.id} ${each.nodes[0].html}`), []);
    const answer = await page.goto(`/?in=Finance/Invoices&mask=Standard&run=1&f0=${encodeURIComponent('\u{1F600}')}`);
    assert.equal(answer.status(), 422);
    assert.match(await page.locator('#f0-problem').innerText(), /such as emoji/);
    await page.goto('/document?channel=Mail&archive=Inbox&id=1199&version=1');
    await page.getByLabel('New note').fill('Happy \u{1F600}');
    await page.getByRole('button', { name: 'Add the note' }).click();
    assert.match(await page.getByRole('alert').innerText(), /characters that the archive cannot store/);
    assert.equal(await page.getByLabel('New note').inputValue(), 'Happy \u{1F600}');
  }));
});

describe('several files', () => {
  const files = ['one.txt', 'two.txt', 'three.txt'].map((name) => file(name, `content of ${name}`));

  for (const [name, javaScriptEnabled] of [['with scripts', true], ['without scripts', false]]) {
    test(`become one document or several, ${name}`, () => browser.asUser(site, 'clerk', async (page) => {
      await open(page, `All in one ${name}`);
      await page.locator('#files').setInputFiles(files);
      await create(page).click();
      await page.waitForURL(/\/document\?/);
      for (const each of files) assert.ok((await page.getByRole('main').innerText()).includes(each.name));
      assert.equal(await count(page, `All in one ${name}`), 1);
      await open(page, `One each ${name}`);
      await page.getByLabel('a document for each file').check();
      await page.locator('#files').setInputFiles(files);
      await create(page).click();
      await page.waitForURL(/\/create\?.*made=/);
      await page.reload();
      assert.deepEqual(await page.locator('ul.files li:has(a)').allInnerTexts(), files.map((each) => `${each.name}: stored.`));
      assert.equal(await count(page, `One each ${name}`), 3);
      await page.getByRole('link', { name: 'two.txt' }).click();
      assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), `One each ${name}: two.txt`);
      await nothingIsLeft();
    }, { javaScriptEnabled }));
  }

  test('a file that the archive refuses stays in the form', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Middle, 1');
    await page.getByLabel('a document for each file').check();
    // The archive would interpret ", 1: 11" in a title.
    await page.locator('#files').setInputFiles([file('first.txt'), file('11'), file('third.txt')]);
    await create(page).click();
    await page.getByRole('alert').filter({ hasText: 'Not every file has become a document' }).waitFor();
    assert.deepEqual((await page.locator('section ul.files li').allInnerTexts()).map((text) => text.slice(0, 20)),
      ['first.txt: stored.', '11: not stored. The ', 'third.txt: stored.']);
    assert.deepEqual(await page.locator('form ul.files li').allInnerTexts(), ['11 Remove']);
    await page.locator('#title').fill('Middle');
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), 'Middle: 11');
    assert.equal(await count(page, 'Middle'), 3);
    await nothingIsLeft();
  }));

  test('an archive that fails half way loses nothing, and stores nothing twice', () => browser.asUser(site, 'clerk', async (page) => {
    const database = ['--database', `${site.directory}/archive.sqlite`];
    await archive.replace(...database);
    await open(page, 'Gone in the middle');
    await page.getByLabel('a document for each file').check();
    await page.locator('#files').setInputFiles(['a', 'b', 'c', 'd', 'e'].map((name) => file(`${name}.txt`)));
    await archive.replace(...database, '--misbehave', 'delay:200');
    const gone = until(() => passing().includes('c.txt'), 5).then(() => archive.stop());
    await create(page).click();
    await gone;
    await page.getByRole('alert').first().waitFor();
    await archive.replace(...database);
    const report = (await page.locator('section ul.files li').allInnerTexts()).map((text) => text.replace(/[.:] (Not tried|The archive|Search|No archive)[^]*$/, ''));
    assert.deepEqual([...report.slice(0, 2), ...report.slice(3)],
      ['a.txt: stored.', 'b.txt: stored.', 'd.txt: not stored', 'e.txt: not stored']);
    assert.match(report[2], /^c\.txt: (it is not known whether|not stored)/);
    const stored = await count(page, 'Gone in the middle');
    const again = await page.locator('form ul.files li').count();
    await create(page).click();
    await page.waitForURL(/\/create\?.*made=/);
    assert.equal(await count(page, 'Gone in the middle'), stored + again);
  }));
});

describe('sending files', () => {
  const drop = (page, names) => page.evaluate((all) => {
    const data = new DataTransfer();
    for (const [name, size] of all) data.items.add(new File([new Uint8Array(size)], name));
    document.getElementById('document-form').dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true }));
  }, names);

  test('files are dropped, one is taken back, and the rest is sent with progress', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Dropped files');
    await drop(page, [['a.bin', 1000], ['b.bin', 1000]]);
    await drop(page, [['c.bin', 1500000]]);
    await page.getByRole('button', { name: 'Remove: b.bin' }).click();
    assert.deepEqual(await page.locator('ul.files li').allInnerTexts(), ['a.bin Remove', 'c.bin Remove']);
    await drop(page, [['large.bin', 3 << 20]]);
    await create(page).click();
    assert.match(await page.getByRole('alert').innerText(), /too large: large\.bin/);
    await page.getByRole('button', { name: 'Remove: large.bin' }).click();
    const shown = page.locator('progress').waitFor();
    await create(page).click();
    await shown;
    await page.waitForURL(/\/document\?/);
    for (const name of ['a.bin', 'c.bin']) assert.ok((await page.getByRole('main').innerText()).includes(name));
  }));

  test('sending is cancelled, and goes on with the same form', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Cancelled once');
    await drop(page, [['a.bin', 1000]]);
    let go;
    await page.route('**/create?*', async (route) => {
      await new Promise((resolve) => { go = resolve; });
      await route.abort().catch(() => {});
    }, { times: 1 });
    await create(page).click();
    await page.getByRole('button', { name: 'Cancel' }).click();
    assert.match(await page.getByRole('alert').innerText(), /Cancelled|did not arrive/);
    assert.ok(await page.locator('progress').isHidden());
    go();
    assert.equal(await count(page, 'Cancelled once'), 0);
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await count(page, 'Cancelled once'), 1);
  }));

  test('an answer that is lost can be asked for again', () => browser.asUser(site, 'clerk', async (page) => {
    await open(page, 'Answer lost');
    await drop(page, [['a.bin', 1000]]);
    await page.route('**/create?*', async (route) => {
      await route.fetch({ maxRedirects: 0 });
      await route.abort();
    }, { times: 1 });
    await create(page).click();
    await page.getByRole('alert').filter({ hasText: /Send the form again|Sending has failed/ }).waitFor();
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await count(page, 'Answer lost'), 1);
  }));

  test('an ended session keeps the texts', () => browser.asUser(site, 'clerk', async (page, context) => {
    await open(page, 'Sent with a file');
    await page.getByLabel('a document for each file').check();
    await drop(page, [['a.bin', 1000]]);
    await context.clearCookies();
    await create(page).click();
    await page.getByLabel('User name').fill('clerk');
    await page.getByLabel('Password').fill(site.users.clerk);
    await page.getByRole('main').getByRole('button', { name: 'Log on' }).click();
    await page.waitForURL(/\/create\?/);
    await page.getByText('choose the files again').waitFor();
    assert.equal(await page.locator('#title').inputValue(), 'Sent with a file');
    assert.ok(await page.getByLabel('a document for each file').isChecked());
  }));

  test('a file that the browser cannot read is named', () => browser.asUser(site, 'clerk', async (page) => {
    const path = `${site.directory}/vanishing.txt`;
    writeFileSync(path, 'here');
    await open(page, 'Unreadable');
    await page.locator('#files').setInputFiles(path);
    rmSync(path);
    await create(page).click();
    await page.getByRole('alert').filter({ hasText: 'cannot read this file; choose it again: vanishing.txt' }).waitFor();
    assert.equal(await count(page, 'Unreadable'), 0);
  }));

  test('a connection that breaks half way leaves nothing', () => browser.asUser(site, 'clerk', async (page, context) => {
    await open(page, 'Half way');
    const cookie = (await context.cookies()).map((each) => `${each.name}=${each.value}`).join('; ');
    const form = await page.evaluate(() => [...new FormData(document.getElementById('document-form'))].filter(([, value]) => typeof value === 'string'));
    const parts = form.map(([key, value]) => `--b\r\nContent-Disposition: form-data; name="${key}"\r\n\r\n${value}\r\n`).join('');
    const body = Buffer.from(`${parts}--b\r\nContent-Disposition: form-data; name="files[]"; filename="half.bin"\r\n\r\n${'x'.repeat(1 << 20)}\r\n--b--\r\n`);
    const { hostname, port, host } = new URL(site.address);
    const before = state();
    for (const share of [0.001, 0.5, 0.999]) {
      const socket = connect(Number(port), hostname);
      await once(socket, 'connect');
      const head = `POST /create?in=Finance/Orders HTTP/1.1\r\nHost: ${host}\r\nCookie: ${cookie}\r\nContent-Type: multipart/form-data; boundary=b\r\nContent-Length: ${body.length}\r\n\r\n`;
      await new Promise((resolve) => { socket.write(Buffer.concat([Buffer.from(head), body.subarray(0, Math.floor(body.length * share))]), resolve); });
      socket.destroy();
    }
    assert.equal(await count(page, 'Half way'), 0);
    await nothingIsLeft();
    assert.deepEqual(state(), before);
    await page.locator('#files').setInputFiles(file('whole.bin'));
    await create(page).click();
    await page.waitForURL(/\/document\?/);
    assert.equal(await count(page, 'Half way'), 1);
  }));

  /** Names and contents of the files in which the portal remembers forms and documents. */
  function state() {
    const directory = `${site.directory}/state/forms`;
    return readdirSync(directory).sort().map((name) => [name, createHash('sha256').update(readFileSync(`${directory}/${name}`)).digest('hex')]);
  }
});
