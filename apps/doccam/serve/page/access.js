// The access token of this window: from the address it was opened with, from this window's own
// storage, or from another window that shows the picture.

const kToken = 'token';
const kPatienceMs = 1000;

const channel = new BroadcastChannel('doccam');
let connected = false; // the server has let this window in, and is there
let letIn = () => location.reload();

const kept = () => sessionStorage.getItem(kToken);

// The address bar and the history need not keep the token.
function takeFromAddress() {
  const given = /^#token=([0-9a-f]+)$/.exec(location.hash)?.[1];
  if (given) {
    sessionStorage.setItem(kToken, given);
    history.replaceState(null, '', location.pathname);
  }
  return Boolean(given);
}

function showRefusal(refused) {
  document.body.classList.toggle('refused', refused);
  document.getElementById('refusal').hidden = !refused;
}

function ask() {
  if (!kept() && !document.hidden) {
    channel.postMessage({ ask: true });
  }
}

// A token is handed on only while the server itself has the port: nobody else's page can be loaded
// from it then.
channel.addEventListener('message', ({ data }) => {
  if (data.ask && connected && kept()) {
    channel.postMessage({ token: kept() });
  } else if (data.token && !kept()) {
    sessionStorage.setItem(kToken, data.token);
    letIn();
  }
});

// An address that differs behind the # alone loads no page.
window.addEventListener('hashchange', () => takeFromAddress() && location.reload());
document.addEventListener('visibilitychange', ask);
window.addEventListener('focus', ask);

export function setConnected(now) {
  connected = now;
}

// The token does not fit, as after its file was removed.
export function refuse() {
  sessionStorage.removeItem(kToken);
  connected = false;
  showRefusal(true);
}

// Waits until the window has a token.
export async function enter() {
  takeFromAddress();
  if (kept()) {
    return;
  }
  const reload = letIn;
  const given = new Promise((resolve) => { letIn = resolve; });
  ask();
  const timer = setTimeout(() => showRefusal(true), kPatienceMs);
  await given;
  letIn = reload;
  clearTimeout(timer);
  showRefusal(false);
}

export function authorization() {
  if (!kept()) {
    throw new Error('This window is not let in.');
  }
  return { Authorization: `Bearer ${kept()}` };
}
