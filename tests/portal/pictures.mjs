// Takes the pictures of docs/pictures/ from a site of its own. A picture that has not changed is not written. Fails only if a
// page cannot be shown.
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { Browser, Site } from './site.mjs';

const directory = fileURLToPath(new URL('../../docs/pictures/', import.meta.url));
const letter = '/document?channel=Mail&archive=Inbox&id=1118&version=1&q=delivery%20OR%20meeting&back=%2Fhits%3Fq%3Ddelivery&at=2&of=97';
const list = '/hits?q=delivery&sort=3&order=down';

/** A hit list with a hit selected and the preview of another. */
const withPreview = async (page) => {
  for (const key of ['j', 'x', 'j', ' ']) await page.keyboard.press(key);
  await page.locator('.preview[data-row=hit-2] h2').waitFor();
  await page.waitForFunction(() => [...document.querySelectorAll('.preview img')].every((each) => each.complete && each.naturalWidth > 0));
  await page.locator('.selected', { hasText: /^1 / }).waitFor();
};

const withMark = async (page) => {
  await page.keyboard.press('n');
  await page.evaluate(() => window.scrollTo(0, 0));
};

/** Puts fixed values in place of what differs from run to run. */
const withoutRun = (page) => page.evaluate(() => {
  const walker = document.createTreeWalker(document.querySelector('main'), NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const text = walker.currentNode;
    text.data = text.data.replace(/127\.0\.0\.1:\d+/, 'archive1:8100').replace(/\(\d+\)(?=; other)/, '(4711)');
  }
  document.querySelectorAll('main time').forEach((each) => { each.textContent = '1 Sep 2026, 09:30'; });
  document.querySelectorAll('main td.figure').forEach((each) => { each.textContent = '0'; });
});

// The file's name, who sees the page, its address, what is done there first, and what is particular about the window.
const PICTURES = [
  ['log-on', '', '/log-on', null, { height: 520 }],
  ['search', 'clerk', '/?in=Finance/Invoices&mask=Standard', null, { height: 960 }],
  ['hit-list', 'clerk', list, withPreview],
  ['hit-list-dark', 'clerk', list, withPreview, { colorScheme: 'dark' }],
  ['hit-list-german', 'clerk', list, null, { locale: 'de-DE' }],
  ['hit-list-narrow', 'clerk', list, null, { width: 320, height: 900 }],
  ['document', 'clerk', letter, withMark],
  ['create', 'clerk', '/create?in=Mail/Inbox', null, { height: 960 }],
  ['outliner', 'clerk', '/outline?in=Finance/Invoices&tree=1', null, { height: 520 }],
  ['administration', 'administrator', '/administration/account?id=3', null, { height: 960 }],
  ['why', 'administrator', '/administration/why?id=3&kind=edit&entry=Mail/Inbox', null, { height: 900 }],
  ['servers', 'administrator', '/administration/servers', withoutRun, { height: 520 }],
];

/** Whether two pictures show the same. Compares them at a quarter of their size, where antialiasing and palettes do not matter. */
async function isSame(one, other) {
  const page = await browser.chromium.newPage();
  try {
    return await page.evaluate(async (pictures) => {
      const [first, second] = await Promise.all(pictures.map(async (picture) => {
        const image = Object.assign(new Image(), { src: `data:image/png;base64,${picture}` });
        await image.decode();
        const [width, height] = [image.width / 4, image.height / 4];
        const context = new OffscreenCanvas(width, height).getContext('2d');
        context.imageSmoothingQuality = 'high';
        context.drawImage(image, 0, 0, width, height);
        return context.getImageData(0, 0, width, height).data;
      }));
      return first.length === second.length && first.every((value, at) => Math.abs(value - second[at]) <= 24);
    }, [one, other].map((each) => each.toString('base64')));
  } finally {
    await page.close();
  }
}

async function write(name, picture) {
  const small = execFileSync('pngquant', ['--speed', '1', '--nofs', '--strip', '32', '-'], { input: picture, maxBuffer: 1 << 24 });
  const file = `${directory}${name}.png`;
  const isNew = !existsSync(file) || !await isSame(readFileSync(file), small);
  if (isNew) writeFileSync(file, small);
  console.log(`${name}.png: ${small.length} bytes${isNew ? ', written' : ''}`);
}

async function take(page, name, address, prepare) {
  await page.mouse.move(0, 0);  // where it changes no colour
  const status = (await page.goto(address)).status();
  if (status !== 200) throw new Error(`${address}: ${status}`);
  await prepare?.(page);
  await page.evaluate(() => document.fonts.ready);
  await write(name, await page.screenshot({ animations: 'disabled', caret: 'hide' }));
}

// The same rendering of text on every machine.
const STEADY = ['--disable-lcd-text', '--font-render-hinting=none', '--force-color-profile=srgb'];
const [site, browser] = await Promise.all([Site.start(), Browser.start(...STEADY)]);
try {
  mkdirSync(directory, { recursive: true });
  for (const [name, user, address, prepare, { width = 1280, height = 800, ...look } = {}] of PICTURES) {
    const options = { viewport: { width, height }, deviceScaleFactor: 1, ...look };
    const body = (page) => take(page, name, address, prepare);
    await (user === '' ? browser.visit(site, body, options) : browser.asUser(site, user, body, options));
  }
} finally {
  await Promise.all([browser.stop(), site.stop()]);
}
