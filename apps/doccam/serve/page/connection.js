// Commands to the server and news from it.

export async function command(name, wish = {}) {
  const response = await fetch(`/api/${name}`, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(wish),
  });
  const answer = await response.json().catch(() => ({}));
  if (!response.ok) {
    throw new Error(answer.error ?? `The server answers ${response.status}.`);
  }
  return answer;
}

// Sends one wish at a time; those that come meanwhile are merged into the next one.
export function merging(name, merge, failed) {
  let waiting = null;
  let busy = false;
  return async (wish) => {
    waiting = waiting === null ? wish : merge(waiting, wish);
    if (busy) {
      return;
    }
    busy = true;
    while (waiting !== null) {
      const next = waiting;
      waiting = null;
      await command(name, next).catch(failed);
    }
    busy = false;
  };
}

export const newest = (_, later) => later;

// Calls listeners[topic](state) with the state of each topic, at first and when it changes;
// listeners.connected(true or false) when the connection comes and goes.
export function listen(listeners) {
  const source = new EventSource('/events');
  source.onopen = () => listeners.connected(true);
  source.onerror = () => {
    listeners.connected(false);
    if (source.readyState === EventSource.CLOSED) {
      setTimeout(() => listen(listeners), 3000);
    }
  };
  for (const topic of Object.keys(listeners)) {
    source.addEventListener(topic, (event) => listeners[topic](JSON.parse(event.data)));
  }
}
