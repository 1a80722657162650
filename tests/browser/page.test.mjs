// The page at work: view, pages, codes, settings.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import path from 'node:path';
import { after, before, test } from 'node:test';

import {
  kBarText, kQrText, morePictures, openPage, output, screenshot, startBrowser, startHost,
} from './host.mjs';

let host;
let browser;
let page;

before(async () => {
  host = await startHost();
  browser = await startBrowser();
  page = await openPage(browser, host);
});

after(async () => {
  await browser?.close();
  const { code, left } = await host.stop();
  assert.equal(code, 0, 'the server ends well');
  assert.deepEqual(left, [], 'no pages are left behind');
});


// Whether the picture leaves that place of the canvas (parts of its sides) to the surround.
const surroundIs = ([[x, y], wanted]) => {
  const canvas = document.getElementById('preview');
  const [red, green, blue] = canvas.getContext('2d')
    .getImageData(Math.floor(canvas.width * x), Math.floor(canvas.height * y), 1, 1).data;
  return [red, green, blue].every((value) => Math.abs(value - 0x30) < 4) === wanted;
};
const waitForSurround = (place) => page.waitForFunction(surroundIs, [place, true]);
const waitForPicture = (place) => page.waitForFunction(surroundIs, [place, false]);

// The brightness along the middle row.
const profile = () => page.evaluate(() => {
  const canvas = document.getElementById('preview');
  const row = canvas.getContext('2d')
    .getImageData(0, Math.floor(canvas.height / 2), canvas.width, 1).data;
  return Array.from({ length: canvas.width }, (_, x) => row[4 * x]);
});

// By how many pixels after shows what before showed further left.
function shiftBetween(before, after) {
  let best = { shift: 0, difference: Infinity };
  const reach = Math.floor(before.length / 3);
  for (let shift = -reach; shift <= reach; ++shift) {
    let difference = 0;
    for (let x = reach; x < before.length - reach; ++x) {
      difference += Math.abs(before[x - shift] - after[x]);
    }
    if (difference < best.difference) {
      best = { shift, difference };
    }
  }
  return best.shift;
}

const wheel = async (notches) => {
  await page.hover('#preview');
  await page.mouse.wheel(0, -40 * notches);
};
const wholeFrame = async () => {
  await page.click('#whole');
  await waitForSurround([0.02, 0.5]);
};
const pageIds = async () => (await host.state()).pages.map(({ id }) => id);
const takePage = async () => {
  const items = await page.locator('#pages li').count();
  await page.click('#capture');
  await page.waitForFunction((wanted) =>
    document.querySelectorAll('#pages li').length === wanted, items + 1);
};

test('the picture has the size of the page\'s area', async () => {
  const sizes = await page.evaluate(() => {
    const canvas = document.getElementById('preview');
    return [canvas.width, canvas.clientWidth, canvas.height, canvas.clientHeight];
  });
  assert.equal(sizes[0], sizes[1]);
  assert.equal(sizes[2], sizes[3]);
  await page.setViewportSize({ width: 1000, height: 700 });
  await page.waitForFunction(() => {
    const canvas = document.getElementById('preview');
    return canvas.width === canvas.clientWidth && canvas.height === canvas.clientHeight;
  });
  await page.setViewportSize({ width: 1400, height: 760 });
  await page.waitForFunction(() =>
    document.getElementById('preview').width === document.getElementById('preview').clientWidth);
});

test('the token leaves the address bar', () => {
  assert.equal(new URL(page.url()).search, '');
});

test('the wheel zooms and a double click shows the whole frame again', async () => {
  await wholeFrame();
  await wheel(30);
  await waitForPicture([0.02, 0.5]);
  await screenshot(page, 'zoomed');
  await page.dblclick('#preview');
  await waitForSurround([0.02, 0.5]);
});

test('a drag moves the picture as far as the hand', async () => {
  await page.click('#true-size');
  await wheel(20);
  await waitForPicture([0.02, 0.5]);
  await morePictures(page, 4);
  const before = await profile();
  const box = await page.locator('#preview').boundingBox();
  await page.mouse.move(box.x + 300, box.y + 200);
  await page.mouse.down();
  await page.mouse.move(box.x + 340, box.y + 200, { steps: 4 });
  await page.mouse.move(box.x + 360, box.y + 200, { steps: 4 });
  await page.mouse.up();
  await page.waitForFunction((old) => {
    const canvas = document.getElementById('preview');
    const row = canvas.getContext('2d')
      .getImageData(0, Math.floor(canvas.height / 2), canvas.width, 1).data;
    return old.some((value, x) => Math.abs(value - row[4 * x]) > 40);
  }, before);
  await morePictures(page, 6);
  const shift = shiftBetween(before, await profile());
  assert.ok(Math.abs(shift - 60) <= 4, `moved by ${shift} pixels`);
  await wholeFrame();
});

test('keys zoom, move and turn', async () => {
  await page.focus('#preview');
  await page.keyboard.press('1');
  for (let i = 0; i < 10; ++i) {
    await page.keyboard.press('+');
  }
  await waitForPicture([0.02, 0.5]);
  await page.keyboard.press('ArrowLeft');
  await page.keyboard.press('0');
  await waitForSurround([0.02, 0.5]);
  await page.keyboard.press('l');
  await page.waitForSelector('#preview[data-quarter-turns="3"]');
  await page.keyboard.press('r');
  await page.waitForSelector('#preview[data-quarter-turns="0"]');
});

test('turning right stands the picture upright', async () => {
  await wholeFrame();
  await waitForPicture([0.25, 0.5]);
  await page.click('#turn-right');
  await waitForSurround([0.2, 0.5]);
  await page.waitForSelector('#preview[data-quarter-turns="1"]');
  await screenshot(page, 'turned');
  await page.click('#turn-left');
  await waitForPicture([0.25, 0.5]);
});

test('codes in the live picture become text to copy', async () => {
  await page.click('#read-codes');
  await page.waitForFunction((texts) => {
    const shown = [...document.querySelectorAll('#codes input')].map((input) => input.value);
    return texts.every((text) => shown.includes(text));
  }, [kQrText, kBarText]);
});

test('settings reach the server and come back to every page', async () => {
  const other = await openPage(browser, host);
  await page.selectOption('#colour', 'grey');
  await page.check('#cleanBackground');
  await other.waitForFunction(() => document.getElementById('colour').value === 'grey' &&
    document.getElementById('cleanBackground').checked);
  await other.context().close();
  await page.selectOption('#colour', 'colour');
  await page.uncheck('#cleanBackground');
  await page.evaluate(() => document.getElementById('preview').focus());
});

test('a picture control changes the camera and is reset', async () => {
  const value = async () => (await host.state()).controls
    .find(({ name }) => name === 'brightness').value;
  await page.locator('#control-brightness').fill('20');
  await assertEventually(async () => await value() === 20);
  await page.click('button[title="Reset brightness"]');
  await assertEventually(async () => await value() === 0);
});

async function assertEventually(condition) {
  while (!await condition()) {
    await page.waitForTimeout(50);
  }
}

test('pages are taken, ordered, turned, deleted and made one PDF', async () => {
  await takePage();
  await takePage();
  await page.focus('#preview');
  await page.keyboard.press('Space');
  await page.waitForFunction(() => document.querySelectorAll('#pages li').length === 3);
  const [first, second, third] = await pageIds();
  await page.waitForFunction(() => [...document.querySelectorAll('#pages img')]
    .every((image) => image.complete && image.naturalWidth > 0));
  await screenshot(page, 'pages');

  // The third by hand to the front, then by key one place back.
  await page.locator('#pages li').nth(2).dragTo(page.locator('#pages li').nth(0));
  await assertEventually(async () => String(await pageIds()) === String([third, first, second]));
  await page.locator('#pages li').nth(0).focus();
  await page.keyboard.press('Alt+ArrowDown');
  await assertEventually(async () => String(await pageIds()) === String([first, third, second]));
  assert.match(await page.evaluate(() => document.activeElement.getAttribute('aria-label')),
    /^Page 2 of 3/, 'the focus moves with its page');
  assert.match(await page.textContent('#news'), /place 2 of 3/);

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
  const sizes = [...info.matchAll(/^Page +\d+ size: +(\d+) x (\d+)/gm)]
    .map(([, width, height]) => `${width}x${height}`);
  assert.deepEqual(sizes, ['1280x960', '960x1280', '1280x960']);

  await page.locator('#pages li').nth(1).focus();
  await page.keyboard.press('Delete');
  await assertEventually(async () => String(await pageIds()) === String([first, second]));
});

async function download(selector) {
  const [file] = await Promise.all([page.waitForEvent('download'), page.click(selector)]);
  return file;
}

test('a page taken cropped is the sheet alone', async () => {
  await page.check('#crop');
  await morePictures(page, 4);
  await takePage();
  const { pages } = await host.state();
  const cropped = pages.at(-1);
  assert.ok(cropped.height > cropped.width, `${cropped.width} x ${cropped.height}`);
  assert.ok(cropped.codes.includes(kQrText));
  await page.uncheck('#crop');
});

test('it fits a phone and the dark', async () => {
  for (const [name, options] of [
    ['phone', { viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true }],
    ['dark', { colorScheme: 'dark' }],
  ]) {
    const other = await openPage(browser, host, options);
    const wide = await other.evaluate(() =>
      document.documentElement.scrollWidth > document.documentElement.clientWidth);
    assert.ok(!wide, `${name}: nothing sticks out`);
    await screenshot(other, name);
    await other.context().close();
  }
});

test('everything that can be used has a name', async () => {
  const nameless = await page.evaluate(() => [...document.querySelectorAll(
    'button, a, input, select, canvas')].filter((element) => !element.closest('dialog') &&
    !(element.getAttribute('aria-label') || element.textContent.trim() ||
      element.labels?.length > 0)).map((element) => element.outerHTML));
  assert.deepEqual(nameless, []);
});

test('the page breaks none of its own rules', () => {
  assert.deepEqual(page.problems, []);
});
