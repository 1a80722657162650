// Requests that the page would never make.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import http from 'node:http';
import net from 'node:net';

import { check, openPage, startHost, until } from './host.mjs';
import { browser, host, shareHost } from './session.mjs';

shareHost();

// Sends one request verbatim; returns the status, or the reason why there was none, and the body.
function send(path, { method = 'GET', headers = {}, body, name = '127.0.0.1', to = host } = {}) {
  return new Promise((resolve) => {
    const request = http.request({
      host: '127.0.0.1', port: to.port, method, path, agent: false,
      headers: { Host: `${name}:${to.port}`, ...headers },
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

// The same with the token.
const ask = (path, { headers, to = host, ...rest } = {}) =>
  send(path, { ...rest, to, headers: { ...to.headers, ...headers } });
const post = (path, body, headers = {}) => ask(path, {
  method: 'POST', body, headers: { 'Content-Type': 'application/json', ...headers },
});
const ticketFor = async (path) => {
  const { text } = await post('/api/tickets', JSON.stringify({ for: path }));
  return `?ticket=${JSON.parse(text).ticket}`;
};

check('without the token the page alone is answered, which holds no secret', async () => {
  const wrong = 'f'.repeat(host.token.length);
  for (const path of ['/preview', '/events', '/api/state', '/pages.pdf', '/pages/1.jpg',
    `/api/state?token=${host.token}`, `/events?ticket=${wrong}`, '/events?ticket=', '/nothing']) {
    assert.equal((await send(path)).status, 403, path);
  }
  for (const path of ['/', '/main.js', '/style.css', '/icon.svg']) {
    const { status, text } = await send(path);
    assert.equal(status, 200, path);
    assert.ok(!text.includes(host.token), path);
  }
  const request = { method: 'POST', body: '{}', headers: { 'Content-Type': 'application/json' } };
  assert.equal((await send('/api/capture', request)).status, 403);
  assert.equal((await send('/api/tickets', request)).status, 403);
  for (const headers of [{ Cookie: `doccam-${host.port}=${host.token}` },
    { Authorization: `Bearer ${wrong}` }, { Authorization: `Basic ${host.token}` }]) {
    assert.equal((await send('/api/state', { headers })).status, 403);
  }
});

check('a ticket opens one address once', async () => {
  const ticket = await ticketFor('/api/state');
  assert.equal((await send(`/pages.pdf${ticket}`)).status, 403);
  assert.equal((await send(`/api/state${ticket}`)).status, 200);
  assert.equal((await send(`/api/state${ticket}`)).status, 403);
  assert.equal((await post('/api/tickets', '{"for": 7}')).status, 400);
});

check('a person who opens an address without access is told what to do', async () => {
  const refused = await send('/pages.pdf', { headers: { Accept: 'text/html' } });
  assert.equal(refused.status, 403);
  assert.match(refused.headers['content-type'], /^text\/html/);
  assert.match(refused.text, /open the address that the server printed/);
});

check('a foreign name is refused though it leads here', async () => {
  for (const name of ['evil.example', 'localhost.evil.example', '127.0.0.1.evil.example',
    '192.168.1.7', '']) {
    assert.equal((await ask('/', { name })).status, 403, name);
  }
  const portless = await ask('/', { headers: { Host: '127.0.0.1' } });
  assert.equal(portless.status, 403);
  assert.equal((await ask('/', { name: 'localhost' })).status, 200);
});

check('a foreign origin is refused though it has the token', async () => {
  for (const origin of ['http://evil.example', 'null', `https://127.0.0.1:${host.port}`,
    'http://127.0.0.1:1', `http://localhost:${host.port}`]) {
    assert.equal((await post('/api/capture', '{}', { Origin: origin })).status, 403, origin);
  }
  const own = await post('/api/zoom', '{"steps": 0}', { Origin: `http://127.0.0.1:${host.port}` });
  assert.equal(own.status, 200);
});

check('a page of another port gets nothing, and its server collects nothing', async () => {
  const collected = [];
  const neighbour = http.createServer(({ headers, url }, response) => {
    collected.push(url, ...Object.values(headers));
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
  assert.ok(collected.length > 0);
  assert.ok(!collected.some((text) => String(text).includes(host.token)));
  assert.deepEqual((await host.state()).pages, []);
  await page.context().close();
  neighbour.close();
});

check('paths lead to no files', async () => {
  for (const path of ['/../../etc/passwd', '/pages/../../etc/passwd', '//etc/passwd',
    '/pages/..%2f..%2fetc%2fpasswd.jpg', '/pages/%2e%2e/%2e%2e/etc/passwd', '/pages/1.jpg/../2',
    '/pages/99999999999999999999.jpg', '/pages/-1.jpg', '/pages/0.jpg', '/pages/1%00.jpg',
    '/main.js/..', '/api/../style.css', '/api/pages']) {
    const { status, text } = await ask(path);
    assert.equal(status, 404, path);
    assert.match(text, /^{"error":"there is (nothing|no) /, path);
  }
});

check('names in a command are not paths', async () => {
  const { status } = await post('/api/pages/delete', '{"id": "../../etc/passwd"}');
  assert.equal(status, 400);
});

check('pages that are not there are named as such', async () => {
  assert.equal((await post('/api/pages/delete', '{"id": 7}')).status, 404);
  assert.equal((await post('/api/pages/turn', '{"id": 7, "direction": "left"}')).status, 404);
  assert.equal((await post('/api/pages/order', '{"ids": [7]}')).status, 400);
});

check('a huge body is refused', async () => {
  const refused = [413, 'ECONNRESET', 'EPIPE'];
  const { status, text } = await post('/api/zoom', Buffer.alloc(100 * 1024, 32));
  assert.equal(status, 413);
  assert.equal(JSON.parse(text).error, 'the body is too long');
  assert.ok(refused.includes((await post('/api/zoom', Buffer.alloc(50e6, 32))).status));
  const announced = await post('/api/zoom', '{}', { 'Content-Length': '99999999999999999999' });
  assert.ok([400, ...refused].includes(announced.status), String(announced.status));
  const chunked = await ask('/api/zoom', {
    method: 'POST', body: '{"steps": 0}',
    headers: { 'Content-Type': 'application/json', 'Transfer-Encoding': 'chunked' },
  });
  assert.ok([411, 'ECONNRESET'].includes(chunked.status), String(chunked.status));
});

check('a command that makes no sense is named as such', async () => {
  for (const body of ['', '[]', '{', '{"steps": 1e9}', '{"steps": "1"}', '{"to": "moon"}',
    '['.repeat(60000), '{"steps": null}', '{"steps": 1.5}']) {
    assert.equal((await post('/api/zoom', body)).status, 400, body.slice(0, 20));
  }
  assert.equal((await post('/api/nothing', '{}')).status, 404);
  assert.equal((await post('/api/zoom', '{"steps": 0}', { 'Content-Type': 'text/plain' })).status,
    415);
  assert.equal((await ask('/api/zoom', { method: 'DELETE' })).status, 405);
  assert.equal((await ask(`/${'x'.repeat(600)}`)).status, 414);
});

check('every answer keeps to itself', async () => {
  for (const answer of [await send('/'), await ask('/api/state'), await send('/api/state')]) {
    assert.equal(answer.headers['cache-control'], 'no-store');
    assert.equal(answer.headers['x-content-type-options'], 'nosniff');
    assert.match(answer.headers['content-security-policy'], /default-src 'none'/);
    assert.equal(answer.headers['access-control-allow-origin'], undefined);
    assert.equal(answer.headers['set-cookie'], undefined);
  }
});

const connect = () => {
  const socket = net.connect(host.port, '127.0.0.1');
  socket.on('error', () => {});
  return socket;
};

// Everything the server sends in response to malformed bytes until it closes.
async function answerTo(bytes) {
  const socket = connect();
  let answer = '';
  socket.on('data', (chunk) => { answer += chunk; });
  socket.write(bytes);
  await once(socket, 'close');
  return answer;
}

check('a head without end is cut off', async () => {
  assert.match(await answerTo(`GET /${'x'.repeat(1e5)}`), /^HTTP.* 431/);
  assert.match(await answerTo('x'.repeat(1e5)), /^HTTP.* 400/);
  const headers = 'Cookie: a=b\r\n'.repeat(5000);
  assert.doesNotMatch(await answerTo(`GET / HTTP/1.1\r\n${headers}`), /^HTTP.* 200/);
  assert.match(await answerTo('nonsense\r\n\r\n'), /^HTTP.* 400[^]*no request that the server/);
});

check('clients that drip their requests keep nobody out', async () => {
  const dripping = Array.from({ length: 120 }, connect);
  let open = dripping.length;
  dripping.forEach((socket) => {
    socket.write('GET / HTTP/1.1\r\nX-Drip: ');
    socket.once('close', () => { --open; });
    socket.resume();
  });
  const drip = setInterval(() => dripping.forEach((socket) => socket.write('x')), 500);
  try {
    assert.equal((await ask('/api/state')).status, 200);
    await until(() => open === 0);
  } finally {
    clearInterval(drip);
    dripping.forEach((socket) => socket.destroy());
  }
});

// Requests an endless response; returns its status and the connection.
async function attend(path) {
  const socket = connect();
  socket.write(`GET ${path} HTTP/1.1\r\nHost: 127.0.0.1:${host.port}\r\n` +
    `Authorization: Bearer ${host.token}\r\n\r\n`);
  const [chunk] = await once(socket, 'data');
  return { socket, status: Number(/^HTTP\/1.1 (\d+)/.exec(String(chunk))[1]) };
}

for (const [path, kind, places] of [['/preview', 'viewers', 8], ['/events', 'listeners', 16]]) {
  check(`too many ${kind} are sent away, and commands still work`, async () => {
    const seatsTaken = async () => (await host.state())[kind];
    await until(async () => await seatsTaken() === 0);
    const seated = [];
    let next = await attend(path);
    for (; next.status === 200; next = await attend(path)) {
      seated.push(next.socket);
    }
    assert.equal(next.status, 503);
    assert.equal(seated.length, places);
    assert.equal((await post('/api/zoom', '{"steps": 0}')).status, 200);
    seated.forEach((socket) => socket.destroy());
    await until(async () => await seatsTaken() === 0);
    const again = await attend(path);
    assert.equal(again.status, 200);
    again.socket.destroy();
  });
}

check('beyond loopback it goes by numbers, but by no other name', async () => {
  const open = await startHost({ args: ['--listen', '0.0.0.0'] });
  try {
    const state = (name) => ask('/api/state', { name, to: open });
    assert.equal((await state('192.168.1.7')).status, 200);
    assert.equal((await state('localhost')).status, 200);
    assert.equal((await state('evil.example')).status, 403);
    assert.equal((await send('/api/state', { to: open })).status, 403);
  } finally {
    await open.stop();
  }
});
