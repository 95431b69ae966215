// Many users at once, slow archives, and what a page needs before it is painted.
import { after, before, describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { Browser, Site } from './site.mjs';
import { Client, checksum, queryOf } from './load_client.mjs';

const USERS = 20;
const SECONDS = 30;
const QUERIES = ['copper', '*', 'Zahlung', 'customer:Lindwurm', 'nothingatall'];
/** Further users, with their options of "oxaqry user grant". */
const FURTHER = { finance: ['--channel', 'Finance'], letters: ['--channel', 'Mail', '--archive', 'Mail/Inbox'], victim: ['--channel', 'Mail'] };
/** The wrong passwords of each user. All users share one address, which has 40 free attempts. */
const WRONG_PASSWORDS = 1;

/** Numbers from 0 to below 1, the same for the same seed. */
function randomNumbers(seed) {
  let state = seed;
  return () => {
    state = (state + 0x6d2b79f5) | 0;
    let mixed = Math.imul(state ^ (state >>> 15), 1 | state);
    mixed = (mixed + Math.imul(mixed ^ (mixed >>> 7), 61 | mixed)) ^ mixed;
    return ((mixed ^ (mixed >>> 14)) >>> 0) / 4294967296;
  };
}

function addUsers(site) {
  for (const [name, grants] of Object.entries(FURTHER)) site.addUser(name, ...grants);
}

/** What an account sees when nobody else uses the site. */
async function seenBy(site, name) {
  const client = new Client(site);
  await client.logOn(name);
  const seen = { lists: {}, titles: {}, files: {} };
  for (const query of QUERIES) {
    const list = await client.page(`/hits?q=${encodeURIComponent(query)}&size=1000&sel=ffffffff`);
    const exported = await client.ask(`/download?q=${encodeURIComponent(query)}&as=csv`);
    seen.lists[query] = { count: list.hitCount, keys: list.keys, csv: checksum(exported.body) };
    assert.equal(list.keys.length, list.hitCount, `${name}: ${query}`);
  }
  for (const key of seen.lists['*'].keys.filter((_, at) => at % 7 === 0).slice(0, 16)) {
    const page = await client.page(`/document?${queryOf(key)}`);
    seen.titles[key] = page.title;
    for (const file of page.files) seen.files[file] = checksum((await client.ask(file)).body);
  }
  await client.logOff();
  return seen;
}

/** A user whose random steps are each checked against what the account may see. */
class Visitor {
  constructor(site, seen, number, onAnswer) {
    this.accounts = Object.keys(seen);
    Object.assign(this, { seen, client: new Client(site, onAnswer), random: randomNumbers(number + 1), wrongPasswordsLeft: WRONG_PASSWORDS });
    // The same for a user of each account, so that selections of different accounts have one name.
    this.selectionName = String(Math.floor(number / this.accounts.length)).padStart(8, '0');
    this.account = this.accounts[number % this.accounts.length];
    this.selected = new Set();
  }

  one(list) { return list[Math.floor(this.random() * list.length)]; }
  get own() { return this.seen[this.account]; }

  async act() {
    const ways = ['list', 'list', 'list', 'document', 'document', 'foreign', 'file', 'exported', 'select', 'select', 'downloadSelection',
      'logOffAndOn', 'wrongPassword'];
    const way = this.client.name === null ? 'logOn' : this.one(ways);
    await this[way]();
  }

  logOn() { return this.client.logOn(this.account); }

  async logOffAndOn() {
    await this.client.logOff();
    await this.client.logOn(this.account);
  }

  async list() {
    const query = this.one(QUERIES);
    const { count, keys } = this.own.lists[query];
    const pages = Math.max(1, Math.ceil(count / 20));
    const page = 1 + Math.floor(this.random() * pages);
    const answer = await this.client.page(`/hits?q=${encodeURIComponent(query)}&page=${page}&sel=${this.selectionName}`);
    assert.equal(answer.hitCount, count, `${this.account}: hits of ${query}`);
    assert.deepEqual(answer.keys, keys.slice((page - 1) * 20, page * 20), `${this.account}: page ${page} of ${query}`);
  }

  async document() {
    const [key, title] = this.one(Object.entries(this.own.titles));
    assert.equal((await this.client.page(`/document?${queryOf(key)}`)).title, title, `${this.account}: ${key}`);
  }

  /** A document that another account sees, and this one does not. */
  async foreign() {
    const others = Object.keys(this.seen[this.one(this.accounts)].titles);
    const key = this.one(others.filter((each) => !this.own.lists['*'].keys.includes(each)));
    if (key !== undefined) await this.client.page(`/document?${queryOf(key)}`, 404);
  }

  async file() {
    const entry = this.one(Object.entries(this.own.files));
    if (entry === undefined) return;
    const answer = await this.client.ask(entry[0]);
    assert.deepEqual([answer.status, checksum(answer.body)], [200, entry[1]], `${this.account}: ${entry[0]}`);
  }

  async exported() {
    const query = this.one(QUERIES);
    const answer = await this.client.ask(`/download?q=${encodeURIComponent(query)}&as=csv`);
    assert.deepEqual([answer.status, checksum(answer.body)], [200, this.own.lists[query].csv], `${this.account}: ${query} as CSV`);
  }

  async select() {
    const key = this.one(this.own.lists['*'].keys);
    const isSelected = this.selected.has(key);
    const form = { token: this.client.token, was: key, ...(isSelected ? {} : { hit: key }) };
    const answer = await this.client.ask(`/selection?q=*&sel=${this.selectionName}`, form, { Accept: 'application/json' });
    assert.equal(answer.status, 200, `${this.account}: selection`);
    isSelected ? this.selected.delete(key) : this.selected.add(key);
    assert.equal(JSON.parse(answer.text).count, this.selected.size, `${this.account}: how many are selected`);
  }

  async downloadSelection() {
    const answer = await this.client.ask(`/download?q=*&sel=${this.selectionName}&what=selection&as=json`);
    if (this.selected.size === 0) return assert.equal(answer.status, 422, `${this.account}: nothing is selected`);
    assert.equal(answer.status, 200, `${this.account}: the selection`);
    const keys = JSON.parse(answer.text).hits.map((hit) =>
      [hit.channel, hit.archive, hit.document, hit.version].map(encodeURIComponent).join('/'));
    assert.deepEqual(new Set(keys), this.selected, `${this.account}: the selection`);
  }

  async wrongPassword() {
    if (this.wrongPasswordsLeft-- > 0) {
      const other = new Client(this.client.site);
      assert.ok([403, 429].includes(await other.tryPassword('victim', 'wrong')), 'a wrong password');
    }
  }
}

/** What the workers of php-fpm hold, by their process. */
function workers(site) {
  const master = site.processes[1];
  const processes = readFileSync(`/proc/${master}/task/${master}/children`, 'ascii').trim().split(' ');
  return Object.fromEntries(processes.map((process) => {
    const status = readFileSync(`/proc/${process}/status`, 'ascii');
    const number = (name) => Number(new RegExp(`^${name}:\\s*(\\d+)`, 'm').exec(status)[1]);
    return [process, { descriptors: readdirSync(`/proc/${process}/fd`).length, threads: number('Threads'), kilobytes: number('RssAnon') }];
  }));
}

const quantile = (sorted, part) => Math.round(sorted[Math.floor((sorted.length - 1) * part)]);

describe('twenty users at once', () => {
  let site;
  const seen = {};
  before(async () => {
    site = await Site.start();
    addUsers(site);
    for (const name of Object.keys(site.users).filter((each) => each !== 'victim')) seen[name] = await seenBy(site, name);
  });
  after(() => site?.stop());

  test('accounts see different hits', () => {
    const lists = Object.values(seen).map((each) => JSON.stringify(each.lists['*'].keys));
    assert.equal(new Set(lists).size, lists.length - 1);  // those of the administrator and the clerk are the same
  });

  test(`get right answers for ${SECONDS} seconds`, async (t) => {
    const times = [];
    let logOns = 0;
    const visitors = Array.from({ length: USERS }, (_, number) => new Visitor(site, seen, number, (milliseconds, status, target) => {
      times.push(milliseconds);
      logOns += target === '/log-on' && status === 303 ? 1 : 0;
    }));
    const faults = [];
    const before = { workers: workers(site), sessions: readdirSync(`${site.directory}/state/sessions`).length };
    const end = Date.now() + SECONDS * 1000;
    await Promise.all(visitors.map(async (visitor) => {
      while (Date.now() < end && faults.length < 10) await visitor.act().catch((error) => faults.push(error.message));
    }));
    times.sort((one, other) => one - other);
    t.diagnostic(`${(times.length / SECONDS).toFixed(0)} requests a second; median ${quantile(times, 0.5)} ms, `
      + `99 % within ${quantile(times, 0.99)} ms, longest ${quantile(times, 1)} ms`);
    assert.deepEqual(faults, []);
    checkNothingLeft(t, before, logOns);
  });

  function checkNothingLeft(t, before, logOns) {
    const now = workers(site);
    t.diagnostic(`workers before: ${JSON.stringify(before.workers)}, after: ${JSON.stringify(now)}`);
    assert.deepEqual(Object.keys(now), Object.keys(before.workers), 'no worker has ended');
    for (const [process, { descriptors, threads, kilobytes }] of Object.entries(now)) {
      const was = before.workers[process];
      assert.ok(descriptors <= was.descriptors + 2, `worker ${process}: descriptors`);
      assert.ok(threads <= was.threads + 1, `worker ${process}: threads`);
      assert.ok(kilobytes <= was.kilobytes + 16384, `worker ${process}: memory`);
    }
    const files = (folder) => readdirSync(`${site.directory}/${folder}`);
    // Those of the users, and one of a visitor for each time that someone has logged on, or given a wrong password.
    assert.ok(files('state/sessions').length <= before.sessions + USERS * (1 + WRONG_PASSWORDS) + logOns, 'sessions');
    assert.deepEqual(['users', 'selections', 'log-on'].flatMap((folder) => files(`state/${folder}`))
      .filter((name) => !/^[0-9a-f]{64}\.json(\.lock)?$/.test(name)), [], 'files that were being written');
    assert.deepEqual(files('blobs'), [], 'transferred files');
  }
});

describe('a slow archive', () => {
  test('delays no other page of the same user', async (t) => {
    const site = await Site.start('--devserver=--misbehave=delay:2000');
    t.after(() => site.stop());
    const client = new Client(site);
    await client.logOn('clerk');
    let isAnswered = false;
    const list = client.page('/hits?q=copper').finally(() => { isAnswered = true; });
    for (let i = 0; i < 4; ++i) {
      await client.page('/keys');
      assert.equal((await client.ask('/keys', { token: client.token, keys: '1', back: '/' })).status, 303);
    }
    assert.equal(isAnswered, false, 'the list has come before the other pages');
    assert.equal((await list).hitCount, 21);
  });
});

describe('the first paint', () => {
  test('waits only for the style sheet', async (t) => {
    const [site, browser] = await Promise.all([Site.start(), Browser.start()]);
    t.after(() => Promise.all([browser.stop(), site.stop()]));
    await browser.asUser(site, 'clerk', async (page) => {
      await page.route('**/*.js', () => {});  // never answered
      for (const target of ['/', '/hits?q=copper', '/document?channel=Mail&archive=Inbox&id=1199&version=1']) {
        await page.goto(target, { waitUntil: 'commit' });
        const [painted, blocking] = await page.evaluate(async () => {
          const paint = await new Promise((resolve) => {
            new PerformanceObserver((list) => list.getEntriesByName('first-contentful-paint').forEach(resolve))
              .observe({ type: 'paint', buffered: true });
            setTimeout(resolve, 20000, null);
          });
          const resources = performance.getEntriesByType('resource').filter((each) => each.renderBlockingStatus === 'blocking');
          return [paint?.startTime, resources.map((each) => new URL(each.name).pathname)];
        });
        assert.notEqual(painted, undefined, `${target} is painted without the script`);
        assert.deepEqual(blocking, ['/portal.css'], target);
        t.diagnostic(`${target} is painted after ${Math.round(painted)} ms`);
      }
    });
  });
});
