// The tray: pages in order, moved by dragging, buttons or keys.
import { command, download, request } from './connection.js';

const items = new Map(); // id -> list item
let order = [];

function label(page, place) {
  const codes = page.codes.length > 0 ? `, shows ${page.codes.join(', ')}` : '';
  return `Page ${place} of ${order.length}${codes}`;
}

// An img element cannot send the token.
async function showThumbnail(picture, page) {
  const wanted = `${page.id}-${page.version}`;
  if (picture.dataset.shows === wanted) {
    return;
  }
  picture.dataset.shows = wanted;
  const jpeg = await request(`/pages/${page.id}/thumbnail.jpg`)
    .then((response) => (response.ok ? response.blob() : null)).catch(() => null);
  if (picture.dataset.shows !== wanted) {
    return;
  }
  if (jpeg === null) {
    delete picture.dataset.shows; // the next event tries again
    return;
  }
  const address = URL.createObjectURL(jpeg);
  picture.onload = () => URL.revokeObjectURL(address);
  picture.src = address;
}

function update(item, page, place) {
  item.setAttribute('aria-label', label(page, place));
  item.querySelector('strong').textContent = `Page ${place}`;
  item.title = page.codes.join('\n');
  showThumbnail(item.querySelector('img'), page);
  const names = {
    earlier: 'Move page earlier', later: 'Move page later', left: 'Turn page left',
    right: 'Turn page right', download: 'Download page', delete: 'Delete page',
  };
  for (const tool of item.querySelectorAll('[data-does]')) {
    tool.title = names[tool.dataset.does];
    tool.setAttribute('aria-label', `${names[tool.dataset.does]} ${place}`);
  }
}

export function makeTray(list, say, failed) {
  // Resolves to whether it succeeded.
  const send = (name, fields) => command(name, fields).then(() => true, failed);

  const moveTo = async (id, place) => {
    const target = Math.max(0, Math.min(order.length - 1, place));
    if (target === order.indexOf(id)) {
      return;
    }
    const ids = order.filter((other) => other !== id);
    ids.splice(target, 0, id);
    if (await send('pages/order', { ids })) {
      say(`Page moved to place ${target + 1} of ${ids.length}`);
    }
  };

  const doWith = (id, what) => ({
    earlier: () => moveTo(id, order.indexOf(id) - 1),
    later: () => moveTo(id, order.indexOf(id) + 1),
    left: () => send('pages/turn', { id, direction: 'left' }),
    right: () => send('pages/turn', { id, direction: 'right' }),
    download: () => download(`/pages/${id}.jpg`, `page-${order.indexOf(id) + 1}.jpg`).catch(failed),
    delete: async () => {
      const place = order.indexOf(id);
      const next = order[place + 1] ?? order[place - 1];
      if (await send('pages/delete', { id })) {
        say('Page deleted');
        (items.get(next) ?? document.getElementById('preview')).focus();
      }
    },
  })[what]?.();

  const onKey = (event, id) => {
    const step = { ArrowUp: -1, ArrowLeft: -1, ArrowDown: 1, ArrowRight: 1 }[event.key];
    const place = order.indexOf(id);
    if (event.target !== items.get(id)) {
      return;
    }
    if (step && event.altKey) {
      moveTo(id, place + step);
    } else if (step) {
      items.get(order[place + step])?.focus();
    } else if (event.key === 'Delete') {
      if (!event.repeat) {
        doWith(id, 'delete');
      }
    } else {
      return;
    }
    event.preventDefault();
    event.stopPropagation();
  };

  const makeItem = (id) => {
    const item = document.getElementById('page-template').content.firstElementChild
      .cloneNode(true);
    item.addEventListener('click', (event) => doWith(id, event.target.dataset.does));
    item.addEventListener('keydown', (event) => onKey(event, id));
    item.addEventListener('dragstart', (event) => {
      event.dataTransfer.setData('text/plain', `doccam-page-${id}`);
      event.dataTransfer.effectAllowed = 'move';
    });
    item.addEventListener('dragover', (event) => {
      event.preventDefault();
      item.classList.add('target');
    });
    item.addEventListener('dragleave', () => item.classList.remove('target'));
    item.addEventListener('drop', (event) => {
      event.preventDefault();
      item.classList.remove('target');
      const dragged = Number(/^doccam-page-(\d+)$/.exec(
        event.dataTransfer.getData('text/plain'))?.[1]);
      if (order.includes(dragged)) {
        moveTo(dragged, order.indexOf(id));
      }
    });
    return item;
  };

  // Keeps the focus when its page moves.
  return (pages) => {
    const focused = document.activeElement;
    order = pages.map((page) => page.id);
    for (const [id, item] of items) {
      if (!order.includes(id)) {
        item.remove();
        items.delete(id);
      }
    }
    pages.forEach((page, index) => {
      const item = items.get(page.id) ?? makeItem(page.id);
      items.set(page.id, item);
      update(item, page, index + 1);
      if (list.children[index] !== item) {
        list.insertBefore(item, list.children[index] ?? null);
      }
    });
    if (list.contains(focused)) {
      focused.focus();
    }
  };
}
