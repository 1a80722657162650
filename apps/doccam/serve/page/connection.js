// Commands to the server and news from it.

const kPatienceMs = 60000;
const kRetryMs = 3000;

export async function command(name, wish = {}) {
  const response = await fetch(`/api/${name}`, {
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
  const close = () => {
    clearTimeout(retry);
    source?.close();
    source = null;
  };
  const open = () => {
    close();
    if (document.hidden) {
      return;
    }
    source = new EventSource('/events');
    source.onopen = () => listeners.connected(true);
    source.onerror = ({ target }) => {
      listeners.connected(false);
      if (target.readyState === EventSource.CLOSED) {
        retry = setTimeout(open, kRetryMs);
      }
    };
    for (const topic of Object.keys(listeners)) {
      source.addEventListener(topic, (event) => listeners[topic](JSON.parse(event.data)));
    }
  };
  document.addEventListener('visibilitychange', open);
  open();
}
