// A camera that is unplugged and replugged, and viewers that cannot keep up.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import fs from 'node:fs';
import net from 'node:net';
import os from 'node:os';
import path from 'node:path';

import {
  check, delay, morePictures, openPage, pictureFits, picturesOf, screenshot, spawnHost, startHost,
  until,
} from './host.mjs';
import { browser, host, shareHost } from './session.mjs';

shareHost();

const bannerSays = (page, text) => page.waitForFunction((wanted) => {
  const banner = document.getElementById('banner');
  return !banner.hidden && banner.textContent.includes(wanted);
}, text);

check('an unplugged camera is told, and the picture comes back by itself', async () => {
  const page = await openPage(browser, host);
  assert.ok(await page.isHidden('#banner'));
  await host.unplug();
  await bannerSays(page, 'unplugged');
  await screenshot(page, 'unplugged');
  assert.equal((await host.state()).camera.plugged, false);
  await page.click('#capture');
  await page.waitForSelector('#capture[aria-disabled=false]');
  assert.deepEqual((await host.state()).pages, []);

  await host.plug();
  await page.waitForSelector('#banner', { state: 'hidden' });
  await morePictures(page, 5);
  await page.click('#capture');
  await page.waitForSelector('#pages li');
  await page.context().close();
});

// Requests the preview and reads nothing of it.
async function stalledViewer() {
  const socket = net.connect(host.port, '127.0.0.1');
  socket.on('error', () => {});
  socket.write(`GET /preview HTTP/1.1\r\nHost: 127.0.0.1:${host.port}\r\n` +
    `Authorization: Bearer ${host.token}\r\n\r\n`);
  await once(socket, 'readable');
  return socket;
}

const viewersAre = (count) => until(async () => (await host.state()).viewers === count);

// While there are two viewers: the longest run of polls without a new picture, and the best frame
// rate.
async function watchBoth(page) {
  let longest = 0;
  let best = 0;
  let silent = 0;
  let drawn = await picturesOf(page);
  for (let state = await host.state(); state.viewers === 2; state = await host.state()) {
    await delay(250);
    const now = await picturesOf(page);
    silent = now > drawn ? 0 : silent + 1;
    drawn = now;
    longest = Math.max(longest, silent);
    best = Math.max(best, state.rate.framesPerSecond);
  }
  return { longest, best };
}

check('a stalled viewer slows neither the other one nor the camera', async () => {
  await viewersAre(0);
  const page = await openPage(browser, host);
  await until(async () => (await host.state()).rate.framesPerSecond > 0);
  const alone = (await host.state()).rate.framesPerSecond;
  const socket = await stalledViewer();
  await viewersAre(2);
  // Ends when the stalled viewer is disconnected, after seconds without reading a byte.
  const { longest, best } = await watchBoth(page);
  assert.ok(longest < 10, `no new picture in ${longest} looks one after the other`);
  assert.ok(best > alone / 2, `${best} frames a second beside it, ${alone} without`);
  assert.equal((await host.state()).viewers, 1);
  socket.destroy();
  await page.context().close();
});

check('a viewer that left gives its seat back', async () => {
  const page = await openPage(browser, host);
  await viewersAre(1);
  await page.context().close();
  await viewersAre(0);
});

check('a viewer that left while there was no picture gives its seat back too', async () => {
  await viewersAre(0);
  await host.unplug();
  await until(async () => !(await host.state()).camera.plugged);
  const socket = await stalledViewer();
  await viewersAre(1);
  socket.destroy();
  await viewersAre(0);
  await host.plug();
});

check('a hidden page lets its connections go and takes them up again', async () => {
  await viewersAre(0);
  const page = await openPage(browser, host);
  const hide = (hidden) => page.evaluate((now) => {
    Object.defineProperty(document, 'hidden', { value: now, configurable: true });
    document.dispatchEvent(new Event('visibilitychange'));
  }, hidden);
  const shown = () => page.inputValue('#quality');
  await host.change({ quality: 50 });
  await until(async () => await shown() === '50');
  await hide(true);
  await viewersAre(0);
  await until(async () => (await host.state()).listeners === 0);
  await host.change({ quality: 60 });
  assert.equal(await shown(), '50');
  await hide(false);
  await until(async () => await shown() === '60');
  await morePictures(page, 3);
  await page.context().close();
});

check('the page that is used decides the size of the picture', async () => {
  const page = await openPage(browser, host, { viewport: { width: 1100, height: 700 } });
  const other = await openPage(browser, host, { viewport: { width: 900, height: 640 } });
  await pictureFits(other);
  await page.hover('#preview');
  await pictureFits(page);
  await page.context().close();
  await other.context().close();
});

check('it ends well when asked while it opens a camera', async () => {
  const { child, folder, ended } = spawnHost({
    args: ['--verbose'], stderr: 'pipe', faults: [{ fault: 'stall', at: 1 }],
  });
  let said = '';
  for await (const chunk of child.stderr) {
    const before = said.includes('openCamera OK');
    said += chunk;
    if (!before && said.includes('openCamera OK')) {
      child.kill('SIGTERM');
    }
  }
  const [code] = await ended;
  assert.ok(said.includes('openCamera OK'));
  assert.equal(code, 0);
  assert.deepEqual(fs.readdirSync(folder).filter((name) => name.startsWith('.doccam-')), []);
  fs.rmSync(folder, { recursive: true });
});

check('a window shows the picture again when the server was started anew', async () => {
  const state = fs.mkdtempSync(path.join(os.tmpdir(), 'doccam-state-'));
  const first = await startHost({ state });
  const page = await openPage(browser, first);
  await first.stop();
  await page.waitForSelector('#banner:visible');
  const second = await startHost({ state, args: ['--port', String(first.port)] });
  try {
    assert.equal(second.token, first.token);
    await page.waitForSelector('#banner', { state: 'hidden' });
    await morePictures(page, 3);
  } finally {
    await page.context().close();
    await second.stop();
    fs.rmSync(state, { recursive: true });
  }
});
