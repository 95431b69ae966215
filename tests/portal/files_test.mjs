// Stored files, images and downloads, compared byte by byte.
import { after, before, describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { createHash, randomBytes } from 'node:crypto';
import fs from 'node:fs';
import http from 'node:http';
import os from 'node:os';
import zlib from 'node:zlib';
import { Site, root, siteAndBrowser } from './site.mjs';
import { bilevel, colour } from './tiff.mjs';

const directory = fs.mkdtempSync(`${os.tmpdir()}/portal-files-`);
const [site, browser] = siteAndBrowser({ options: ['--devserver=--log', '--setting=kept_megabytes=1'] });
after(() => fs.rmSync(directory, { recursive: true }));

/** Makes a document with stored files and returns its number. */
function make(where, place, title, files) {
  for (const [name, bytes] of Object.entries(files)) if (bytes !== null) fs.writeFileSync(`${where.directory}/blobs/${name}`, bytes);
  const fields = Object.keys(files).flatMap((name) => ['--field', `3:30=${name}`]);
  const text = where.oxaqry('create', place, '--title', title, ...fields, '--blob-local', `${where.directory}/blobs`, '--timeout', '120');
  for (const name of Object.keys(files)) fs.unlinkSync(`${where.directory}/blobs/${name}`);
  return /\/(\d+)\/1/.exec(text)[1];
}

const fileOf = (id, segment = 1) => `/file?channel=Mail&archive=Inbox&id=${id}&version=1&segment=${segment}`;
const imageOf = (id, segment, page) => fileOf(id, segment).replace('/file', '/image') + `&page=${page}`;
const fetches = () => fs.readFileSync(`${site.directory}/devserver.log`, 'utf8').split('[GetSegmentData]').length - 1;
const kept = () => fs.readdirSync(`${site.directory}/state/files`).filter((name) => !name.endsWith('.json'));
/** Runs a program on bytes, and returns what it has written to OUT, or else its output. */
function run(bytes, program, ...options) {
  fs.writeFileSync(`${directory}/in`, bytes);
  fs.rmSync(`${directory}/out`, { force: true });
  const text = execFileSync(program, options.map((each) => each.replace('IN', `${directory}/in`).replace('OUT', `${directory}/out`)),
    { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
  return options.includes('OUT') ? fs.readFileSync(`${directory}/out`) : text;
}

describe('stored files', () => {
  test('come back whole and in parts, from one request to the archive', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    const bytes = randomBytes(70000);
    const file = fileOf(make(site, 'Mail/Inbox', 'Parts', { 'parts.bin': bytes }));
    const before = fetches();
    const whole = await request.get(file);
    assert.ok(bytes.equals(await whole.body()));
    const tag = whole.headers().etag;
    for (const [range, ifRange, status, first, end] of [
      ['bytes=0-0', '', 206, 0, 1], ['bytes=100-199', '', 206, 100, 200], ['bytes=69990-', '', 206, 69990, 70000],
      ['bytes=69990-999999', '', 206, 69990, 70000], ['bytes=-5', '', 206, 69995, 70000], ['bytes=-999999', '', 206, 0, 70000],
      ['bytes=10-19', tag, 206, 10, 20], ['bytes=10-19', '"another"', 200], ['bytes=10-19', `W/${tag}`, 200],
      ['bytes=10-19', 'Sun, 22 Nov 2026 12:00:00 GMT', 200], ['bytes=0-1,5-6', '', 200], ['bytes=5-2', '', 200], ['lines=1-2', '', 200],
      ['bytes=70000-', '', 416], ['bytes=-0', '', 416],
    ]) {
      const answer = await request.get(file, { headers: { Range: range, ...(ifRange && { 'If-Range': ifRange }) } });
      const [row, body] = [`${range} ${ifRange}`, await answer.body()];
      assert.equal(answer.status(), status, row);
      assert.equal(answer.headers()['content-range'], { 206: `bytes ${first}-${end - 1}/70000`, 416: 'bytes */70000' }[status], row);
      assert.ok((status === 416 ? Buffer.alloc(0) : bytes.subarray(first ?? 0, end)).equals(body), row);
    }
    assert.equal(fetches() - before, 1);
    const head = await request.head(file, { headers: { Range: 'bytes=0-9' } });
    assert.deepEqual([head.status(), head.headers()['content-length'], (await head.body()).length], [200, '70000', 0]);
  }));

  test('are kept only for their user, while he may see them, and within the limit', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    const small = ['a.bin', 'b.bin'].map((name) => fileOf(make(site, 'Mail/Inbox', 'Kept', { [name]: randomBytes(600000) })));
    const large = randomBytes(2000000);
    const big = fileOf(make(site, 'Mail/Inbox', 'Kept', { 'large.bin': large }));
    const part = { headers: { Range: 'bytes=0-9' } };
    for (const file of small) await request.get(file, part);
    assert.equal(kept().length, 1);
    assert.ok(large.equals(await (await request.get(big)).body()));
    assert.equal(kept().length, 1, 'a file over the limit is not kept, and leaves the others');
    const file = `${site.directory}/state/files/${kept()[0]}`;
    fs.writeFileSync(`${site.directory}/state/files/new-left`, 'of a process that was ended');
    for (const old of [file, `${site.directory}/state/files/new-left`]) fs.utimesSync(old, Date.now() / 1000 - 320, Date.now() / 1000 - 320);
    const first = fetches();
    await request.get(small[1], part);
    assert.equal(fetches() - first, 1);
    assert.equal(kept().length, 1);
    const before = fetches();
    await browser.asUser(site, 'reader', async (other, context) => {
      assert.equal((await context.request.get(small[1], part)).status(), 206);
      assert.equal(fetches() - before, 1);
      site.userCommand('revoke', 'reader', '--channel', 'Mail');
      assert.equal((await context.request.get(small[1], part)).status(), 404);
      site.userCommand('grant', 'reader', '--channel', 'Mail');
    });
  }));

  test('are shown by their content, not by their name', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    const png = Buffer.from('iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGNgAAAAAgABSK+kcQAAAABJRU5ErkJggg==', 'base64');
    const table = [
      ['page.pdf', '<html><script>alert(1)</script>', 'attachment', 'application/octet-stream', 'page.pdf'],
      ['picture.png', '<svg xmlns="http://www.w3.org/2000/svg" onload="alert(1)"/>', 'attachment', 'application/octet-stream', 'picture.png'],
      ['mark.txt', '\ufeff <!DOCTYPE html>', 'attachment', 'application/octet-stream', 'mark.txt'],
      ['page.html', png, 'inline', 'image/png', 'page.html.png'],
      ['letter.html', '%PDF-1.4 text', 'inline', 'application/pdf', 'letter.html.pdf'],
      ['notes.txt', 'plain words\n', 'inline', 'text/plain; charset=utf-8', 'notes.txt'],
      ["Prüfung 100% 'a'.txt", 'words', 'inline', 'text/plain; charset=utf-8', "Prüfung 100% 'a'.txt"],
    ];
    const id = make(site, 'Mail/Inbox', 'Kinds', Object.fromEntries(table));
    for (const [number, [name, , disposition, type, savedAs]] of table.entries()) {
      const headers = (await request.get(fileOf(id, number + 1))).headers();
      assert.equal(headers['content-type'], type, name);
      assert.match(headers['content-disposition'], new RegExp(`^${disposition}; filename="[ -~]*"; filename\\*=UTF-8''[A-Za-z0-9._~%-]*$`));
      assert.equal(decodeURIComponent(headers['content-disposition'].split("''")[1]), savedAs);
      assert.match(headers['content-security-policy'], /^default-src 'none';.*; sandbox;/, name);
      assert.equal(headers['x-content-type-options'], 'nosniff', name);
    }
  }));

  test('have names that cannot break the header or mislead', () => {
    const table = [
      ['a"b\\c.txt', 'c.txt'], ['x"; filename="y.exe', 'x_; filename=_y.exe'], ['a\r\nSet-Cookie: b=c', 'a__Set-Cookie_ b=c'],
      ['../../etc/passwd', 'passwd'], ['C:\\x\\r.doc', 'r.doc'], ['invoice\u202Efdp.exe', 'invoice_fdp.exe'], ['\u0000\u0085\u009F.txt', '___.txt'],
      ['Grüße 😀.pdf', 'Grüße 😀.pdf'], [' . ', 'file'], ['', 'file'], [`${'ä'.repeat(300)}.docx`, `${'ä'.repeat(100)}.docx`],
    ];
    const code = `require '${root}portal/bootstrap.php'; use Portal\\Files\\FileName; foreach (json_decode(stream_get_contents(STDIN)) as $name)
      $all[] = FileName::disposition(FileName::of($name), true); echo json_encode($all);`;
    const headers = JSON.parse(execFileSync('php', ['-r', code], { input: JSON.stringify(table.map(([name]) => name)) }));
    for (const [number, [name, wanted]] of table.entries()) {
      assert.match(headers[number], /^attachment; filename="[A-Za-z0-9._ ()-]+"; filename\*=UTF-8''[A-Za-z0-9._~%-]+$/, name);
      assert.equal(decodeURIComponent(headers[number].split("''")[1]), wanted);
    }
  });
});

describe('page images', () => {
  /** Width, height, bits and colour type of a PNG file, and its rows with a filter byte each. */
  const pngOf = (bytes) => {
    const data = [];
    for (let at = 8; at < bytes.length; at += bytes.readUInt32BE(at) + 12) {
      if (bytes.toString('latin1', at + 4, at + 8) === 'IDAT') data.push(bytes.subarray(at + 8, at + 8 + bytes.readUInt32BE(at)));
    }
    return { size: [bytes.readUInt32BE(16), bytes.readUInt32BE(20), bytes[24], bytes[25]], rows: zlib.inflateSync(Buffer.concat(data)) };
  };

  test('are shown as PNG of the same size and colours, and broken files fail clearly', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    const fax = bilevel(64, 40);
    const photo = colour(32, 24, [200, 30, 40]);
    const pages = run(photo, 'tiffcp', '-a', 'IN', 'OUT');
    fs.writeFileSync(`${directory}/second`, run(fax, 'tiffcp', '-c', 'g4', 'IN', 'OUT'));
    const both = run(pages, 'tiffcp', 'IN', `${directory}/second`, 'OUT');
    const broken = run(photo, 'tiffcp', '-c', 'lzw', 'IN', 'OUT').fill(0xA5, 8, 40);
    // Name, content, page, status, then size, bits and colour type, and the first bytes of the image: black or the colour.
    const table = [
      ...['none', 'g3', 'g4', 'lzw', 'zip', 'packbits'].map((kind) => [`${kind}.tif`, run(fax, 'tiffcp', '-c', kind, 'IN', 'OUT'), 1, 200, [64, 40, 1, 0], [0, 255]]),
      ...['none', 'lzw', 'zip'].map((kind) => [`c${kind}.tif`, run(photo, 'tiffcp', '-c', kind, 'IN', 'OUT'), 1, 200, [32, 24, 8, 2], [200, 30, 40]]),
      ['jpeg.tif', run(photo, 'tiffcp', '-c', 'jpeg:r:90', 'IN', 'OUT'), 1, 200, [32, 24, 8, 2]],
      ['grey.tif', colour(32, 24, [77]), 1, 200, [32, 24, 8, 0], [77]],
      ['turned.tif', colour(32, 24, [200, 30, 40], 6), 1, 200, [24, 32, 8, 2], [200, 30, 40]],
      ['both.tif', both, 2, 200, [64, 40, 1, 0], [0, 255]],
      ['end.tif', both, 3, 404],
      ['broken.tif', broken, 1, 415],
      ['cut.tif', fax.subarray(0, 200), 1, 415],
      ['loop.tif', Buffer.concat([fax.subarray(0, -4), fax.subarray(4, 8)]), 9, 404],
      ['huge.tif', bilevel(64, 40, { width: 60000, height: 60000 }), 1, 415],
      ['svg.tif', '<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>', 1, 415],
      ['letter.tif', '%!PS', 1, 415],
    ];
    const id = make(site, 'Mail/Inbox', 'Pages', Object.fromEntries(table));
    for (const [number, [name, , pageNumber, status, size, start]] of table.entries()) {
      const answer = await request.get(imageOf(id, number + 1, pageNumber));
      assert.equal(answer.status(), status, name);
      assert.equal(answer.headers()['content-type'], status === 200 ? 'image/png' : 'text/html; charset=utf-8', name);
      if (status !== 200) continue;
      const png = pngOf(await answer.body());
      assert.deepEqual(png.size, size, name);
      if (start) assert.deepEqual([...png.rows.subarray(1, 1 + (size[2] === 1 ? 8 : start.length))].filter((byte, at, all) => size[2] > 1 || byte !== all[at - 1]), start, name);
    }
  }));

  test('need Imagick, and a failure says so', () => {
    const code = `require '${root}portal/bootstrap.php';
      try { Portal\\Files\\PageImage::png(tmpfile(), 1); } catch (Portal\\Web\\Failure $failure) { echo "$failure->kind $failure->detail"; }`;
    assert.equal(execFileSync('php', ['-n', '-r', code], { encoding: 'utf8' }), 'not-installed php-imagick');
  });

  test('are joined without the files that are damaged or no images', () => {
    const [fax, photo] = [bilevel(64, 40), colour(32, 24, [200, 30, 40])];
    const files = [fax, run(photo, 'tiffcp', '-c', 'lzw', 'IN', 'OUT').fill(0xA5, 8, 40), photo, '<svg/>', '', run(fax, 'tiffcp', '-c', 'g4', 'IN', 'OUT')];
    for (const [number, bytes] of files.entries()) fs.writeFileSync(`${directory}/${number}.tif`, bytes);
    const code = `require '${root}portal/bootstrap.php'; $out = tmpfile(); $joiner = new Portal\\Files\\TiffJoiner($out);
      for ($i = 0; $i < ${files.length}; ++$i) {
        fwrite($in = tmpfile(), file_get_contents("${directory}/$i.tif"));
        echo (int) $joiner->add($in);
      }
      copy(stream_get_meta_data($out)['uri'], '${directory}/joined');`;
    assert.equal(execFileSync('php', ['-r', code], { encoding: 'utf8' }), '101001');
    const widths = run(fs.readFileSync(`${directory}/joined`), 'tiffinfo', 'IN').match(/(?<=Image Width: )\d+/g);
    assert.deepEqual(widths, ['64', '32', '64']);
  });

  test('of the selected hits are one file with the pages of all', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    await page.goto('/hits?q=*&in=Finance/Invoices&size=20');
    await page.getByRole('button', { name: 'Select this page' }).click();
    let pages = 0;
    for (const link of await page.locator('tbody a.hit').evaluateAll((all) => all.map((each) => each.href))) {
      const file = await request.get(link.replace('/document?', '/file?pages=all&'));
      if (file.ok()) pages += run(await file.body(), 'tiffinfo', 'IN').split('TIFF Directory').length - 1;
    }
    const [download] = await Promise.all([page.waitForEvent('download'), page.locator('button[value=image]').click()]);
    const joined = run(fs.readFileSync(await download.path()), 'tiffinfo', 'IN');
    assert.ok(pages > 3);
    assert.equal(joined.split('TIFF Directory').length - 1, pages);
  }));
});

describe('hit lists', () => {
  test('come as ZIP with unique names and a report of what is missing', () => browser.asUser(site, 'clerk', async (page) => {
    const contents = { 'one.bin': randomBytes(3000), 'two.bin': randomBytes(100000), 'three.bin': Buffer.alloc(0) };
    for (const [name, bytes] of Object.entries(contents)) make(site, 'Mail/Inbox', 'Quagga: "a/b" <i>', { [name]: bytes });
    make(site, 'Mail/Inbox', 'Quagga without file', {});
    await page.goto('/hits?q=quagga');
    await page.getByRole('button', { name: 'Select all' }).click();
    const [download] = await Promise.all([page.waitForEvent('download'), page.locator('button[value=zip]').click()]);
    const zip = fs.readFileSync(await download.path());
    run(zip, 'unzip', '-t', 'IN');
    run(zip, 'unzip', '-o', '-d', `${directory}/zip`, 'IN');
    const names = fs.readdirSync(`${directory}/zip`);
    const report = fs.readFileSync(`${directory}/zip/${names.find((name) => name.endsWith('.txt'))}`, 'utf8');
    assert.equal(names.length, 4);
    assert.equal(new Set(names.map((name) => name.toLowerCase())).size, 4);
    const digest = (bytes) => createHash('sha256').update(bytes).digest('hex');
    assert.deepEqual(names.filter((name) => name.endsWith('.bin')).map((name) => digest(fs.readFileSync(`${directory}/zip/${name}`))).sort(),
      Object.values(contents).map(digest).sort());
    for (const name of names.filter((each) => each.endsWith('.bin'))) assert.ok(report.includes(`${name} (Mail/Inbox, `), name);
    assert.match(report, /Quagga without file \(Mail\/Inbox, \d+\/1\): .*stored file/);
  }));

  test('come as CSV and JSON with the rows of the list', () => browser.asUser(site, 'clerk', async (page, { request }) => {
    await page.goto('/hits?q=copper&size=50');
    const titles = await page.locator('tbody a.hit').allInnerTexts();
    const json = await (await request.get('/download?q=copper&as=json')).json();
    const csv = await (await request.get('/download?q=copper&as=csv')).text();
    assert.deepEqual(json.hits.map((hit) => hit.values[0]), titles);
    const lines = csv.replace('\ufeff', '').trimEnd().split('\r\n').map((line) => line.slice(1, -1).split('","'));
    assert.deepEqual(lines[0].slice(0, -4), json.columns);
    assert.deepEqual(lines.slice(1), json.hits.map((hit) => [...hit.values, hit.channel, hit.archive, hit.document, hit.version]));
  }));
});

describe('a file of a gibibyte', () => {
  const blocks = 1024;
  let large;
  before(async () => {
    large = await Site.start(`--devserver=--database=${directory}/archive.sqlite`, '--setting=timeout=120');
  });
  after(async () => {
    await large?.stop();
    fs.rmSync(`${directory}/archive.sqlite`, { force: true });
  });
  const statusOf = (process) => fs.readFileSync(`/proc/${process}/status`, 'utf8');
  const workers = () => fs.readdirSync('/proc').filter((name) => /^\d+$/.test(name)).filter((name) => {
    try {
      return /^Name:\s+php-fpm/m.test(statusOf(name)) && large.processes.includes(Number(/^PPid:\s+(\d+)/m.exec(statusOf(name))[1]));
    } catch {
      return false;  // it has ended meanwhile
    }
  });
  const peak = () => Math.max(...workers().map((worker) => Number(/^VmHWM:\s+(\d+)/m.exec(statusOf(worker))[1]))) / 1024;

  test('is downloaded unchanged, and memory stays flat', { timeout: 300000 }, () => browser.asUser(large, 'clerk', async (page, context) => {
    const source = fs.openSync(`${large.directory}/blobs/large.bin`, 'w');
    const [wanted, block] = [createHash('sha256'), randomBytes(1 << 20)];
    for (let number = 0; number < blocks; ++number) {
      block.writeUInt32LE(number);
      wanted.update(block);
      fs.writeSync(source, block);
    }
    fs.closeSync(source);
    const file = fileOf(make(large, 'Mail/Inbox', 'Large', { 'large.bin': null }));
    for (let i = 0; i < 8; ++i) await context.request.get('/hits?q=copper');
    const before = peak();
    const cookie = (await context.cookies()).map((each) => `${each.name}=${each.value}`).join('; ');
    const answer = await new Promise((resolve, reject) => {
      http.get(large.address + file, { headers: { Cookie: cookie } }, resolve).on('error', reject);
    });
    assert.deepEqual([answer.statusCode, answer.headers['content-length']], [200, String(blocks << 20)]);
    const found = createHash('sha256');
    for await (const piece of answer) found.update(piece);
    assert.equal(found.digest('hex'), wanted.digest('hex'));
    const part = await context.request.get(file, { headers: { Range: `bytes=${(blocks << 20) - 4}-` } });
    assert.ok(block.subarray(-4).equals(await part.body()));
    assert.ok(peak() - before < 16, `the peak of PHP's memory grew by ${peak() - before} MB`);
    assert.deepEqual(fs.readdirSync(`${large.directory}/blobs`), []);
  }));
});
