// The page in use: view, codes, settings, layout.
import assert from 'node:assert/strict';

import {
  check, kBarText, kQrText, morePictures, openPage, pictureFits, problems, screenshot, until,
} from './host.mjs';
import { browser, host, page, shareWindow } from './session.mjs';

shareWindow();

// Whether that point of the canvas, in fractions of its sides, shows the surround.
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

// By how many pixels the content of before has moved to the right in after.
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

// Waits until the content of before has moved to the right by that many pixels.
const movedTo = (before, pixels) =>
  until(async () => Math.abs(shiftBetween(before, await profile()) - pixels) <= 4);

const wheel = async (notches) => {
  await page.hover('#preview');
  await page.mouse.wheel(0, -40 * notches);
};
const wholeFrame = async () => {
  await page.click('#whole');
  await waitForSurround([0.02, 0.5]);
};
const newsAre = (text) => until(async () => text.test(await page.textContent('#news')));
const turnedBy = (turns) => until(async () => (await host.state()).view.quarterTurns === turns);

check('the picture has the size of the page\'s area', async () => {
  await pictureFits(page);
  await page.setViewportSize({ width: 1000, height: 700 });
  await pictureFits(page);
  await page.setViewportSize({ width: 1400, height: 760 });
  await pictureFits(page);
});

check('the token leaves the address bar', () => {
  const { search, hash } = new URL(page.url());
  assert.deepEqual([search, hash], ['', '']);
});

check('another window is let in while one shows the picture', async () => {
  const other = await page.context().newPage();
  await other.goto(host.origin);
  await morePictures(other, 3);
  assert.ok(await other.isHidden('#refusal'));
  await other.close();
});

check('a window without access says what to do, and is let in with the address', async () => {
  const context = await browser.newContext();
  const other = await context.newPage();
  await other.goto(host.origin);
  await other.waitForSelector('#refusal:visible');
  assert.match(await other.textContent('#refusal'), /Open the address that doccam serve printed/);
  assert.ok(await other.isHidden('#capture'));
  await screenshot(other, 'refused');
  await other.goto(`${host.origin}/#token=${host.token}`); // changing only the fragment loads nothing
  await other.waitForSelector('#capture:visible');
  await context.close();
});

check('a window with a wrong token says what to do', async () => {
  const context = await browser.newContext();
  const other = await context.newPage();
  await other.goto(`${host.origin}/#token=${'f'.repeat(64)}`);
  await other.waitForSelector('#refusal:visible');
  assert.equal(await other.evaluate(() => sessionStorage.length), 0);
  await context.close();
});

check('the wheel zooms and a double click shows the whole frame again', async () => {
  await wholeFrame();
  await wheel(30);
  await waitForPicture([0.02, 0.5]);
  await screenshot(page, 'zoomed');
  await page.dblclick('#preview');
  await waitForSurround([0.02, 0.5]);
});

check('a drag moves the picture as far as the hand', async () => {
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
  await movedTo(before, 60);
  await wholeFrame();
});

check('keys zoom, move and turn', async () => {
  await page.focus('#preview');
  await page.keyboard.press('1');
  for (let i = 0; i < 10; ++i) {
    await page.keyboard.press('+');
  }
  await waitForPicture([0.02, 0.5]);
  await morePictures(page, 4);
  const before = await profile();
  await page.keyboard.press('ArrowLeft');
  await movedTo(before, 60);
  await page.keyboard.press('ArrowRight');
  await movedTo(before, 0);
  await page.keyboard.press('0');
  await waitForSurround([0.02, 0.5]);
  await page.keyboard.press('l');
  await turnedBy(3);
  await page.keyboard.press('r');
  await turnedBy(0);
});

check('turning right stands the picture upright', async () => {
  await wholeFrame();
  await waitForPicture([0.25, 0.5]);
  await page.click('#turn-right');
  await waitForSurround([0.2, 0.5]);
  await turnedBy(1);
  await screenshot(page, 'turned');
  await page.click('#turn-left');
  await waitForPicture([0.25, 0.5]);
});

check('codes in the live picture become text to copy', async () => {
  await page.click('#read-codes');
  await page.waitForFunction((texts) => {
    const shown = [...document.querySelectorAll('#codes input')].map((input) => input.value);
    return texts.every((text) => shown.includes(text));
  }, [kQrText, kBarText]);
});

check('a code is copied as it is', async () => {
  await page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await page.click('button[aria-label="Copy QR code text"]');
  await until(() => page.evaluate((text) => navigator.clipboard.readText()
    .then((copied) => copied === text), kQrText));
  await newsAre(/^Copied$/);
});

const framedCodes = () => page.$$eval('#outline g polygon', (lines) => lines.map((line) => {
  const points = line.getAttribute('points').split(' ').map((point) => point.split(',').map(Number));
  return points.flat().every(Number.isFinite) && points.length === 4;
}));
const eventSource = () => host.state().then((state) => state.liveCodes);

check('the switch keeps looking for codes, which are framed, and nobody looks without it', async () => {
  assert.equal(await eventSource(), null);
  await page.check('#keep-looking');
  await until(async () => (await framedCodes()).length === 2);
  assert.deepEqual(await framedCodes(), [true, true]);
  await newsAre(/^Keep looking for codes: on$/);
  const codes = await eventSource();
  assert.deepEqual(codes.map((code) => code.text).sort(), [kBarText, kQrText].sort());
  assert.deepEqual(codes.map((code) => code.symbology).sort(), ['code-128', 'qr-code']);
  await screenshot(page, 'codes');
  await page.focus('#preview');
  await page.keyboard.press('k');
  await until(async () => (await framedCodes()).length === 0);
  await until(async () => await eventSource() === null);
});

check('another window sees no codes that it has not asked for', async () => {
  const other = await openPage(browser, host);
  await other.check('#keep-looking');
  await until(async () => (await eventSource())?.length === 2);
  await morePictures(page, 2);
  assert.deepEqual(await framedCodes(), []);
  await other.context().close(); // and with it the looking
  await until(async () => await eventSource() === null);
});

check('a code that is an address of the web is a link, and no other', async () => {
  await page.click('#read-codes');
  await page.waitForSelector('#codes a');
  const links = await page.$$eval('#codes a', (all) => all.map(
    ({ href, target, rel, textContent }) => ({ href, target, rel, textContent })));
  assert.deepEqual(links, [{
    href: new URL(kQrText).href, target: '_blank', rel: 'noopener noreferrer', textContent: 'Open',
  }]);
  assert.equal(await page.$$eval('#codes b', (all) => all.length), 0);
});

check('codes are listed with the pages that show them', async () => {
  await page.click('#capture');
  await page.waitForFunction(() => [...document.querySelectorAll('#codes .where')]
    .some((where) => /live picture, page 1/.test(where.textContent)));
  await page.click('button[aria-label="Delete page 1"]');
  await page.waitForFunction(() => ![...document.querySelectorAll('#codes .where')]
    .some((where) => /page/.test(where.textContent)));
});

check('letters change what pages become', async () => {
  const settings = async () => (await host.state()).settings;
  await host.change({ crop: false });
  await page.waitForFunction(() => !document.getElementById('crop').checked);
  await page.focus('#preview');
  await page.keyboard.press('m');
  await until(async () => (await settings()).colour === 'grey');
  for (const [key, flag] of [['c', 'crop'], ['e', 'cleanEdges'], ['w', 'cleanBackground']]) {
    await page.keyboard.press(key);
    await until(async () => (await settings())[flag]);
    await newsAre(/: on$/);
    await page.keyboard.press(key);
    await until(async () => !(await settings())[flag]);
  }
  await page.keyboard.press('q');
  await until(async () => (await settings()).quality === 90);
  await page.keyboard.press('Shift+Q');
  await until(async () => (await settings()).quality === 85);
  await page.keyboard.press('m');
  await page.keyboard.press('m');
  await until(async () => (await settings()).colour === 'colour');
  await host.change({ crop: true });
});

// The corners of the drawn sheet, in fractions of the frame.
function sheetCorners() {
  const [width, height] = [1280, 960];
  const tall = 0.8 * height;
  const wide = tall * 210 / 297;
  const angle = 4 * Math.PI / 180;
  return [[-1, -1], [1, -1], [1, 1], [-1, 1]].map(([right, down]) => {
    const [x, y] = [right * wide / 2, down * tall / 2];
    return [0.5 + (x * Math.cos(angle) - y * Math.sin(angle)) / width,
      0.5 + (x * Math.sin(angle) + y * Math.cos(angle)) / height];
  });
}

check('the sheet is outlined by lines over the picture, wherever that lies', async () => {
  await until(async () => (await host.state()).sheet !== null);
  const outlined = async () => {
    const { place, view } = await host.state();
    const box = await page.locator('#outline').getAttribute('viewBox');
    const points = await page.locator('#outline polygon').getAttribute('points');
    const seen = (points ?? '').split(' ').map((point) => point.split(',').map(Number));
    return box === `0 0 ${view.width} ${view.height}` && sheetCorners().every(([x, y], i) =>
      Math.abs(seen[i]?.[0] - place.x - x * place.width) < 0.01 * place.width &&
      Math.abs(seen[i]?.[1] - place.y - y * place.height) < 0.01 * place.height);
  };
  await until(outlined);
  await screenshot(page, 'outline');
  const { place } = await host.state();
  await page.click('#zoom-in');
  await until(async () => (await host.state()).place.width > place.width);
  await until(outlined);
  await page.click('#whole');
  await until(async () => (await host.state()).place.width === place.width);
});

check('a page has the look that is chosen', async () => {
  const look = async () => (await host.state()).settings.look;
  assert.equal(await look(), 'paper');
  await page.selectOption('#look', 'photo');
  await until(async () => await look() === 'photo');
  await page.selectOption('#look', 'paper');
  await until(async () => await look() === 'paper');
});

check('Tab alone reaches everything, and the focus is seen', async () => {
  const wanted = await page.evaluate(() => [...document.querySelectorAll(
    'canvas, button, input, select, a, [tabindex]')]
    .filter((element) => element.checkVisibility() && !element.closest('dialog'))
    .map((element) => element.outerHTML));
  assert.ok(wanted.length > 15);
  await page.focus('#preview');
  const reached = new Set();
  for (let i = 0; i <= wanted.length; ++i) { // tabbing round passes the body
    await page.keyboard.press('Tab');
    const [html, outline] = await page.evaluate(() => [document.activeElement.outerHTML,
      getComputedStyle(document.activeElement).outlineStyle]);
    assert.ok(html.startsWith('<body') || outline !== 'none', html);
    reached.add(html);
  }
  assert.deepEqual(wanted.filter((html) => !reached.has(html)), []);
  await page.focus('#preview');
});

check('settings reach the server and come back to every page', async () => {
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

check('what was set stays in sight until the server has answered', async () => {
  const other = await openPage(browser, host);
  let answer;
  const answered = new Promise((resolve) => { answer = resolve; });
  await page.route('**/api/settings', async (route) => {
    await answered;
    await route.continue();
  });
  await page.selectOption('#colour', 'bw');
  await host.change({ quality: 70 });
  await until(async () => await other.inputValue('#quality') === '70');
  await morePictures(page, 2);
  assert.equal(await page.inputValue('#colour'), 'bw');
  answer();
  await until(async () => await page.inputValue('#quality') === '70');
  assert.equal(await page.inputValue('#colour'), 'bw');
  assert.equal((await host.state()).settings.colour, 'bw');
  await page.unroute('**/api/settings');
  await host.change({ colour: 'colour', quality: 85 });
  await page.waitForFunction(() => document.getElementById('colour').value === 'colour');
  await other.context().close();
});

check('a picture control changes the camera and is reset', async () => {
  const value = async () => (await host.state()).controls
    .find(({ name }) => name === 'brightness').value;
  await page.locator('#control-brightness').fill('20');
  await until(async () => await value() === 20);
  await page.click('button[title="Reset brightness"]');
  await until(async () => await value() === 0);
});

// Elements that overflow the window sideways or are too small for a finger.
function misfits() {
  return [...document.querySelectorAll('button, a, select, input, canvas, p, h2')]
    .filter((element) => element.checkVisibility() && !element.matches('.unseen'))
    .filter((element) => {
      const { left, right, width, height } = element.getBoundingClientRect();
      const small = element.matches('button, a, select') && (width < 38 || height < 38);
      return left < 0 || right > document.documentElement.clientWidth || small;
    })
    .map((element) => element.outerHTML);
}

check('it fits a phone and the dark', async () => {
  await page.click('#capture');
  await page.waitForSelector('#pages li');
  for (const [name, options] of [
    ['phone', { viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true }],
    ['dark', { colorScheme: 'dark' }],
  ]) {
    const other = await openPage(browser, host, options);
    assert.deepEqual(await other.evaluate(misfits), [], name);
    await screenshot(other, name);
    await other.context().close();
  }
});

check('alarms can be read in the light and in the dark', async () => {
  for (const colorScheme of ['light', 'dark']) {
    await page.emulateMedia({ colorScheme });
    const colours = await page.evaluate(() => {
      const { color, backgroundColor } = getComputedStyle(document.getElementById('banner'));
      return [color, backgroundColor].map((text) => text.match(/\d+/g).map(Number));
    });
    const light = ([red, green, blue]) => {
      const part = (value) => (value <= 10 ? value / 3295 : ((value / 255 + 0.055) / 1.055) ** 2.4);
      return 0.2126 * part(red) + 0.7152 * part(green) + 0.0722 * part(blue);
    };
    const [dark, bright] = colours.map(light).sort((a, b) => a - b);
    assert.ok((bright + 0.05) / (dark + 0.05) >= 4.5, colorScheme);
  }
  await page.emulateMedia({ colorScheme: null });
});

check('everything that can be used has a name', async () => {
  const nameless = await page.evaluate(() => [...document.querySelectorAll(
    'button, a, input, select, canvas')].filter((element) => !element.closest('dialog') &&
    !(element.getAttribute('aria-label') || element.textContent.trim() ||
      element.labels?.length > 0)).map((element) => element.outerHTML));
  assert.deepEqual(nameless, []);
});

check('the page breaks none of its own rules', () => {
  assert.deepEqual(problems, []);
});
