// Requests that are not the page's.
import assert from 'node:assert/strict';
import http from 'node:http';
import net from 'node:net';
import { after, before, test } from 'node:test';

import { openPage, startBrowser, startHost } from './host.mjs';

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

// One request as written; the status, or the reason why there was none, and the body.
function send(path, { method = 'GET', headers = {}, body, name = '127.0.0.1' } = {}) {
  return new Promise((resolve) => {
    const request = http.request({
      host: '127.0.0.1', port: host.port, method, path, agent: false,
      headers: { Host: `${name}:${host.port}`, ...headers },
    }, async (response) => {
      let text = '';
      for await (const chunk of response) {
        text += chunk;
      }
      resolve({ status: response.statusCode, text, headers: response.headers });
    });
    request.on('error', (error) => resolve({ status: error.code, text: '' }));
    request.end(body);
  });
}

const withToken = (path) => `${path}?token=${host.token}`;
const post = (path, body, headers = {}) => send(withToken(path), {
  method: 'POST', body, headers: { 'Content-Type': 'application/json', ...headers },
});

test('without the token nothing is answered', async () => {
  const wrong = 'f'.repeat(host.token.length);
  for (const path of ['/', '/style.css', '/preview', '/events', '/api/state', '/pages.pdf',
    '/pages/1.jpg', `/?token=${wrong}`, '/?token=', '/nothing']) {
    assert.equal((await send(path)).status, 403, path);
  }
  const wish = await send('/api/capture', {
    method: 'POST', body: '{}', headers: { 'Content-Type': 'application/json' },
  });
  assert.equal(wish.status, 403);
  const cookie = await send('/api/state', {
    headers: { Cookie: `doccam-${host.port}=${wrong}; other=1` },
  });
  assert.equal(cookie.status, 403);
});

test('a foreign name is refused though it leads here', async () => {
  for (const name of ['evil.example', 'localhost.evil.example', '127.0.0.1.evil.example',
    '192.168.1.7', '']) {
    assert.equal((await send(withToken('/'), { name })).status, 403, name);
  }
  const portless = await send(withToken('/'), { headers: { Host: '127.0.0.1' } });
  assert.equal(portless.status, 403);
  assert.equal((await send(withToken('/'), { name: 'localhost' })).status, 200);
});

test('a foreign origin is refused though it has the token', async () => {
  for (const origin of ['http://evil.example', 'null', `https://127.0.0.1:${host.port}`,
    'http://127.0.0.1:1', `http://localhost:${host.port}`]) {
    assert.equal((await post('/api/capture', '{}', { Origin: origin })).status, 403, origin);
  }
  const own = await post('/api/zoom', '{"steps": 0}', { Origin: `http://127.0.0.1:${host.port}` });
  assert.equal(own.status, 200);
});

test('a page of another port gets nothing with the browser\'s cookie', async () => {
  const neighbour = http.createServer((_, response) => {
    response.setHeader('Content-Type', 'text/html');
    response.end('<!doctype html><title>neighbour</title>');
  });
  await new Promise((resolve) => { neighbour.listen(0, '127.0.0.1', resolve); });
  const page = await openPage(browser, host);
  await page.goto(`http://127.0.0.1:${neighbour.address().port}/`);
  const seen = await page.evaluate(async (target) => {
    const image = new Image();
    const loaded = new Promise((resolve) => {
      image.onload = () => resolve('loaded');
      image.onerror = () => resolve('refused');
    });
    image.src = `${target}/preview`;
    const read = await fetch(`${target}/api/state`, { credentials: 'include' })
      .then(() => 'read', () => 'refused');
    await fetch(`${target}/api/capture`, {
      method: 'POST', mode: 'no-cors', credentials: 'include', body: '{}',
    }).catch(() => {});
    return [await loaded, read];
  }, `http://127.0.0.1:${host.port}`);
  assert.deepEqual(seen, ['refused', 'refused']);
  assert.deepEqual((await host.state()).pages, []);
  await page.context().close();
  neighbour.close();
});

test('paths lead to no files', async () => {
  for (const path of ['/../../etc/passwd', '/pages/../../etc/passwd', '//etc/passwd',
    '/pages/..%2f..%2fetc%2fpasswd.jpg', '/pages/%2e%2e/%2e%2e/etc/passwd', '/pages/1.jpg/../2',
    '/pages/99999999999999999999.jpg', '/pages/-1.jpg', '/pages/0.jpg', '/pages/1%00.jpg',
    '/main.js/..', '/api/../style.css', '/api/pages']) {
    const { status, text } = await send(withToken(path));
    assert.equal(status, 404, path);
    assert.ok(!text.includes('root:'), path);
  }
});

test('names in a command are not paths', async () => {
  const { status } = await post('/api/pages/delete', '{"id": "../../etc/passwd"}');
  assert.equal(status, 400);
});

test('a huge body is refused', async () => {
  const refused = [413, 'ECONNRESET', 'EPIPE'];
  const { status } = await post('/api/zoom', Buffer.alloc(100 * 1024, 32));
  assert.equal(status, 413);
  assert.ok(refused.includes((await post('/api/zoom', Buffer.alloc(50e6, 32))).status));
  const announced = await post('/api/zoom', '{}', { 'Content-Length': '99999999999999999999' });
  assert.ok([400, ...refused].includes(announced.status), String(announced.status));
  const chunked = await send(withToken('/api/zoom'), {
    method: 'POST', body: '{"steps": 0}',
    headers: { 'Content-Type': 'application/json', 'Transfer-Encoding': 'chunked' },
  });
  assert.ok([411, 'ECONNRESET'].includes(chunked.status), String(chunked.status));
});

test('a command that makes no sense is named as such', async () => {
  for (const body of ['', '[]', '{', '{"steps": 1e9}', '{"steps": "1"}', '{"to": "moon"}',
    '['.repeat(60000), '{"steps": null}', '{"steps": 1.5}']) {
    assert.equal((await post('/api/zoom', body)).status, 400, body.slice(0, 20));
  }
  assert.equal((await post('/api/nothing', '{}')).status, 404);
  assert.equal((await post('/api/zoom', '{"steps": 0}', { 'Content-Type': 'text/plain' })).status,
    415);
  assert.equal((await send(withToken('/api/zoom'), { method: 'DELETE' })).status, 405);
  assert.equal((await send(withToken(`/${'x'.repeat(600)}`))).status, 414);
});

test('every answer keeps to itself', async () => {
  for (const answer of [await send(withToken('/')), await send('/')]) {
    assert.equal(answer.headers['cache-control'], 'no-store');
    assert.equal(answer.headers['x-content-type-options'], 'nosniff');
    assert.match(answer.headers['content-security-policy'], /default-src 'none'/);
    assert.equal(answer.headers['access-control-allow-origin'], undefined);
  }
  assert.match((await send(withToken('/'))).headers['set-cookie'][0], /HttpOnly; SameSite=Strict/);
});

// The first line of the answer to a request for the preview, and the connection.
async function viewer() {
  const socket = net.connect(host.port, '127.0.0.1');
  socket.on('error', () => {});
  socket.write(`GET ${withToken('/preview')} HTTP/1.1\r\nHost: 127.0.0.1:${host.port}\r\n\r\n`);
  const chunk = await new Promise((resolve) => { socket.once('data', resolve); });
  return { socket, status: Number(/^HTTP\/1.1 (\d+)/.exec(String(chunk))[1]) };
}

test('too many viewers are sent away, and commands still work', async () => {
  const seated = [];
  let next = await viewer();
  for (; next.status === 200; next = await viewer()) {
    seated.push(next.socket);
  }
  assert.equal(next.status, 503);
  assert.equal(seated.length, 8);
  assert.equal((await post('/api/zoom', '{"steps": 0}')).status, 200);
  seated.forEach((socket) => socket.destroy());
  while ((await host.state()).viewers > 0) {
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
  const again = await viewer();
  assert.equal(again.status, 200);
  again.socket.destroy();
});
