// Commands to the server and events from it.
import { authorization, refuse, setConnected } from './access.js';

const kPatienceMs = 60000;
const kRetryMs = 3000;

// A request with the token; reports a refused token.
export async function request(path, { headers, ...options } = {}) {
  const response = await fetch(path, { ...options, headers: { ...headers, ...authorization() } });
  if (response.status === 403) {
    refuse();
  }
  return response;
}

export async function command(name, fields = {}) {
  const response = await request(`/api/${name}`, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(fields),
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

// A single-use, short-lived address for a path that the browser fetches without headers.
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

// Sends one request at a time; further ones are merged into the next. The caller of the first gets the
// last response.
export function merging(name, merge, failed) {
  let waiting = null;
  let busy = false;
  return async (fields) => {
    waiting = waiting === null ? fields : merge(waiting, fields);
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

// Calls listeners[topic](state) with each topic's state, initially and on changes, and
// listeners.connected(true or false) when the connection is made or lost. A hidden page does not
// listen, as browsers limit the connections to one server. After lookForCodes(true) the server looks
// for codes in the live picture while the page listens.
export function listen(listeners) {
  let source = null;
  let query = '';
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
    source = new EventSource(address + query);
    source.onopen = () => tell(true);
    source.onerror = fail; // the ticket is used up, so a retry needs a new one
    for (const topic of Object.keys(listeners)) {
      source.addEventListener(topic, (event) => listeners[topic](JSON.parse(event.data)));
    }
  };
  document.addEventListener('visibilitychange', open);
  open();
  return {
    lookForCodes(on) {
      query = on ? '&codes=1' : '';
      open();
    },
  };
}
