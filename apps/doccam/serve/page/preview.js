// The live picture: drawing, zooming and panning.
import { command, merging, request } from './connection.js';

const kPixelsPerNotch = 40;
const kRetryMs = 1000;
const kSettleMs = 150;
const kFailuresToTell = 3;

const delay = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

function joined(first, second) {
  const bytes = new Uint8Array(first.length + second.length);
  bytes.set(first);
  bytes.set(second, first.length);
  return bytes;
}

function headEnd(bytes) {
  for (let i = 0; i + 3 < bytes.length; ++i) {
    if (bytes[i] === 13 && bytes[i + 1] === 10 && bytes[i + 2] === 13 && bytes[i + 3] === 10) {
      return i;
    }
  }
  return -1;
}

// The pictures of a multipart body.
async function* picturesOf(body) {
  const reader = body.getReader();
  let bytes = new Uint8Array(0);
  const more = async () => {
    const { done, value } = await reader.read();
    if (done) {
      throw new Error('the stream has ended');
    }
    bytes = joined(bytes, value);
  };
  for (;;) {
    let end;
    while ((end = headEnd(bytes)) < 0) {
      await more();
    }
    const head = new TextDecoder().decode(bytes.subarray(0, end));
    const length = Number(/Content-Length: (\d+)/i.exec(head)[1]);
    const start = end + 4;
    while (bytes.length < start + length) {
      await more();
    }
    yield bytes.slice(start, start + length);
    bytes = bytes.slice(start + length);
  }
}

async function draw(canvas, jpeg) {
  const picture = await createImageBitmap(new Blob([jpeg], { type: 'image/jpeg' }));
  if (canvas.width !== picture.width || canvas.height !== picture.height) {
    canvas.width = picture.width;
    canvas.height = picture.height;
  }
  canvas.getContext('2d').drawImage(picture, 0, 0);
  picture.close();
}

// Shows the stream while the page is visible; a hidden page frees its seat.
async function show(canvas, failed) {
  for (let failures = 0; ;) {
    const leaving = new AbortController();
    const onChange = () => document.hidden && leaving.abort();
    document.addEventListener('visibilitychange', onChange);
    try {
      if (!document.hidden) {
        ++failures;
        const response = await request('/preview?raw=1', { signal: leaving.signal });
        if (!response.ok) {
          failures = 0;
          failed(new Error((await response.json()).error));
        } else {
          for await (const jpeg of picturesOf(response.body)) {
            await draw(canvas, jpeg);
            failures = 0;
          }
        }
      }
    } catch { /* ended, or hidden: begin anew */ }
    leaving.abort();
    document.removeEventListener('visibilitychange', onChange);
    if (failures === kFailuresToTell) {
      failed(new Error('The live picture does not come; reload the page, or try another browser.'));
    }
    await delay(kRetryMs);
  }
}

// Sends the size of the page's area to the server now, when it changes, and when the page becomes
// active, as another page may have sent its own since.
function declareForm(canvas, failed) {
  const send = merging('form', (_, later) => later, failed);
  let timer;
  const declare = () => {
    const sharpness = Math.min(window.devicePixelRatio || 1, 2);
    const width = Math.round(canvas.clientWidth * sharpness);
    const height = Math.round(canvas.clientHeight * sharpness);
    if (width > 0 && height > 0 && !document.hidden) {
      send({ width, height });
    }
  };
  new ResizeObserver(() => {
    clearTimeout(timer);
    timer = setTimeout(declare, kSettleMs);
  }).observe(canvas);
  document.addEventListener('visibilitychange', declare);
  window.addEventListener('focus', declare);
  canvas.addEventListener('pointerenter', declare);
}

function zoomByWheel(canvas, zoom) {
  let rest = 0;
  canvas.addEventListener('wheel', (event) => {
    event.preventDefault();
    const pixels = event.deltaMode === 0 ? event.deltaY : event.deltaY * kPixelsPerNotch;
    rest -= pixels / kPixelsPerNotch;
    const steps = Math.trunc(rest);
    rest -= steps;
    if (steps !== 0) {
      zoom(steps);
    }
  }, { passive: false });
}

const between = (fingers) => {
  const [a, b] = [...fingers.values()];
  return Math.hypot(a.x - b.x, a.y - b.y);
};

// One pointer drags, two pinch.
function moveByPointers(canvas, move, zoom) {
  const kPixelsPerStep = 12;
  const fingers = new Map();
  let span = 0;
  const begin = () => {
    span = fingers.size === 2 ? between(fingers) : 0;
    canvas.classList.toggle('dragged', fingers.size > 0);
  };
  const scale = () => Math.max(canvas.width / canvas.clientWidth,
    canvas.height / canvas.clientHeight);
  canvas.addEventListener('pointerdown', (event) => {
    if (event.button !== 0) {
      return;
    }
    canvas.setPointerCapture(event.pointerId);
    fingers.set(event.pointerId, { x: event.clientX, y: event.clientY });
    begin();
  });
  canvas.addEventListener('pointermove', (event) => {
    const finger = fingers.get(event.pointerId);
    if (!finger) {
      return;
    }
    const dx = Math.round((event.clientX - finger.x) * scale());
    const dy = Math.round((event.clientY - finger.y) * scale());
    fingers.set(event.pointerId, { x: event.clientX, y: event.clientY });
    if (fingers.size === 1 && (dx !== 0 || dy !== 0)) {
      move(dx, dy);
    } else if (fingers.size === 2) {
      const steps = Math.trunc((between(fingers) - span) / kPixelsPerStep);
      span += steps * kPixelsPerStep;
      if (steps !== 0) {
        zoom(steps);
      }
    }
  });
  const lift = (event) => {
    fingers.delete(event.pointerId);
    begin();
  };
  canvas.addEventListener('pointerup', lift);
  canvas.addEventListener('pointercancel', lift);
}

export function startPreview(canvas, failed) {
  const sendZoom = merging('zoom', (a, b) => ({
    steps: Math.max(-150, Math.min(150, a.steps + b.steps)),
  }), failed);
  const sendMove = merging('move', (a, b) => ({
    dx: Math.max(-10000, Math.min(10000, a.dx + b.dx)),
    dy: Math.max(-10000, Math.min(10000, a.dy + b.dy)),
  }), failed);
  const zoom = (steps) => sendZoom({ steps });
  const move = (dx, dy) => sendMove({ dx, dy });
  declareForm(canvas, failed);
  zoomByWheel(canvas, zoom);
  moveByPointers(canvas, move, zoom);
  canvas.addEventListener('dblclick', () => command('zoom', { to: 'whole' }).catch(failed));
  show(canvas, failed);
  return { zoom, move };
}
