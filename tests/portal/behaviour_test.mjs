// How the pages behave in the browser: history, tabs, keys, without scripts, in print.
import { describe, test } from 'node:test';
import assert from 'node:assert/strict';
import { chief, letter, siteAndBrowser } from './site.mjs';

const rows = (page) => page.locator('table.hits tbody tr');
const current = (page) => page.locator('tr.current');
const titles = (page) => page.locator('tbody a.hit').allInnerTexts();
const selected = (page, count) => page.locator('.selected', { hasText: new RegExp(`^${count} selected`) }).waitFor();
const press = async (page, keys) => {
  for (const key of keys) await page.keyboard.press(key);
};

const [site, browser] = siteAndBrowser({ prepare: () => site.grantOrders() });

describe('a list', () => {
  test('is where it was, with selection and focus, when the user comes back', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/hits?q=*&size=100');
    for (let i = 0; i < 60; ++i) await page.keyboard.press('j');
    await page.keyboard.press('x');
    await selected(page, 1);
    await page.keyboard.press('Enter');
    await page.waitForURL(/\/document\?/);
    await page.goBack();
    await page.waitForFunction(() => document.activeElement?.closest('tr')?.id === 'hit-60');
    const place = await page.locator('#hit-60').boundingBox();
    assert.ok(place.y >= 0 && place.y + place.height <= page.viewportSize().height);
    assert.ok(await page.locator('#hit-60 [name=hit]').isChecked());
  }));

  test('and its selection belong to one tab', () => browser.asUser(site, 'clerk', async (page, context) => {
    const other = await context.newPage();
    await Promise.all([page.goto('/hits?q=copper'), other.goto('/hits?q=copper')]);
    await rows(page).nth(0).locator('[name=hit]').check();
    await selected(page, 1);
    await other.goto('/hits?q=crane');
    await page.reload();
    await selected(page, 1);
    assert.equal(await page.locator('#q').inputValue(), 'copper');
    await other.goBack();
    await other.reload();
    await selected(other, 0);
    await other.close();
  }));

  test('is the same after a reload and for others with the same rights, and less for those with fewer', async () => {
    const seen = {};
    let url = '/hits?q=*&sort=1&order=down&size=1000';
    for (const name of ['clerk', 'administrator', 'reader']) {
      await browser.asUser(site, name, async (page) => {
        await page.goto(url);
        seen[name] = await titles(page);
        await page.reload();
        assert.deepEqual(await titles(page), seen[name]);
        await selected(page, 0);
        await rows(page).nth(0).locator('[name=hit]').check();
        await selected(page, 1);
        url = page.url();
      });
    }
    assert.deepEqual(seen.administrator, seen.clerk);
    assert.ok(seen.reader.length > 0 && seen.reader.length < seen.clerk.length / 2);
    assert.deepEqual(seen.reader.filter((each) => !seen.clerk.includes(each)), []);
  });

  test('has the columns and density that its user has chosen for the archive', async () => {
    const shown = async (page, place) => {
      await page.goto(`/hits?q=*&in=${place}`);
      const [, ...names] = await page.getByRole('columnheader').allInnerTexts();
      return [names.join(), (await page.locator('table.hits').getAttribute('class')).split(' ')[1]];
    };
    const usual = ['Title,Author,Date,Archive,Preview', 'comfortable'];
    const chosen = ['Date,Title,Archive,Preview', 'compact'];
    await browser.asUser(site, 'clerk', async (page) => {
      assert.deepEqual(await shown(page, 'Mail/Inbox'), usual);
      await page.locator('.list-view summary').click();
      await page.getByLabel('Author', { exact: true }).uncheck();
      await page.getByLabel('Position of Date').fill('1');
      await page.getByLabel('Compact').check();
      await page.getByRole('button', { name: 'Remember' }).click();
      assert.deepEqual(await shown(page, 'Mail/Inbox'), chosen);
      assert.deepEqual(await shown(page, 'Mail/Outbox'), usual);
    });
    await browser.asUser(site, 'reader', async (page) => assert.deepEqual(await shown(page, 'Mail/Inbox'), usual));
    await browser.asUser(site, 'clerk', async (page) => assert.deepEqual(await shown(page, 'Mail/Inbox'), chosen));
  });
});

describe('keys', () => {
  const list = '/hits?q=copper';
  const is = (selector) => (page) => page.locator(selector).waitFor({ timeout: 10000 });
  const text = `/document?${letter}&q=the`;
  // What is pressed on which page, and what is there then.
  const table = [
    ['/ goes to the query', list, ['j', '/'], is('#q:focus')],
    ['j and k move', list, ['j', 'j', 'j', 'k'], is('#hit-2.current a.hit:focus')],
    ['arrows move and stop at the end', list, ['ArrowDown', 'ArrowUp', 'ArrowUp'], is('#hit-1.current')],
    ['x selects, and takes back', list, ['j', 'x', 'j', 'x', 'x'], (page) => selected(page, 1)],
    ['space shows the preview of the row moved to', list, ['j', 'Space', 'j'], is('.preview[data-row=hit-2] h2')],
    ['space closes it again', list, ['j', 'Space', 'Space'], is('.beside:not(:has(.preview)) #hit-1 a.hit:focus')],
    ['Escape closes the preview', list, ['j', 'Space', 'Escape'], is('.beside:not(:has(.preview)) #hit-1 a.hit:focus')],
    ['Enter opens the document', list, ['j', 'j', 'Enter'], (page) => page.waitForURL(/\/document\?.*at=2/)],
    ['n and N go through the marks', text, ['n', 'n', 'N'], is('#hit-1:focus')],
    ['N begins with the last mark', text, ['N'], (page) => page.waitForFunction(() => {
      const marks = [...document.querySelectorAll('mark')];
      return marks.length > 1 && marks.at(-1) === document.activeElement;
    })],
    ['? shows the keys, Escape closes them', list, ['j', '?'], async (page) => {
      await is('dialog[open] kbd >> nth=0')(page);
      await page.keyboard.press('Escape');
      await is('body:not(:has(dialog)) #hit-1 a.hit:focus')(page);
    }],
    ['] opens the next page of a list', '/hits?q=*', [']'], (page) => page.waitForURL(/page=2/)],
    ['keys do nothing in a text field', list, ['j', '/', 'End', 'j', 'x', '?', 'n', ']', ' '], async (page) => {
      assert.equal(await page.locator('#q').inputValue(), 'copperjx?n] ');
      await is('#hit-1.current')(page);
    }],
    ['keys do nothing with Ctrl, Alt or Meta', list, ['Control+j', 'Alt+j', 'Meta+j', 'Alt+x'], (page) => current(page).count().then((count) => assert.equal(count, 0))],
  ];
  for (const [name, url, keys, check] of table) {
    test(name, () => browser.asUser(site, 'reader', async (page) => {
      await page.goto(url);
      await press(page, keys);
      await check(page);
    }));
  }

  test('[ and ] go from document to document, over the border of two pages of the list', () => browser.asUser(site, 'clerk', async (page) => {
    await page.goto('/hits?q=*');
    const first = (await titles(page)).at(-1);
    await page.getByRole('link', { name: 'Next', exact: true }).click();
    const second = (await titles(page))[0];
    await page.goBack();
    await rows(page).last().locator('a.hit').click();
    for (const [key, at, title, back] of [[']', 21, second, /page=2/], ['[', 20, first, /^(?!.*page=)/]]) {
      await page.keyboard.press(key);
      await page.waitForURL(new RegExp(`at=${at}&`));
      assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), title);
      assert.match(await page.locator('a.back').getAttribute('href'), back);
    }
    await page.locator('a.back').click();
    await page.waitForFunction(() => document.activeElement?.closest('tr')?.id === 'hit-20');
  }));

  test('can be switched off', () => browser.asUser(site, 'administrator', async (page) => {
    const change = async (isOn) => {
      await page.goto('/keys');
      await page.getByLabel('Use single keys').setChecked(isOn);
      await chief(page).click();
      await page.goto(list);
      await press(page, ['j', 'x', '?', '/']);
    };
    await change(false);
    assert.equal(await page.locator('tr.current, dialog, #q:focus').count(), 0);
    await change(true);
    assert.equal(await current(page).count(), 1);
  }));
});

describe('without scripts', () => {
  const create = async (page, place, title) => {
    await page.goto(`/create?in=${place}`);
    await page.locator('input[name=title]').fill(title);
    await page.locator('input[type=file]').setInputFiles({ name: 'file.txt', mimeType: 'text/plain', buffer: Buffer.from('stored') });
    for (const input of await page.locator('#document-form [required]:not([name=title])').all()) {
      if (await input.inputValue() === '') await input.fill('words');
    }
    await chief(page).click();
    assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), title);
  };
  for (const [name, hitCount] of [['administrator', 21], ['clerk', 21], ['reader', 8]]) {
    test(`the ${name} works as with them`, () => browser.asUser(site, name, async (page) => {
      await page.getByLabel('Query').fill('copper');
      await page.getByRole('main').getByRole('button', { name: 'Search' }).click();
      assert.equal(await rows(page).count(), Math.min(20, hitCount));
      await rows(page).nth(1).locator('[name=hit]').check();
      await page.getByRole('button', { name: 'Keep the selection' }).click();
      await selected(page, 1);
      await page.getByRole('button', { name: 'Select all' }).click();
      await selected(page, hitCount);
      await page.getByRole('link', { name: 'Title', exact: true }).click();
      await selected(page, hitCount);
      await rows(page).nth(0).locator('a.look').click();
      await page.getByRole('link', { name: 'Open the document' }).click();
      await page.goto(`/document?${letter}&q=price`);
      await page.getByRole('link', { name: 'Go to the first hit in the text' }).click();
      assert.equal(await page.locator('mark:target').innerText(), 'price');
      if (name === 'clerk') {
        await page.locator('#note').fill('A note without scripts');
        await page.getByRole('button', { name: 'Add the note' }).click();
        assert.match(await page.locator('.note').last().innerText(), /without scripts/);
        await create(page, 'Finance/Orders', 'Order without scripts');
        assert.match(await page.getByRole('main').innerText(), /file\.txt/);
        await page.locator('a[href*="/document/delete"]').click();
        await page.locator('main form [type=radio]').last().check();
        await page.locator('main form[method=post] button').first().click();
        assert.match(await page.getByRole('heading', { level: 1 }).innerText(), /Deleted/);
      }
      if (name === 'administrator') {
        await page.goto('/administration/add');
        await page.locator('input[name=name]').fill('scriptless');
        for (const input of await page.locator('main [type=password]').all()) await input.fill('scriptless-pass1');
        await chief(page).click();
        assert.equal(await page.getByRole('heading', { level: 1 }).innerText(), 'scriptless');
      }
    }, { javaScriptEnabled: false }));
  }

  test('the first paint is complete', () => browser.asUser(site, 'clerk', async (page) => {
    const look = async () => {
      await page.goto('/hits?q=copper&sel=00000000');
      return page.locator('body').evaluate((body) => [...body.querySelectorAll('*')].map((each) => each.tagName).join());
    };
    const whole = await look();
    await page.route('**/*.js', (route) => route.abort());
    assert.equal(await look(), whole);
  }));
});

describe('pages', () => {
  test('need less than 60 kB of style sheets and scripts', () => browser.asUser(site, 'clerk', async (page) => {
    const urls = new Set();
    for (const path of ['/hits?q=copper', '/create?in=Mail/Inbox']) {
      await page.goto(path);
      const here = await page.locator('link[rel=stylesheet], script[src]').evaluateAll((all) => all.map((each) => each.href || each.src));
      here.forEach((each) => urls.add(each));
    }
    const sizes = await Promise.all([...urls].map(async (url) => (await (await page.request.get(url)).body()).length));
    const sum = sizes.reduce((one, other) => one + other, 0);
    assert.ok(sizes.length >= 3 && sum > 10000 && sum < 60000, `${sizes.length} files with ${sum} bytes`);
  }));

  test('are printed without navigation and forms', () => browser.asUser(site, 'clerk', async (page) => {
    await page.emulateMedia({ media: 'print' });
    for (const path of ['/hits?q=copper', `/document?${letter}&q=price`, `/document?${letter}&view=print`]) {
      await page.goto(path);
      assert.ok(await page.getByRole('heading', { level: 1 }).isVisible());
      assert.equal(await page.locator(':is(nav, header, button, input, select, textarea):visible').count(), 0, path);
    }
  }));

  test('have no animation for users who prefer none', () => browser.asUser(site, 'clerk', async (page) => {
    await page.emulateMedia({ reducedMotion: 'reduce' });
    await page.goto('/hits?q=copper');
    await press(page, ['j', 'Space']);
    await page.locator('.preview h2').waitFor();
    const moving = await page.evaluate(() => [...document.querySelectorAll('*')].map((each) => getComputedStyle(each))
      .filter((style) => style.animationName !== 'none' || style.transitionDuration !== '0s' || style.scrollBehavior === 'smooth').length);
    assert.equal(moving, 0);
  }));
});
