// Commands to the server and news from it.
import { authorization, refuse, setConnected } from './access.js';

const kPatienceMs = 60000;
const kRetryMs = 3000;

// A request with the token; a window whose token is refused says so.
export async function request(path, { headers, ...options } = {}) {
  const response = await fetch(path, { ...options, headers: { ...headers, ...authorization() } });
  if (response.status === 403) {
    refuse();
  }
  return response;
}

export async function command(name, wish = {}) {
  const response = await request(`/api/${name}`, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(wish),
    signal: AbortSignal.timeout(kPatienceMs),
  }).catch((error) => {
    throw new Error(error.name === 'TimeoutError'
      ? 'The server takes too long over it; try again.' : 'The server does not answer; try again.');
  });
  const answer = await response.json().catch(() => ({}));
  if (!response.ok) {
    throw new Error(answer.error ?? `The server answers ${response.status}.`);
  }
  return answer;
}

// The address of a path that the browser itself fetches, without headers: once, and soon.
async function ticketed(path) {
  const { ticket } = await command('tickets', { for: path });
  return `${path}?ticket=${ticket}`;
}

export async function download(path, name) {
  const link = document.createElement('a');
  link.href = await ticketed(path);
  link.download = name;
  link.click();
}

// Sends one wish at a time; those that come meanwhile are merged into the next one. Who sent the first
// gets the last answer.
export function merging(name, merge, failed) {
  let waiting = null;
  let busy = false;
  return async (wish) => {
    waiting = waiting === null ? wish : merge(waiting, wish);
    if (busy) {
      return;
    }
    busy = true;
    let answer;
    while (waiting !== null) {
      const next = waiting;
      waiting = null;
      answer = await command(name, next).catch(failed);
    }
    busy = false;
    return answer;
  };
}

export const newest = (_, later) => later;

// Calls listeners[topic](state) with the state of each topic, at first and when it changes;
// listeners.connected(true or false) when the connection comes and goes. A hidden page does not
// listen: a browser has few connections to one server.
export function listen(listeners) {
  let source = null;
  let retry;
  let opening = 0;
  const close = () => {
    ++opening;
    clearTimeout(retry);
    source?.close();
    source = null;
  };
  const tell = (connected) => {
    setConnected(connected);
    listeners.connected(connected);
  };
  const fail = () => {
    close();
    tell(false);
    retry = setTimeout(open, kRetryMs);
  };
  const open = async () => {
    close();
    if (document.hidden) {
      return;
    }
    const own = opening;
    const address = await ticketed('/events').catch(() => null);
    if (own !== opening) {
      return;
    }
    if (address === null) {
      fail();
      return;
    }
    source = new EventSource(address);
    source.onopen = () => tell(true);
    source.onerror = fail; // the ticket is used up: another try needs another one
    for (const topic of Object.keys(listeners)) {
      source.addEventListener(topic, (event) => listeners[topic](JSON.parse(event.data)));
    }
  };
  document.addEventListener('visibilitychange', open);
  open();
}
