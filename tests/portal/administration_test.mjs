// The administration of users and rights, and how the rights restrict the pages.
import { after, before, describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync, utimesSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { once } from 'node:events';
import { setTimeout } from 'node:timers/promises';
import AxeBuilder from '@axe-core/playwright';
import { request } from 'playwright-core';
import { Site, chief, logOn, siteAndBrowser } from './site.mjs';

const [sqliteSite, browser] = siteAndBrowser();
let site = sqliteSite;

const sql = (statements) => JSON.parse(execFileSync('python3', ['-c', `import json, sqlite3, sys
database = sqlite3.connect(sys.argv[1], timeout=10)
rows = [row for each in sys.stdin.read().split(";\\n") for row in database.execute(each)]
database.commit()
print(json.dumps(rows))`, `${site.directory}/users.sqlite`], { input: statements, encoding: 'utf8' }));
const idOf = (name) => sql(`SELECT UserID FROM Users WHERE UserName='${name}'`)[0][0];
const decoded = (html) => html.replace(/<[^>]*>/g, ' ').replace(/&quot;/g, '"').replace(/&amp;/g, '&').replace(/\s+/g, ' ');

/** A user who sends requests without a browser window. */
class Client {
  static async as(name, body) {
    const context = await request.newContext({ baseURL: site.address, extraHTTPHeaders: { 'Accept-Language': 'en' } });
    try {
      const client = new Client(context);
      assert.equal(await client.logOn(name, site.users[name]), 303, `${name} logs on`);
      return await body(client);
    } finally {
      await context.dispose();
    }
  }

  constructor(context) {
    this.request = context;
  }

  async logOn(name, password) {
    const token = (await (await this.get('/log-on')).text()).match(/name="token" value="([^"]*)"/)[1];
    return (await this.request.post('/log-on', { form: { token, name, password }, maxRedirects: 0 })).status();
  }

  async get(target) {
    return this.request.get(target, { maxRedirects: 0 });
  }

  async status(target) {
    return (await this.get(target)).status();
  }

  async text(target) {
    return decoded(await (await this.get(target)).text());
  }

  async hits(query) {
    return JSON.parse(await (await this.get(`/download?as=json&${query}`)).text());
  }

  /** Sends the form of an account, with the token and stamp of the page as it is now, or those given. */
  async change(id, action, form = {}, page = '/administration/account') {
    const html = await (await this.get(`${page}?id=${id}`)).text();
    const hidden = (name) => html.match(new RegExp(`name="${name}" value="([^"]*)"`))?.[1] ?? '';
    const answer = await this.request.post(page, {
      form: { token: hidden('token'), stamp: hidden('stamp'), id, action, ...form }, maxRedirects: 0,
    });
    return answer.status();
  }
}

describe('why a user may do something', () => {
  const places = [['Mail', 'Inbox'], ['Mail', 'Outbox'], ['Finance', 'Orders']];
  // Each user: what oxaqry grants, SQL for what it refuses, the places that he sees, and whose entries say so.
  const users = [
    ['by-group', ['--group', 'Post'], '', 'Mail/Inbox Mail/Outbox', ['Post']],
    ['narrowed', ['--group', 'Post', '--archive', 'Mail/Inbox'], '', 'Mail/Inbox', ['Post', 'own']],
    ['by-name', ['--channel', 'Finance', '--archive', 'Orders'], '', 'Finance/Orders', ['own']],
    ['nested', ['--group', 'Inner'], '', '', []],
    ['wildcard', ['--channel', 'Mail', '--archive', 'Mail/*'], '', 'Mail/Inbox Mail/Outbox', ['own']],
    ['other-case', ['--channel', 'MAIL', '--channel', 'Finance'], '', 'Finance/Orders', ['own']],
    ['bad-channel', ['--channel', 'Finance'], "INSERT INTO UserChannels VALUES (?, 'Mail;x'), (?, 'Mail (old)')",
      'Finance/Orders', ['own']],
    ['bad-archive', ['--channel', 'Mail', '--channel', 'Finance'], "INSERT INTO UserArchives VALUES (?, '$(#Mail)\\In;box')",
      'Finance/Orders', ['own']],
    ['no-rights', [], '', '', []],
    ['editor', ['--group', 'Post', '--group', 'Books', '--edit', 'Mail/Inbox=N'], '', 'Mail/Inbox Mail/Outbox Finance/Orders',
      ['Post', 'Books', 'own']],
    ['cancelled', ['--group', 'Books'], "INSERT INTO UserEditRights VALUES (?, '$(#Finance)\\Orders', 0, -1, 0)",
      'Finance/Orders', ['Books', 'own']],
  ];
  const documents = {};

  before(async () => {
    for (const group of ['Post', 'Books', 'Inner', 'Outer']) site.userCommand('add', group, '--group');
    site.userCommand('grant', 'Post', '--channel', 'Mail', '--right', '7');
    site.userCommand('grant', 'Books', '--channel', 'Finance', '--edit', 'Finance/Orders=NED');
    site.userCommand('grant', 'Outer', '--channel', 'Mail', '--right', '7');
    for (const [name, rights, statement] of users) {
      site.addUser(name, ...rights);
      if (statement !== '') sql(statement.replaceAll('?', idOf(name)));
    }
    sql(`INSERT INTO UserGroups VALUES (${idOf('Inner')}, ${idOf('Outer')})`);
    await Client.as('clerk', async (client) => {
      for (const [channel, archive] of places) {
        const [hit] = (await client.hits(`q=*&in=${channel}/${archive}`)).hits;
        documents[`${channel}/${archive}`] = `channel=${channel}&archive=${archive}&id=${hit.document}`;
      }
    });
  });

  for (const [name, , , expected, sources] of users) {
    test(`${name}: the answers are what his pages do`, () => Client.as('administrator', async (administrator) => {
      const why = (kind, entry) => administrator.text(`/administration/why?id=${idOf(name)}&kind=${kind}&entry=${encodeURIComponent(entry)}`);
      await Client.as(name, async (client) => {
        const seen = new Set((await client.hits('q=*')).hits.map((hit) => `${hit.channel}/${hit.archive}`));
        let answers = '';
        for (const place of places.map((each) => each.join('/'))) {
          const isSeen = expected.split(' ').includes(place);
          const answer = await why('see', place);
          answers += answer;
          assert.equal(/Sees the archive/.test(answer), isSeen, `${place}: ${answer}`);
          assert.equal(seen.has(place), isSeen, `${place} in a search of everything`);
          assert.equal(await client.status(`/?in=${place}`), isSeen ? 200 : 404, place);
          const edit = await why('edit', place);
          answers += edit;
          // Of these archives of the development server, only Finance/Orders allows documents to be deleted.
          const allows = { create: true, edit: true, delete: place === 'Finance/Orders' };
          for (const [right, target] of [['create', `/create?in=${place}`], ['edit', `/edit?${documents[place]}`], ['delete', `/document/delete?${documents[place]}`]]) {
            const may = !new RegExp(`May not ${right}`).test(edit);
            assert.equal(await client.status(target), isSeen ? (may && allows[right] ? 200 : 403) : 404, `${right} ${place}: ${edit}`);
          }
        }
        const right = await why('general', '7');
        assert.equal(/Has the right/.test(right), sql(`SELECT 1 FROM UserGroups WHERE UserID=${idOf(name)} AND GroupID=${idOf('Post')}`).length > 0, right);
        const named = ['Post', 'Books', 'Outer'].filter((group) => answers.includes(`group ${group}`));
        if (/own entry/.test(answers)) named.push('own');
        assert.deepEqual(named.sort(), [...sources].sort(), answers);
      });
    }));
  }

  test('a right that no search can hold is named in the log and in the administration', () => Client.as('administrator', async (client) => {
    assert.match(readFileSync(`${site.directory}/fpm-errors.log`, 'utf8'), /user \d+ has 2 rights that no search can be restricted to: .*"Mail;x"/);
    assert.match(await client.text(`/administration/account?id=${idOf('bad-channel')}`), /Mail \(old\) gives nothing/);
    assert.equal(await client.change(idOf('bad-channel'), 'give', { kind: 'channel', 'value-channel': 'Mail;y' }), 422);
    assert.equal(await client.change(idOf('bad-channel'), 'give', { kind: 'archive', 'value-archive': '$(#Mail' }), 422);
    assert.equal(await client.change(idOf('bad-channel'), 'take', { kind: 'channel', entry: 'Mail;x' }), 303);
  }));
});

describe('search rights and document rights', () => {
  const titles = (html) => [...html.matchAll(/<th scope="col"[^>]*>(?:<a [^>]*>)?([^<]*)/g)].map((match) => match[1]);
  let all;

  before(async () => {
    sql(`INSERT INTO SearchRights VALUES (70);
      INSERT INTO SearchRightArchives VALUES (70, 'Finance', '');
      INSERT INTO SearchRightFields VALUES (70, 12, '', 1, 0);
      INSERT INTO DocRights VALUES (71, 'Finance', 'Invoices');
      INSERT INTO DocRightFields VALUES (71, 15, '<', '3000', 'NUM', 1)`);
    site.addUser('unseeing', '--channel', 'Finance', '--edit', 'Finance/Orders=NED', '--search-right', '70');
    site.addUser('small-sums', '--channel', 'Finance', '--doc-right', '71');
    all = await Client.as('clerk', (client) => client.hits('q=*&in=Finance/Invoices&layout=2'));
  });

  test('a hidden field is not in any column, order, page or file', () => Client.as('unseeing', async (client) => {
    const list = 'q=*&in=Finance/Invoices&layout=2';
    assert.deepEqual(all.columns, ['Customer', 'Title', 'Date', 'Amount']);
    assert.deepEqual((await client.hits(list)).columns, ['Title', 'Date', 'Amount']);
    const csv = await (await client.get(`/download?as=csv&${list}`)).text();
    assert.ok(!all.hits.some((hit) => csv.includes(hit.values[0])));
    assert.deepEqual(titles(await (await client.get(`/hits?${list}`)).text()).filter((each) => each === 'Customer'), []);
    for (const [sort, status] of [['Title', 200], ['2', 200], ['Customer', 422], ['1', 422]]) {
      assert.equal(await client.status(`/hits?${list}&sort=${sort}`), status, sort);
    }
    const document = `channel=Finance&archive=Invoices&id=${all.hits[0].document}`;
    for (const page of [`/document?${document}`, `/document?${document}&view=properties`, `/document?${document}&view=print`, `/preview?${document}`]) {
      const text = await client.text(page);
      assert.match(text, /Invoice for|Amount/, page);
      assert.doesNotMatch(text, /customer/i, page);
    }
    await Client.as('clerk', async (clerk) => {
      const index = (await (await clerk.get(`/document?${document}`)).text()).match(/segment=(\d+)[^>]*>Customer/)[1];
      for (const [file, status] of [[`segment=${index}`, 404], ['print=all', 404], [`segment=${Number(index) + 1}`, 200]]) {
        assert.equal(await clerk.status(`/file?${document}&${file}`), 200, file);
        assert.equal(await client.status(`/file?${document}&${file}`), status, file);
      }
    });
  }));

  test('a document is edited without its hidden field, which stays as it is', () => browser.asUser(site, 'unseeing', async (page, context) => {
    const properties = (id) => Client.as('clerk', (clerk) => clerk.text(`/document?channel=Finance&archive=Orders&id=${id}`));
    const [hit] = (await new Client(context.request).hits('q=*&in=Finance/Orders')).hits;
    const customer = (await properties(hit.document)).match(/Customer .*?Date/g).pop();
    await page.goto(`/edit?channel=Finance&archive=Orders&id=${hit.document}`);
    assert.doesNotMatch(await page.getByRole('main').innerText(), /customer/i);
    await page.locator('input[name=title]').fill('Order with a new title');
    await chief(page).click();
    await page.waitForURL(/\/document\?/);
    assert.match(await properties(hit.document), /Order with a new title/);
    assert.ok((await properties(hit.document)).includes(customer), customer);
  }));

  test('a hit whose document is withheld shows nothing of it, in lists, files and steps', () => Client.as('small-sums', async (client) => {
    const list = 'q=*&in=Finance/Invoices&layout=2';
    const isShown = (hit) => Number(hit.values[3].replace('.', '').replace(',', '.')) < 3000;
    const withheld = all.hits.filter((hit) => !isShown(hit)).map((hit) => hit.document);
    assert.ok(withheld.length > 3 && withheld.length < all.hits.length);
    assert.deepEqual((await client.hits(list)).hits.map((hit) => hit.document), all.hits.filter(isShown).map((hit) => hit.document));
    const html = await (await client.get(`/hits?${list}&size=1000`)).text();
    assert.match(decoded(html), new RegExp(`${all.hits.length} hits.*${withheld.length} of those on this page may not be shown`));
    assert.equal(html.split('Your rights do not include').length - 1, withheld.length);
    assert.deepEqual(withheld.filter((id) => html.includes(`id=${id}`) || html.includes(`/${id}/`)), []);
    await Client.as('administrator', async (administrator) => {
      for (const [name, place, answers] of [['small-sums', 'Finance/Invoices', /Document rights apply.*No search right applies.*#71/],
        ['small-sums', 'Finance/Orders', /No document right applies.*No search right applies/], ['unseeing', 'Finance/Orders', /No document right applies.*Search rights apply.*#70/]]) {
        assert.match(await administrator.text(`/administration/why?id=${idOf(name)}&kind=restrictions&entry=${place}`), answers, `${name} ${place}`);
      }
    });
    // From each shown hit, one step on is the next shown one.
    const shown = [...all.hits.entries()].filter(([, hit]) => isShown(hit));
    const back = encodeURIComponent(`/hits?${list}`);
    for (const [i, [at, hit]] of shown.slice(0, 4).entries()) {
      const step = `/document/neighbour?channel=Finance&archive=Invoices&id=${hit.document}&back=${back}&at=${at + 1}&of=${all.hits.length}`;
      assert.match((await client.get(step)).headers().location, new RegExp(`id=${shown[i + 1][1].document}&`));
    }
    const form = { token: html.match(/name="token" value="([^"]*)"/)[1], do: 'all' };
    const selection = await client.request.post(`/selection?${list}&sel=01234567`, { form, maxRedirects: 0 });
    assert.equal(selection.status(), 303);
    const zip = await (await client.get(`/download?${list}&sel=01234567&as=zip&what=selection`)).text();
    assert.match(zip, new RegExp(`Finance/Invoices, ${shown[0][1].document}/`));
    assert.deepEqual(withheld.filter((id) => zip.includes(` ${id}/`)), []);
  }));
});

test('axe finds nothing on a list with withheld hits, on an entry without effect, and on an answer why', async () => {
  const unusable = idOf('bad-channel');
  for (const [name, target] of [['small-sums', '/hits?q=*&in=Finance/Invoices'], ['administrator', `/administration/account?id=${unusable}`],
    ['administrator', `/administration/why?id=${unusable}&kind=see&entry=Mail/Inbox`]]) {
    await browser.asUser(site, name, async (page) => {
      await page.goto(target);
      const { violations } = await new AxeBuilder({ page }).analyze();
      assert.deepEqual(violations.map((each) => `${target}: ${each.id} ${each.nodes[0].html}`), []);
      const width = await page.evaluate(() => document.documentElement.scrollWidth);
      assert.ok(width <= 320, `${target} is ${width} pixels wide`);
    }, { viewport: { width: 320, height: 640 }, colorScheme: 'dark' });
  }
});

describe('what is remembered', () => {
  const files = (folder) => readdirSync(`${site.directory}/state/${folder}`).filter((name) => name.endsWith('.json'));

  for (const [how, remove] of [
    ['in the administration', (id) => Client.as('administrator', (client) => client.change(id, 'remove', { confirmed: 1 }, '/administration/remove'))],
    ['with oxaqry', () => site.userCommand('remove', 'leaver', '--yes')],
  ]) {
    test(`a user who gets the ID of one removed ${how} inherits nothing, and the old session ends`, async () => {
      site.addUser('leaver', '--channel', 'Mail');
      const id = idOf('leaver');
      await Client.as('administrator', () => {});  // has a file of his own then
      const before = files('users').length;
      await Client.as('leaver', async (client) => {
        assert.equal(await client.status('/hits?q=Zahlung'), 200);
        assert.match(await client.text('/'), /Zahlung/);
        await remove(id);
        site.addUser('newcomer', '--channel', 'Mail');
        assert.equal(idOf('newcomer'), id);
        assert.equal(await client.status('/'), 303);
        await Client.as('newcomer', async (other) => assert.doesNotMatch(await other.text('/'), /Zahlung/));
        if (how === 'in the administration') {
          assert.equal(files('users').length, before + 1);  // that of the newcomer
          site.userCommand('remove', 'newcomer', '--yes');
          site.addUser('leaver', '--channel', 'Mail');
          assert.equal(await client.status('/'), 303);
          await Client.as('leaver', async (other) => assert.doesNotMatch(await other.text('/'), /Zahlung/));
          site.userCommand('remove', 'leaver', '--yes');
        }
      });
    });
  }

  test('old counters of wrong passwords are removed, a limited number at each further one', () => Client.as('clerk', async (client) => {
    const old = [...Array(150).keys()].map((number) => `${String(number).padStart(64, '0')}.json`);
    assert.equal(await client.logOn('nobody', 'wrong'), 403);
    for (const name of old) {
      const file = `${site.directory}/state/log-on/${name}`;
      writeFileSync(file, '{}');
      utimesSync(file, 1e9, 1e9);
    }
    const left = () => files('log-on').filter((name) => old.includes(name)).length;
    await client.logOn('nobody', 'wrong');
    assert.ok(left() >= 50 && left() < 150, `${left()} are left`);
    await client.logOn('nobody', 'wrong');
    await client.logOn('nobody', 'wrong');
    assert.equal(left(), 0);
    assert.ok(files('log-on').length > 0);
  }));
});

describe('changes', () => {
  let subject;
  let crew;
  before(() => {
    site.userCommand('add', 'Crew', '--group');
    site.addUser('subject');
    [subject, crew] = [idOf('subject'), idOf('Crew')];
    sql(`INSERT INTO DocRights VALUES (81, '', '');
      INSERT INTO SearchRights VALUES (82)`);
  });

  const table = [
    // action, form, status, condition of a row that is there afterwards
    ['give', { kind: 'general', 'value-general': '12' }, 303, 'UserRights WHERE UserID=? AND RightID=12'],
    ['give', { kind: 'channel', 'value-channel': 'Büro' }, 303, "UserChannels WHERE UserID=? AND Channel='Büro'"],
    ['give', { kind: 'archive', 'value-archive': 'Mail/Fax' }, 303, "UserArchives WHERE UserID=? AND Archive='$(#Mail)\\Fax'"],
    ['give', { kind: 'document', 'value-document': '81' }, 303, 'UserDocRights WHERE UserID=? AND DocRightID=81'],
    ['give', { kind: 'search', 'value-search': '82' }, 303, 'UserSearchRights WHERE UserID=? AND SearchRightID=82'],
    ['edit-right', { archive: 'Mail/Fax', new: 1, edit: -1, delete: 0 }, 303, 'UserEditRights WHERE UserID=? AND New=1 AND Edit=-1'],
    ['give', { kind: 'document', 'value-document': '99' }, 422, 'Users WHERE UserID=? AND NOT EXISTS (SELECT 1 FROM UserDocRights WHERE DocRightID=99)'],
    ['give', { kind: 'channel', 'value-channel': "O'Mail" }, 422, ''],
    ['give', { kind: 'other', 'value-other': '1' }, 400, ''],
    ['edit-right', { archive: 'Mail/Fax', new: 1, edit: 0, delete: 0, was: '1,1,0' }, 409, 'UserEditRights WHERE UserID=? AND Edit=-1'],
    ['edit-right', { archive: 'Mail/Fax', new: 1, edit: 0, delete: 0 }, 409, 'UserEditRights WHERE UserID=? AND Edit=-1'],
    ['edit-right', { archive: '$(#Mail)\\Fax', new: 0, edit: 0, delete: 2, was: '1,-1,0' }, 303, 'UserEditRights WHERE UserID=? AND Del=2'],
    ['take', { kind: 'general', entry: '12' }, 303, 'Users WHERE UserID=? AND NOT EXISTS (SELECT 1 FROM UserRights WHERE RightID=12)'],
    ['take', { kind: 'channel', entry: 'Büro' }, 303, 'Users WHERE UserID=? AND UserID NOT IN (SELECT UserID FROM UserChannels)'],
    ['must-change', { 'must-change': 1 }, 303, 'Users WHERE UserID=? AND ChangePasswd=1'],
    ['archive-account', { 'archive-user': 'WEB' }, 422, 'Users WHERE UserID=? AND TELOUser IS NULL'],
    ['archive-account', { 'archive-user': 'WEB', 'archive-password': 'x1' }, 303, "Users WHERE UserID=? AND TELOUser='WEB' AND TELOPasswd<>'x1'"],
    ['archive-account', { 'archive-user': '' }, 303, 'Users WHERE UserID=? AND TELOUser IS NULL AND TELOPasswd IS NULL'],
    ['rename', { name: 'clerk' }, 409, "Users WHERE UserID=? AND UserName='subject'"],
    ['rename', { name: 'renamed' }, 303, "Users WHERE UserID=? AND UserName='renamed'"],
    ['rename', { name: 'subject', stamp: 'of before' }, 409, "Users WHERE UserID=? AND UserName='renamed'"],
    ['password', { password: 'short', again: 'short' }, 422, ''],
    ['password', { password: 'long enough', again: 'other' }, 422, ''],
  ];

  test('every kind of right and every other change is made, or refused with its reason', () => Client.as('administrator', async (client) => {
    for (const [action, form, status, row] of table) {
      const what = `${action} ${JSON.stringify(form)}`;
      assert.equal(await client.change(subject, action, form), status, what);
      if (row !== '') assert.equal(sql(`SELECT 1 FROM ${row.replace('?', subject)}`).length, 1, what);
    }
    assert.equal(await client.change(subject, 'join', { group: crew }), 303);
    assert.equal(await client.change(crew, 'join', { group: crew }), 422);
    assert.equal(await client.change(subject, 'leave', { group: crew }), 303);
    assert.equal(sql(`SELECT 1 FROM UserGroups WHERE GroupID=${crew}`).length, 0);
    const token = (await (await client.get('/administration/add?kind=group')).text()).match(/name="token" value="([^"]*)"/)[1];
    for (const [form, status] of [[{ kind: 'group', name: 'Night crew' }, 303], [{ kind: 'group', name: 'Night crew' }, 409],
      [{ kind: 'group', name: 'Night^,^crew\u{1F600}' }, 422], [{ name: 'unsure', password: 'one-pass1', again: 'one-pass2' }, 422]]) {
      const answer = await client.request.post('/administration/add', { form: { token, ...form }, maxRedirects: 0 });
      assert.equal(answer.status(), status, JSON.stringify(form));
    }
    assert.deepEqual(sql("SELECT Passwd, ChangePasswd FROM Users WHERE UserName='Night crew'"), [[null, null]]);
    for (const [kind, value, entries] of [['general', '12', 'UserRights'], ['channel', 'Mail', 'UserChannels'], ['archive', 'Fax', 'UserArchives'],
      ['document', '81', 'UserDocRights'], ['search', '82', 'UserSearchRights']]) {
      const count = () => sql(`SELECT 1 FROM ${entries} WHERE UserID=${crew}`).length;
      assert.equal(await client.change(crew, 'give', { kind, [`value-${kind}`]: value }), 303, `a group gets ${kind}`);
      assert.equal(count(), 1, kind);
      assert.equal(await client.change(crew, 'take', { kind, entry: value }), 303, `a group loses ${kind}`);
      assert.equal(count(), 0, kind);
    }
  }));

  test('a new password must be changed at the log-on, and who is disabled is logged off', () => Client.as('administrator', async (client) => {
    const name = sql(`SELECT UserName FROM Users WHERE UserID=${subject}`)[0][0];
    site.users[name] = 'given-pass2';
    assert.equal(await client.change(subject, 'password', { password: 'given-pass2', again: 'given-pass2', 'must-change': 1 }), 303);
    await Client.as(name, async (user) => {
      assert.equal((await user.get('/')).headers().location, '/password');
      assert.equal(await client.change(subject, 'must-change'), 303);
      assert.equal(await user.status('/'), 200);
      assert.equal(await client.change(subject, 'disable'), 303);
      assert.match((await user.get('/')).headers().location, /^\/log-on/);
      assert.equal(await user.logOn(name, 'given-pass2'), 403);
    });
  }));

  test('an administrator cannot remove his own right, and nobody else changes anything', () => Client.as('administrator', async (client) => {
    const administrator = idOf('administrator');
    assert.equal(await client.change(administrator, 'take', { kind: 'general', entry: '1' }), 409);
    assert.equal(await client.change(administrator, 'disable'), 409);
    assert.equal(await client.change(administrator, 'remove', { confirmed: 1 }, '/administration/remove'), 409);
    assert.equal(await client.change(subject, 'rename', { name: 'untokened', token: '' }), 403);
    site.userCommand('add', 'Admins', '--group');
    site.userCommand('grant', 'Admins', '--right', '1');
    site.addUser('second', '--group', 'Admins');
    const admins = idOf('Admins');
    await Client.as('second', async (second) => {
      assert.equal(await second.change(idOf('second'), 'leave', { group: admins }), 409);
      assert.equal(await second.change(admins, 'take', { kind: 'general', entry: '1' }), 409);
      assert.equal(await second.change(admins, 'remove', { confirmed: 1 }, '/administration/remove'), 409);
      assert.equal(await client.change(admins, 'take', { kind: 'general', entry: '1' }), 303);
      assert.equal(await second.status('/administration'), 403);
    });
    await Client.as('clerk', async (clerk) => {
      assert.equal(await clerk.change(idOf('clerk'), 'give', { kind: 'general', 'value-general': '1' }), 403);
    });
    assert.equal(await client.status('/administration'), 200);
    assert.equal(sql("SELECT 1 FROM Users WHERE UserName='untokened'").length, 0);
  }));
});

describe('servers and logs', () => {
  test('a server that is down is shown with its error and time beside one that answers', () => Client.as('administrator', async (client) => {
    const server = createServer().listen(0, '127.0.0.1');
    await once(server, 'listening');
    const { port } = server.address();
    server.close();
    const file = `${site.directory}/portal.ini`;
    writeFileSync(file, readFileSync(file, 'utf8').replace(/hosts = "(.*)"/, `hosts = "127.0.0.1,${port}|$1"`));
    // A process keeps the list of servers that it began with.
    process.kill(site.processes[1], 'SIGUSR2');
    const begun = () => readFileSync(`${site.directory}/fpm-errors.log`, 'utf8').split('ready to handle connections').length > 2;
    for (let i = 0; i < 200 && !begun(); ++i) await setTimeout(50);
    const text = await client.text('/administration/servers');
    assert.match(text, /1 of 2 servers answer/);
    assert.match(text, new RegExp(`127\\.0\\.0\\.1:${port} does not answer \\S.*? \\d+ .*127\\.0\\.0\\.1:${site.archive_port} answers`));
  }));

  test('the log of a session shows its lines, and no password, connection string or directory', () => Client.as('administrator', async (client) => {
    assert.equal(await client.status('/hits?q=harbour'), 200);
    const own = (await client.text('/administration/logs')).match(/(portal-[0-9a-f]{16}\.log) \(this session\)/)[1];
    assert.match(await client.text(`/administration/log?name=${own}`), /harbour/);
    writeFileSync(`${site.directory}/logs/page-7.log`, [
      '01.02.2026 10:11:12     Initializing new /srv/lib/liboxaqrycln.so.1',
      '01.02.2026 10:11:12     Opening database connection: Driver=x;UID=web;PWD=b\xe4d-word',
      `01.02.2026 10:11:13 ### <ERROR> Cannot open ${site.directory}/blobs/file7.tif`, ''].join('\r\n'), 'latin1');
    const text = await client.text('/administration/log?name=page-7.log');
    assert.match(text, /Initializing new liboxaqrycln.*error Cannot open .*file7\.tif/i);
    assert.deepEqual(['/srv/lib', 'UID=', 'd-word', site.directory].filter((secret) => text.includes(secret)), []);
    const errors = await client.text('/administration/log?name=page-7.log&kind=error');
    assert.match(errors, /1 entry\./);
    assert.doesNotMatch(errors, /Initializing/);
    for (const name of ['../portal.ini', 'none.log', '../logs/page-7.log']) {
      assert.equal(await client.status(`/administration/log?name=${encodeURIComponent(name)}`), 404, name);
    }
  }));
});

describe('users in PostgreSQL', () => {
  before(async () => {
    site = await Site.start('--postgresql');
  });
  after(async () => {
    await site.stop();
    site = sqliteSite;
  });

  test('an administrator adds a user, gives him a channel and takes it away', () => Client.as('administrator', async (client) => {
    const html = await (await client.get('/administration/add')).text();
    const form = { token: html.match(/name="token" value="([^"]*)"/)[1], name: 'Jörg', password: 'invented-pass1', again: 'invented-pass1' };
    const added = await client.request.post('/administration/add', { form, maxRedirects: 0 });
    const id = added.headers().location.match(/id=(\d+)/)[1];
    site.users['Jörg'] = 'invented-pass1';
    assert.equal((await client.request.post('/administration/add', { form, maxRedirects: 0 })).status(), 409);
    assert.equal(await client.change(id, 'give', { kind: 'channel', 'value-channel': 'Büro' }), 303);
    assert.equal(await client.change(id, 'edit-right', { archive: 'Büro/Protokolle', new: 1, edit: 1, delete: 0 }), 303);
    assert.match(await client.text(`/administration/why?id=${id}&kind=edit&entry=${encodeURIComponent('Büro/Protokolle')}`), /May create documents.*own entry/);
    assert.match(await client.text('/administration?q=j%C3%B6r'), /Jörg/);
    await Client.as('Jörg', async (user) => {
      const { hits } = await user.hits('q=*');
      assert.deepEqual([...new Set(hits.map((hit) => hit.channel))], ['Büro']);
      assert.equal(await user.status('/create?in=B%C3%BCro/Protokolle'), 200);
      assert.equal(await client.change(id, 'take', { kind: 'channel', entry: 'Büro' }), 303);
      assert.deepEqual((await user.hits('q=*')).hits, []);
      const [, stamp] = (await (await client.get(`/administration/account?id=${id}`)).text()).match(/name="stamp" value="([^"]*)"/);
      const both = ['rename', 'rename'].map((action, i) => client.change(id, action, { name: `Renamed ${i}`, stamp }));
      assert.deepEqual((await Promise.all(both)).sort(), [303, 409]);
      assert.equal(await user.status('/'), 303);
      assert.equal(await client.change(id, 'remove', { confirmed: 1 }, '/administration/remove'), 303);
      assert.equal(await client.status(`/administration/account?id=${id}`), 404);
    });
  }));
});
