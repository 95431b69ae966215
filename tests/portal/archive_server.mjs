// An archive server in place of the one that a site has started, and what it takes to break the site's processes.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { connect } from 'node:net';
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

export const tools = fileURLToPath(new URL('../../build/debug/tools', import.meta.url));

export class ArchiveServer {
  constructor(site) {
    this.site = site;
    this.process = null;
    this.isFirst = true;
  }

  /** Ends the server that there is, and starts one with other options on the same port. */
  async replace(...options) {
    await this.stop();
    this.process = spawn(`${tools}/devserver/devserver`, ['--port', this.site.archive_port, '--blob-dir', `${this.site.directory}/blobs`,
      ...options], { stdio: 'ignore' });
    await until(() => this.listens());
  }

  async stop() {
    if (this.isFirst) process.kill(this.site.processes[0]);
    this.isFirst = false;
    if (this.process?.exitCode === null) {
      this.process.kill();
      await once(this.process, 'exit');
    }
    await until(async () => !(await this.listens()));
  }

  listens() {
    return new Promise((resolve) => {
      const socket = connect(this.site.archive_port, '127.0.0.1');
      socket.on('connect', () => { socket.destroy(); resolve(true); });
      socket.on('error', () => resolve(false));
    });
  }
}

export async function until(isSo, milliseconds = 20) {
  for (let i = 0; i < 10000 / milliseconds; ++i) {
    if (await isSo()) return;
    await new Promise((resolve) => { setTimeout(resolve, milliseconds); });
  }
  throw new Error('it does not become so');
}

/** Lets the portal's processes write files of so many bytes only; its writes fail then as those on a full disk do. */
export function limitFiles(site, byteCount) {
  const children = readFileSync(`/proc/${site.processes[1]}/task/${site.processes[1]}/children`, 'utf8').trim().split(' ');
  for (const child of children) execFileSync('prlimit', ['--pid', child, `--fsize=${byteCount}:unlimited`]);
}

/** "oxaqry user", with the user database of a site. */
export function userCommand(site, words, input = '') {
  execFileSync(`${tools}/oxaqry/oxaqry`, ['user', ...words, '--database', `Driver=SQLite3;Database=${site.directory}/users.sqlite`],
    { input, stdio: ['pipe', 'ignore', 'inherit'] });
}
