// Connects buttons, keys and the server's events.
import { enter } from './access.js';
import { makeCodes } from './codes.js';
import { command, download, listen } from './connection.js';
import { makeOutline } from './outline.js';
import { makeControls, makeSettings } from './panels.js';
import { startPreview } from './preview.js';
import { makeTray } from './tray.js';

const kMove = 60; // form pixels per arrow key
const kQualityStep = 5;
const find = (id) => document.getElementById(id);

await enter();

const say = (text) => { find('news').textContent = text; };

let trouble = ''; // the camera's message
let connected = false;
let complaint = '';
let complaintTimer;

function showBanner() {
  let text = complaint;
  if (!connected) {
    text = 'The server does not answer. Too many windows may show it; or it has ended: start it ' +
      'again and open its address.';
  } else if (trouble) {
    text = `No picture: ${trouble.replace(/\.$/, '')}. It comes back by itself.`;
  }
  if (find('banner').textContent !== text) {
    find('banner').textContent = text;
  }
  find('banner').hidden = text === '';
  find('preview').classList.toggle('old', !connected || trouble !== '');
}

function failed(error) {
  complaint = error.message;
  clearTimeout(complaintTimer);
  complaintTimer = setTimeout(() => { complaint = ''; showBanner(); }, 6000);
  showBanner();
}

const send = (name, fields) => command(name, fields).catch(failed);
const preview = startPreview(find('preview'), failed);
const settings = makeSettings(say, failed);
const codes = makeCodes(find('codes'), find('codes-note'), say);
const showTray = makeTray(find('pages'), say, failed);

// Runs a button's action, one at a time. aria-disabled keeps the focus, which disabled would lose.
function alone(button, action) {
  return async () => {
    if (button.getAttribute('aria-disabled') === 'true') {
      return;
    }
    button.setAttribute('aria-disabled', 'true');
    await action().catch(failed);
    button.setAttribute('aria-disabled', 'false');
  };
}

const capture = alone(find('capture'), async () => {
  await command('capture');
  say('Page taken');
});

const actions = {
  'zoom-in': () => preview.zoom(2),
  'zoom-out': () => preview.zoom(-2),
  whole: () => send('zoom', { to: 'whole' }),
  'true-size': () => send('zoom', { to: 'true' }),
  'turn-left': () => send('turn', { direction: 'left' }),
  'turn-right': () => send('turn', { direction: 'right' }),
  capture,
  'read-codes': alone(find('read-codes'), codes.read),
  focus: () => send('focus'),
  'show-keys': () => find('keys').showModal(),
  pdf: alone(find('pdf'), () => download('/pages.pdf', 'pages.pdf')),
};

for (const [id, action] of Object.entries(actions)) {
  find(id).addEventListener('click', action);
}

const keys = {
  '+': actions['zoom-in'], '=': actions['zoom-in'], '-': actions['zoom-out'],
  0: actions.whole, 1: actions['true-size'], '?': actions['show-keys'],
};
const letters = {
  l: actions['turn-left'], r: actions['turn-right'], b: actions['read-codes'], f: actions.focus,
  m: settings.nextColour, c: () => settings.toggle('crop'), e: () => settings.toggle('cleanEdges'),
  w: () => settings.toggle('cleanBackground'), k: () => find('keep-looking').click(),
  q: (event) => settings.stepQuality(event.shiftKey ? -kQualityStep : kQualityStep),
};
const previewKeys = {
  ArrowLeft: () => preview.move(kMove, 0), ArrowRight: () => preview.move(-kMove, 0),
  ArrowUp: () => preview.move(0, kMove), ArrowDown: () => preview.move(0, -kMove),
  ' ': capture, Enter: capture,
};
const kRepeated = ['+', '=', '-', 'ArrowLeft', 'ArrowRight', 'ArrowUp', 'ArrowDown']; // while held

document.addEventListener('keydown', (event) => {
  const typing = event.target.closest('input:not([type=checkbox]), select, dialog');
  if (typing || event.ctrlKey || event.altKey || event.metaKey) {
    return;
  }
  const action = keys[event.key] ??
    (find('letters').checked ? letters[event.key.toLowerCase()] : undefined) ??
    (event.target === find('preview') ? previewKeys[event.key] : undefined);
  if (action) {
    event.preventDefault();
    if (!event.repeat || kRepeated.includes(event.key)) {
      action(event);
    }
  }
});

const outline = makeOutline(find('outline'));
const showLive = (found) => {
  outline.liveCodes(found);
  codes.showLooked(found);
};
const isLooking = () => find('keep-looking').checked;

const events = listen({
  ...outline,
  connected(now) {
    connected = now;
    showBanner();
  },
  camera(camera) {
    trouble = camera.plugged ? '' : camera.message;
    find('status').textContent = camera.plugged
      ? `${camera.name}, ${camera.width} × ${camera.height}` : 'No camera';
    showBanner();
  },
  rate(rate) {
    find('rate').textContent = `${rate.framesPerSecond.toFixed(1)} frames/s`;
  },
  settings: settings.show,
  controls: makeControls(find('controls'), failed),
  codes: codes.showRead,
  // Another window may have them looked for.
  liveCodes(found) {
    showLive(isLooking() ? found ?? [] : null);
  },
  pages(pages) {
    showTray(pages);
    codes.showPages(pages);
    find('no-pages').hidden = pages.length > 0;
    find('pdf').hidden = pages.length === 0;
  },
});

find('keep-looking').addEventListener('change', () => {
  events.lookForCodes(isLooking());
  showLive(isLooking() ? [] : null);
  say(`Keep looking for codes: ${isLooking() ? 'on' : 'off'}`);
});

find('preview').focus();
