// A running doccam serve on a virtual camera, and a browser to view it.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import net from 'node:net';
import os from 'node:os';
import path from 'node:path';
import readline from 'node:readline';
import { test } from 'node:test';

const build = process.env.DOCCAM_BUILD;
export const output = process.env.DOCCAM_BROWSER_OUTPUT;
const { chromium } = createRequire(path.join(output, 'package.json'))('playwright-core');

// A page that interpreted a code's text as markup would not show it verbatim.
export const kQrText = 'https://example.org/?a=1&b="<b>sheet</b>"';
export const kBarText = 'DOC-BROWSER-1';

// One camera without noise, so that pixels can be compared.
const scenarioWith = ({ scene = {}, faults = [] }) => ({
  cameras: [{
    intervalMs: 60,
    formats: [{ fourcc: 'MJPG', sizes: [[1280, 960]] }],
    scene: { angle: 4, noise: 0, qrText: kQrText, code128Text: kBarText, ...scene },
    faults,
  }],
});

const kTestPatience = 300000; // far beyond what any test needs
const kPatience = 90000;

// A test that fails instead of hanging.
export const check = (name, body) => test(name, { timeout: kTestPatience }, body);

export const delay = (ms) => new Promise((resolve) => { setTimeout(resolve, ms); });

// Waits for a condition.
export async function until(condition) {
  for (const end = Date.now() + kPatience; !await condition(); await delay(50)) {
    if (Date.now() > end) {
      throw new Error(`never true: ${condition}`);
    }
  }
}

// Starts the program under the virtual camera that the options describe, with a folder for its files.
export function spawnHost({ args = [], stderr = 'inherit', state, ...camera } = {}) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'doccam-browser-'));
  state ??= path.join(folder, 'state');
  const scenario = path.join(folder, 'scenario.json');
  const control = path.join(folder, 'control');
  fs.writeFileSync(scenario, JSON.stringify(scenarioWith(camera)));
  const child = spawn(path.join(build, 'doccam-virtualcam'),
    ['--scenario', scenario, '--', path.join(build, 'apps/doccam/doccam'), 'serve', ...args],
    { stdio: ['ignore', 'pipe', stderr],
      env: { ...process.env, DOCCAM_VIRTUALCAM_CONTROL: control, TMPDIR: folder, XDG_STATE_HOME: state } });
  return { child, folder, control, ended: once(child, 'exit') };
}

// Starts the server; plug() and unplug() control its camera, stop() ends it.
export async function startHost(options) {
  const { child, folder, control, ended } = spawnHost(options);
  const address = await firstAddress(child);
  const url = new URL(address);
  const token = url.hash.replace('#token=', '');
  const headers = { Authorization: `Bearer ${token}` };
  const steer = (line) => askLine(control, line);
  return {
    address,
    port: Number(url.port),
    origin: url.origin,
    token,
    headers,
    folder,
    plug: () => steer('plug 0'),
    unplug: () => steer('unplug 0'),
    state: async () => (await fetch(new URL('/api/state', url), { headers })).json(),
    change: (settings) => fetch(new URL('/api/settings', url), {
      method: 'POST', headers: { ...headers, 'Content-Type': 'application/json' },
      body: JSON.stringify(settings),
    }),
    async stop() {
      child.kill('SIGTERM');
      const [code] = await ended;
      const left = fs.readdirSync(folder).filter((name) => name.startsWith('.doccam-'));
      fs.rmSync(folder, { recursive: true });
      return { code, left };
    },
  };
}

async function firstAddress(child) {
  for await (const line of readline.createInterface({ input: child.stdout })) {
    const match = /^Open (http:\S+)$/.exec(line);
    if (match) {
      return match[1];
    }
  }
  throw new Error('doccam serve ended without an address');
}

async function askLine(socketPath, line) {
  const socket = net.connect(socketPath);
  socket.write(`${line}\n`);
  let answer = '';
  for await (const chunk of socket) {
    answer += chunk;
  }
  if (answer.trim() !== 'ok') {
    throw new Error(`${line}: ${answer}`);
  }
}

export function startBrowser() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    args: ['--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage'],
    timeout: 120000,
  });
}

// Errors in the windows of this file's tests.
export const problems = [];

// The browser logs every error response; only other problems count.
export function forgetRefusals() {
  const others = problems.filter((text) => !/status of 409/.test(text));
  problems.splice(0, problems.length, ...others);
}

// Runs in the page: counts the pictures that it draws.
function countPictures() {
  window.drawnPictures = 0;
  const draw = CanvasRenderingContext2D.prototype.drawImage;
  CanvasRenderingContext2D.prototype.drawImage = function counted(...picture) {
    draw.apply(this, picture);
    ++window.drawnPictures;
  };
}

// A window that shows the host's page with a live picture.
export async function openPage(browser, host, options = {}) {
  const context = await browser.newContext({
    viewport: { width: 1400, height: 760 }, acceptDownloads: true, ...options,
  });
  context.setDefaultTimeout(kPatience);
  await context.addInitScript(countPictures);
  const page = await context.newPage();
  page.on('pageerror', (error) => problems.push(String(error)));
  page.on('console', (message) => message.type() === 'error' && problems.push(message.text()));
  await page.goto(host.address);
  await morePictures(page, 3);
  return page;
}

export const picturesOf = (page) => page.evaluate(() => window.drawnPictures);

// Waits until count more pictures are drawn.
export async function morePictures(page, count) {
  const before = await picturesOf(page);
  await page.waitForFunction((wanted) => window.drawnPictures >= wanted, before + count);
}

// Waits until the picture has the size of its place on the page.
export const pictureFits = (page) => page.waitForFunction(() => {
  const canvas = document.getElementById('preview');
  return canvas.width === canvas.clientWidth && canvas.height === canvas.clientHeight;
});

export function screenshot(page, name) {
  return page.screenshot({ path: path.join(output, `${name}.png`) });
}
