// The tray of pages: taken, ordered, turned, deleted, downloaded, cropped.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import path from 'node:path';

import {
  check, forgetRefusals, kQrText, morePictures, openPage, output, pictureFits, problems,
  screenshot, startHost, until,
} from './host.mjs';
import { browser, host, page, shareWindow } from './session.mjs';

shareWindow();

const pageIds = async () => (await host.state()).pages.map(({ id }) => id);
const ordered = (...ids) => until(async () => String(await pageIds()) === String(ids) &&
  String(await page.evaluate(() => [...document.querySelectorAll('#pages img')]
    .map((image) => /\d+/.exec(image.dataset.shows)[0]))) === String(ids));
const takePage = async () => {
  const items = await page.locator('#pages li').count();
  await page.click('#capture');
  await page.waitForFunction((wanted) =>
    document.querySelectorAll('#pages li').length === wanted, items + 1);
  // The page's event may precede the response, and until the response no other page can be taken.
  await page.waitForSelector('#capture:not([aria-disabled=true])');
};

check('pages are taken, ordered, turned, deleted and made one PDF', async () => {
  await host.change({ crop: false });
  await takePage();
  await takePage();
  await page.focus('#preview');
  await page.keyboard.press('Space');
  await page.waitForFunction(() => document.querySelectorAll('#pages li').length === 3);
  assert.equal(await page.evaluate(() => document.activeElement.id), 'preview');
  const [first, second, third] = await pageIds();
  await page.waitForFunction(() => [...document.querySelectorAll('#pages img')]
    .every((image) => image.complete && image.naturalWidth > 0));
  await showForTheReadme();

  // Drags the third page to the front, then moves it back one place by key.
  await page.locator('#pages li').nth(2).dragTo(page.locator('#pages li').nth(0));
  await ordered(third, first, second);
  await page.locator('#pages li').nth(0).focus();
  await page.keyboard.press('Alt+ArrowDown');
  await ordered(first, third, second);
  assert.match(await page.evaluate(() => document.activeElement.getAttribute('aria-label')),
    /^Page 2 of 3/, 'the focus moves with its page');
  await until(async () => /place 2 of 3/.test(await page.textContent('#news')));

  await page.click('#pages li:nth-child(2) [data-does=right]');
  await page.waitForFunction(() => {
    const image = document.querySelector('#pages li:nth-child(2) img');
    return image.complete && image.naturalHeight > image.naturalWidth;
  });

  const single = await download('#pages li:nth-child(2) [data-does=download]');
  assert.equal(single.suggestedFilename(), 'page-2.jpg');

  const pdf = await download('#pdf');
  assert.equal(pdf.suggestedFilename(), 'pages.pdf');
  const file = path.join(output, 'pages.pdf');
  await pdf.saveAs(file);
  const info = execFileSync('pdfinfo', ['-l', '9', file], { encoding: 'utf8' });
  assert.match(info, /^Pages: +3$/m);
  const shapes = [...info.matchAll(/^Page +\d+ size: +([\d.]+) x ([\d.]+)/gm)]
    .map(([, width, height]) => (Number(width) / Number(height)).toFixed(2));
  assert.deepEqual(shapes, ['1.33', '0.75', '1.33']);

  await page.locator('#pages li').nth(1).focus();
  await page.keyboard.press('Delete');
  await ordered(first, second);
  await until(async () => await page.textContent('#news') === 'Page deleted');
  await until(() => page.evaluate(() =>
    /^Page 2 of 2/.test(document.activeElement.getAttribute('aria-label'))));
});

// Makes docs/browser.png.
async function showForTheReadme() {
  await page.evaluate(() => document.querySelector('aside').scrollTo(0, 0));
  await page.setViewportSize({ width: 900, height: 560 });
  await pictureFits(page);
  await screenshot(page, 'browser');
  await page.setViewportSize({ width: 1400, height: 760 });
  await pictureFits(page);
}

check('held keys take one page and the button keeps the focus', async () => {
  const before = (await pageIds()).length;
  let asked = 0;
  let answer;
  const answered = new Promise((resolve) => { answer = resolve; });
  await page.route('**/api/capture', async (route) => {
    ++asked;
    await answered;
    await route.continue();
  });
  await page.focus('#preview');
  for (let i = 0; i < 5; ++i) { // the first goes down, the others repeat it
    await page.keyboard.down('Space');
  }
  await page.keyboard.up('Space');
  await page.focus('#capture');
  await page.keyboard.press('Enter');
  answer();
  await page.waitForSelector('#capture[aria-disabled=false]');
  assert.equal(asked, 1);
  assert.equal((await pageIds()).length, before + 1);
  assert.equal(await page.evaluate(() => document.activeElement.id), 'capture');
  await page.unroute('**/api/capture');
});

check('what was refused is not announced as done', async () => {
  await page.evaluate(() => { document.getElementById('news').textContent = ''; });
  await page.route('**/api/pages/*', (route) => route.fulfill({
    status: 409, contentType: 'application/json',
    body: JSON.stringify({ error: `refused: ${new URL(route.request().url()).pathname}` }),
  }));
  const ids = String(await pageIds());
  for (const [tool, name] of [['later', 'order'], ['delete', 'delete']]) {
    await page.click(`#pages li:nth-child(1) [data-does=${tool}]`);
    await page.waitForFunction((text) => document.getElementById('banner').textContent === text,
      `refused: /api/pages/${name}`);
  }
  assert.equal(await page.textContent('#news'), '');
  assert.equal(String(await pageIds()), ids);
  await page.unroute('**/api/pages/*');
  forgetRefusals();
});

async function download(selector) {
  const [file] = await Promise.all([page.waitForEvent('download'), page.click(selector)]);
  return file;
}

check('a page taken cropped is the sheet alone', async () => {
  await page.check('#crop');
  await morePictures(page, 4);
  await takePage();
  const { pages } = await host.state();
  const cropped = pages.at(-1);
  assert.ok(cropped.height > cropped.width, `${cropped.width} x ${cropped.height}`);
  assert.ok(cropped.codes.includes(kQrText));
  await page.uncheck('#crop');
});

check('no page is cropped where no sheet lies', async () => {
  const empty = await startHost({ scene: { sheetHeight: 0.05 } }); // a scrap
  try {
    const other = await openPage(browser, empty);
    await other.check('#crop');
    await until(async () => (await empty.state()).settings.crop);
    await other.click('#capture');
    await other.waitForSelector('#banner:visible');
    assert.match(await other.textContent('#banner'), /^no sheet was found; lay one/);
    assert.deepEqual((await empty.state()).pages, []);
    await other.uncheck('#crop');
    await other.click('#capture');
    await other.waitForSelector('#pages li');
    assert.equal((await empty.state()).pages[0].width, 1280);
    await other.context().close();
  } finally {
    await empty.stop();
  }
  forgetRefusals();
});

check('the page breaks none of its own rules', () => {
  assert.deepEqual(problems, []);
});
