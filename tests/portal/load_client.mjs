// A user without a browser: one session, and what the pages show him.
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';

const unescaped = (text) => text.replace(/&(amp|lt|gt|quot|#039|apos);/g, (whole, name) =>
  ({ amp: '&', lt: '<', gt: '>', quot: '"', '#039': "'", apos: "'" })[name]);
const all = (text, expression) => [...text.matchAll(expression)].map((found) => unescaped(found[1]));

export const checksum = (bytes) => createHash('sha256').update(bytes).digest('hex');

/** The query of a document's pages, from the key of its hit. */
export function queryOf(key) {
  const [channel, archive, id, version] = key.split('/');
  return `channel=${channel}&archive=${archive}&id=${id}&version=${version}`;
}

/** What an answer shows; texts without their marks of HTML. */
class Answer {
  constructor(status, headers, body) {
    Object.assign(this, { status, headers, body, text: body.toString() });
  }

  /** Of the user whom the page is for; undefined on a visitor's page. */
  get userName() { return all(this.text, /<nav aria-label="Account">\s*<span>([^<]*)<\/span>/g)[0]; }
  get title() { return all(this.text, /<h1>([^<]*)<\/h1>/g)[0]; }
  get hitCount() { return Number(all(this.text, /role="status">(\d+) hits/g)[0] ?? 0); }
  get keys() { return all(this.text, /name="hit" value="([^"]*)"/g); }
  get token() { return all(this.text, /name="token" value="([^"]*)"/g)[0]; }
  get files() { return all(this.text, /href="(\/file\?[^"]*&amp;download=1)"/g); }
}

export class Client {
  constructor(site, onAnswer = () => {}) {
    Object.assign(this, { site, onAnswer, cookies: new Map(), name: null, token: '' });
  }

  /** Asks for a page, or sends a form. Redirects are not followed. */
  async ask(target, form = undefined, headers = {}) {
    const start = performance.now();
    const answer = await fetch(this.site.address + target, {
      method: form === undefined ? 'GET' : 'POST',
      body: form === undefined ? undefined : new URLSearchParams(form),
      headers: { 'Accept-Language': 'en', Cookie: [...this.cookies].map((pair) => pair.join('=')).join('; '), ...headers },
      redirect: 'manual',
      signal: AbortSignal.timeout(60000),
    });
    const body = Buffer.from(await answer.arrayBuffer());
    for (const line of answer.headers.getSetCookie()) {
      const [name, value] = line.split(';')[0].split('=');
      this.cookies.set(name, value);
    }
    this.onAnswer(performance.now() - start, answer.status, target);
    return new Answer(answer.status, answer.headers, body);
  }

  /** A page of the user's own; fails when it is for anyone else. */
  async page(target, status = 200) {
    const answer = await this.ask(target);
    assert.equal(answer.status, status, `${this.name}: ${target}`);
    assert.equal(answer.userName, this.name, `${this.name}: the user of ${target}`);
    return answer;
  }

  /** The status of the attempt. */
  async tryPassword(name, password) {
    const { token } = await this.ask('/log-on');
    return (await this.ask('/log-on', { name, password, token, to: '' })).status;
  }

  async logOn(name) {
    assert.equal(await this.tryPassword(name, this.site.users[name]), 303, `${name} logs on`);
    this.name = name;
    this.token = (await this.page('/keys')).token;
  }

  async logOff() {
    assert.equal((await this.ask('/log-off', { token: this.token })).status, 303);
    const answer = await this.ask('/hits?q=*');
    assert.deepEqual([answer.status, answer.headers.get('location')], [303, '/log-on?to=%2Fhits%3Fq%3D%2A'], `${this.name} has logged off`);
    this.name = null;
  }
}
