// Replaces the archive server of a site by one with other options, and limits the files that the site can write.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { connect } from 'node:net';
import { readFileSync } from 'node:fs';
import { tools } from './site.mjs';

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

  /** Ends the server that there is. */
  async stop() {
    if (this.isFirst) process.kill(this.site.processes[0]);
    this.isFirst = false;
    await this.close();
    await until(async () => !(await this.listens()));
  }

  /** Ends the server that replace() has started, if there is one. */
  async close() {
    if (this.process?.exitCode === null) {
      this.process.kill();
      await once(this.process, 'exit');
    }
  }

  listens() {
    return new Promise((resolve) => {
      const socket = connect(this.site.archive_port, '127.0.0.1');
      socket.on('connect', () => { socket.destroy(); resolve(true); });
      socket.on('error', () => resolve(false));
    });
  }
}

/** Waits at most ten seconds until the condition holds. */
export async function until(isSo, milliseconds = 20) {
  for (let i = 0; i < 10000 / milliseconds; ++i) {
    if (await isSo()) return;
    await new Promise((resolve) => { setTimeout(resolve, milliseconds); });
  }
  throw new Error('the condition did not become true in ten seconds');
}

/** Limits the files that the portal's processes write to so many bytes. Larger writes fail as they do on a full disk. */
export function limitFiles(site, byteCount) {
  const children = readFileSync(`/proc/${site.processes[1]}/task/${site.processes[1]}/children`, 'utf8').trim().split(' ');
  for (const child of children) execFileSync('prlimit', ['--pid', child, `--fsize=${byteCount}:unlimited`]);
}
