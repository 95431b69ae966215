// What the tests share: a site, a browser that reports every violation of the pages' policy, and the steps of many tests.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { after, before } from 'node:test';
import { fileURLToPath } from 'node:url';
import assert from 'node:assert/strict';
import { chromium } from 'playwright-core';

export const root = fileURLToPath(new URL('../..', import.meta.url));

export const tools = `${root}build/debug/tools`;
/** Documents of the development archive, as URLs name them. */
export const letter = 'channel=Mail&archive=Inbox&id=1199&version=1';
export const invoice = 'channel=Finance&archive=Invoices&id=1085&version=1';

/** A portal with a development archive of its own; takes options of scripts/portal_site.py. */
export class Site {
  static async start(...options) {
    const site = new Site(options);
    await site.start();
    return site;
  }

  constructor(options) {
    this.options = options;
  }

  async start() {
    this.process = spawn('python3', [`${root}scripts/portal_site.py`, '--nginx', '--tools', tools, '--library',
      `${root}build/debug/liboxaqrycln.so.1`, ...this.options],
    { stdio: ['pipe', 'pipe', 'inherit'] });
    let text = '';
    for await (const piece of this.process.stdout) {
      text += piece;
      if (text.includes('\n')) break;
    }
    Object.assign(this, JSON.parse(text));
  }

  /** Runs a command of the command-line tool on the site's archive. */
  oxaqry(...args) {
    return this.#run([...args, '--hosts', `127.0.0.1,${this.archive_port}`, '--user', 'webuser', '--password-stdin'], 'secret\n');
  }

  /** Runs a command of "oxaqry user" on the site's user database. */
  userCommand(...args) {
    return this.#run(['user', ...args, '--database', `Driver=SQLite3;Database=${this.directory}/users.sqlite`]);
  }

  /** Adds a user; grants are options of "oxaqry user grant". */
  addUser(name, ...grants) {
    this.users[name] = `${name}-pass1`;
    this.#run(['user', 'add', name, '--password-stdin', '--database', `Driver=SQLite3;Database=${this.directory}/users.sqlite`],
      `${this.users[name]}\n`);
    if (grants.length > 0) this.userCommand('grant', name, ...grants);
  }

  /** Lets the clerk create, edit and delete documents of an archive that allows all of it. */
  grantOrders() {
    this.userCommand('grant', 'clerk', '--edit', 'Finance/Orders=NED');
  }

  #run(args, input = '') {
    return execFileSync(`${tools}/oxaqry/oxaqry`, args, { input, encoding: 'utf8', timeout: 150000 });
  }

  async stop() {
    this.process?.stdin.end();
    if (this.process?.exitCode === null) await once(this.process, 'exit');
  }
}

export class Browser {
  /** options are Chromium's own */
  static async start(...options) {
    const browser = new Browser();
    await browser.start(...options);
    return browser;
  }

  async start(...options) {
    this.chromium = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox', ...options] });
  }

  async stop() {
    await this.chromium?.close();
  }

  /** Runs body(page) in a window of its own, which fails on a violation of the policy and on any error of a script. */
  async visit(site, body, options = {}) {
    const context = await this.chromium.newContext({ baseURL: site.address, locale: 'en-GB', ...options });
    const faults = [];
    const page = await context.newPage();
    page.on('console', (message) => {
      if (/Content Security Policy/.test(message.text())) faults.push(message.text());
    });
    page.on('pageerror', (error) => faults.push(String(error)));
    page.on('dialog', (dialog) => {
      faults.push(`a dialog: ${dialog.message()}`);
      dialog.dismiss();
    });
    try {
      await body(page, context);
    } finally {
      await context.close();
    }
    assert.deepEqual(faults, []);
  }

  /** The same for a user who has logged on. */
  asUser(site, name, body, options = {}) {
    return this.visit(site, async (page, context) => {
      await logOn(page, name, site.users[name]);
      await body(page, context);
    }, options);
  }
}

export async function logOn(page, name, password) {
  if (!page.url().includes('/log-on')) await page.goto('/log-on');
  await page.locator('#name').fill(name);  // the language may be any
  await page.locator('#password').fill(password);
  await page.locator('main button.chief').click();
}

/**
 * A site and a browser for the tests of a file: started before the first test, stopped after the last one. prepare() changes the
 * site that has started.
 */
export function siteAndBrowser({ options = [], prepare = () => {} } = {}) {
  const site = new Site(options);
  const browser = new Browser();
  before(async () => {
    await Promise.all([site.start(), browser.start()]);
    prepare();
  });
  after(() => Promise.all([browser.stop(), site.stop()]));
  return [site, browser];
}

/** The main button of the last form of a page. */
export const chief = (page) => page.locator('main form button.chief').last();

/** Fills in the form of a document: the title, and each empty field that needs a value. */
export async function fillIn(page, title) {
  await page.locator('#title').fill(title);
  for (const input of await page.locator('main form [required]').all()) {
    if (await input.inputValue() === '') await input.fill('words');
  }
}
