// axe finds nothing on any page, in light, dark and forced colours, and no page is wider than a window of 320 pixels.
import { describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import AxeBuilder from '@axe-core/playwright';
import { Site, invoice, letter, siteAndBrowser } from './site.mjs';

const order = 'channel=Finance&archive=Orders&id=1050';
const NARROW = { viewport: { width: 320, height: 640 } };
// All rules are checked in the first, and those for colours, which alone depend on the look, in the others.
const LOOKS = [['light', { colorScheme: 'light' }], ['dark', { colorScheme: 'dark' }], ['forced colours', { forcedColors: 'active' }]];

// Who looks at which page, and its status. Every route that answers GET is here; those of NO_PAGE answer with something else.
const PAGES = {
  visitor: [
    ['/log-on', 200],
    ['/log-on?to=%2Fhits%3Fq%3Dcopper', 200],
  ],
  clerk: [
    ['/', 200],
    ['/?in=Finance/Invoices', 200],
    ['/?in=Finance/Invoices&mask=Standard', 200],
    ['/?in=Finance/Invoices&mask=Standard&run=1', 422],
    ['/password', 200],
    ['/hits?q=copper', 200],
    ['/hits?q=copper&sort=1&page=99', 200],
    ['/hits?q=nothingatall', 200],
    ['/hits?q=((', 422],
    ['/hits?q=%E2%98%83', 400],
    ['/hits?q=copper&in=Nowhere/Nothing', 404],
    ['/keys', 200],
    [`/preview?${letter}&q=price`, 200],
    [`/document?${letter}&q=price&back=%2Fhits%3Fq%3Dprice&at=2&of=9`, 200],
    [`/document?${letter}&q=((`, 200],
    [`/document?${letter}&view=properties`, 200],
    [`/document?${letter}&view=print`, 200],
    [`/document?${invoice}&page=1`, 200],
    [`/document?${letter}&segment=99`, 404],
    [`/document/notes/delete?${letter}`, 200],
    [`/document/delete?${order}`, 200],
    [`/edit?${letter}`, 200],
    [`/edit?${invoice}`, 403],
    ['/create?in=Finance/Invoices', 200],
    ['/create?in=Mail/Inbox&mask=Standard', 200],
    ['/outline?in=Finance/Invoices&tree=1', 200],
    [`/image?${invoice}&segment=1`, 415],
    [`/file?${letter}`, 404],
    ['/download?q=copper&as=zip&what=selection', 422],
    ['/log-off', 405],
    ['/administration', 403],
    ['/nothing', 404],
  ],
  administrator: [
    ['/administration', 200],
    ['/administration?q=nobody', 200],
    ['/administration/add', 200],
    ['/administration/add?kind=group', 200],
    ['/administration/account?id=1', 200],
    ['/administration/account?id=2', 200],
    ['/administration/account?id=3&archive=Mail/Inbox', 200],
    ['/administration/account?id=999', 404],
    ['/administration/remove?id=1', 200],
    ['/administration/remove?id=2', 200],
    ['/administration/why?id=2', 200],
    ['/administration/why?id=3&kind=edit&entry=Mail/Inbox', 200],
    ['/administration/definitions', 200],
    ['/administration/servers', 200],
    ['/administration/logs', 200],
    ['/administration/log', 404],
  ],
};
const NO_PAGE = ['/document/neighbour'];

async function inspect(page, targets) {
  const found = [];
  for (const [target, status] of targets) {
    assert.equal((await page.goto(target)).status(), status, target);
    for (const [name, look] of LOOKS) {
      await page.emulateMedia({ colorScheme: 'light', forcedColors: 'none', ...look });
      const axe = new AxeBuilder({ page });
      const { violations } = await (name === 'light' ? axe : axe.withRules(['color-contrast', 'link-in-text-block'])).analyze();
      found.push(...violations.map((each) => `${target}, ${name}: ${each.id} ${each.nodes[0].html}`));
    }
    const width = await page.evaluate(() => document.documentElement.scrollWidth);
    if (width > 320) found.push(`${target} is ${width} pixels wide`);
  }
  assert.deepEqual(found, []);
}

describe('accessibility', () => {
  const [site, browser] = siteAndBrowser({ prepare: () => site.grantOrders() });

  test('every route is in the table', () => {
    const routes = readFileSync(new URL('../../portal/routes.php', import.meta.url), 'utf8');
    const paths = [...routes.matchAll(/new Route\('([^']+)', \[([^\]]+)\]/g)].filter((each) => each[2].includes("'GET'")).map((each) => each[1]);
    assert.ok(paths.length > 20);
    const seen = new Set(NO_PAGE.concat(Object.values(PAGES).flat().map(([target]) => target.split('?')[0])));
    assert.deepEqual(paths.filter((path) => !seen.has(path)), []);
  });

  for (const [name, targets] of Object.entries(PAGES)) {
    test(`of the pages for the ${name}`, () => (name === 'visitor'
      ? browser.visit(site, (page) => inspect(page, targets), NARROW)
      : browser.asUser(site, name, (page) => inspect(page, targets), NARROW)));
  }

  test('of a session log, and of what scripts add to a hit list', () => browser.asUser(site, 'administrator', async (page) => {
    await page.goto('/administration/logs');
    const log = await page.locator('tbody a').first().getAttribute('href');
    await inspect(page, [[log, 200]]);
    await page.goto('/hits?q=copper');
    await page.keyboard.press('j');
    await page.keyboard.press('Space');
    await page.locator('.preview h2').waitFor();
    await page.locator('.list-view summary').click();
    assert.deepEqual((await new AxeBuilder({ page }).analyze()).violations.map((each) => each.id), []);
    await page.keyboard.press('?');
    await page.locator('dialog[open]').waitFor();
    assert.deepEqual((await new AxeBuilder({ page }).analyze()).violations.map((each) => each.id), []);
  }, NARROW));

  test('of the page of a failing archive', async () => {
    const broken = await Site.start('--devserver=--misbehave=refuse');
    try {
      await browser.asUser(broken, 'clerk', async (page) => {
        await inspect(page, [['/hits?q=copper', 502]]);
        assert.match(await page.getByRole('main').innerText(), /127\.0\.0\.1:\d+/);
      }, NARROW);
    } finally {
      await broken.stop();
    }
  });
});
