// This window's access token: from the address it was opened with, from its session storage, or from
// another connected window.

const kToken = 'token';
const kPatienceMs = 1000;

const channel = new BroadcastChannel('doccam');
let connected = false; // the server has admitted this window and is running
let letIn = () => location.reload();

const kept = () => sessionStorage.getItem(kToken);

// Keeps the token out of the address bar and the history.
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

// The token is passed on only while the server itself has the port, as then no other program's page
// can be loaded from it.
channel.addEventListener('message', ({ data }) => {
  if (data.ask && connected && kept()) {
    channel.postMessage({ token: kept() });
  } else if (data.token && !kept()) {
    sessionStorage.setItem(kToken, data.token);
    letIn();
  }
});

// Changing only the fragment does not load a page.
window.addEventListener('hashchange', () => takeFromAddress() && location.reload());
document.addEventListener('visibilitychange', ask);
window.addEventListener('focus', ask);

export function setConnected(now) {
  connected = now;
}

// The token is wrong, as after its file was removed.
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
