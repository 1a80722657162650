// A camera that comes and goes, and viewers that do not keep up.
import assert from 'node:assert/strict';
import net from 'node:net';
import { after, before, test } from 'node:test';

import { morePictures, openPage, screenshot, startBrowser, startHost } from './host.mjs';

let host;
let browser;

before(async () => {
  host = await startHost();
  browser = await startBrowser();
});

after(async () => {
  await browser?.close();
  await host?.stop();
});

test('an unplugged camera is told, and the picture comes back by itself', async () => {
  const page = await openPage(browser, host);
  assert.ok(await page.isHidden('#banner'));
  await host.unplug();
  await page.waitForSelector('#banner:visible');
  assert.match(await page.textContent('#banner'), /unplugged/);
  await screenshot(page, 'unplugged');
  assert.equal((await host.state()).camera.plugged, false);
  await page.click('#capture');
  await page.waitForFunction(() => !document.getElementById('capture').disabled);

  await host.plug();
  await page.waitForSelector('#banner', { state: 'hidden' });
  await morePictures(page, 5);
  await page.click('#capture');
  await page.waitForSelector('#pages li');
  await page.context().close();
});

// Asks for the preview and then reads nothing of it.
async function stalledViewer() {
  const socket = net.connect(host.port, '127.0.0.1');
  socket.write(`GET /preview?token=${host.token} HTTP/1.1\r\nHost: 127.0.0.1:${host.port}\r\n\r\n`);
  await new Promise((resolve) => { socket.once('readable', resolve); });
  return socket;
}

test('a stalled viewer slows neither the other one nor the camera', async () => {
  const page = await openPage(browser, host);
  await morePictures(page, 10);
  const before = Date.now();
  await morePictures(page, 40);
  const alone = Date.now() - before;

  const socket = await stalledViewer();
  socket.on('error', () => {});
  const start = Date.now();
  await morePictures(page, 40);
  const beside = Date.now() - start;
  assert.ok(beside < 3 * alone, `40 pictures took ${alone} ms alone and ${beside} ms beside it`);
  assert.ok((await host.state()).rate.framesPerSecond > 0);
  socket.destroy();
  await page.context().close();
});

test('a viewer that left gives its seat back', async () => {
  const page = await openPage(browser, host);
  await page.context().close();
  while ((await host.state()).viewers > 0) {
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
});

test('a viewer that left while there was no picture gives its seat back too', async () => {
  await host.unplug();
  const socket = await stalledViewer();
  while ((await host.state()).viewers === 0) {
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
  socket.destroy();
  while ((await host.state()).viewers > 0) {
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
  await host.plug();
});
