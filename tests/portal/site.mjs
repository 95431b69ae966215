// Starts a site for the tests, and a browser that sees every violation of its policy.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { fileURLToPath } from 'node:url';
import assert from 'node:assert/strict';
import { chromium } from 'playwright-core';

const root = fileURLToPath(new URL('../..', import.meta.url));

/** A portal with a development archive of its own; takes options of scripts/portal_site.py. */
export class Site {
  static async start(...options) {
    const site = new Site();
    const build = `${root}build/debug`;
    site.process = spawn('python3', [`${root}scripts/portal_site.py`, '--nginx', '--tools', `${build}/tools`, '--library',
      `${build}/liboxaqrycln.so.1`, ...options],
    { stdio: ['pipe', 'pipe', 'inherit'] });
    let text = '';
    for await (const piece of site.process.stdout) {
      text += piece;
      if (text.includes('\n')) break;
    }
    Object.assign(site, JSON.parse(text));
    return site;
  }

  /** Runs a command of the command-line tool on the site's archive and user database. */
  oxaqry(...args) {
    const settings = args[0] === 'user' ? ['--database', `Driver=SQLite3;Database=${this.directory}/users.sqlite`]
      : ['--hosts', `127.0.0.1,${this.archive_port}`, '--user', 'webuser', '--password-stdin'];
    return execFileSync(`${root}build/debug/tools/oxaqry/oxaqry`, [...args, ...settings],
      { input: 'secret\n', encoding: 'utf8', timeout: 30000 });
  }

  async stop() {
    this.process.stdin.end();
    if (this.process.exitCode === null) await once(this.process, 'exit');
  }
}

export class Browser {
  /** options are Chromium's own */
  static async start(...options) {
    const browser = new Browser();
    browser.chromium = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox', ...options] });
    return browser;
  }

  stop() {
    return this.chromium.close();
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
