// The codes of the live picture and of the pages: texts to copy, links to open.
import { command } from './connection.js';
import { element } from './panels.js';

const kNames = { qr: 'QR code', bar: 'Bar code', matrix: 'Matrix code' };

// The address that a code's text is: of the web, and nothing else. Null for any other text.
function linkOf(text) {
  if (!/^https?:\/\/[^\s\x00-\x20\x7f]+$/i.test(text)) {
    return null;
  }
  try {
    const url = new URL(text);
    return ['http:', 'https:'].includes(url.protocol) ? url.href : null;
  } catch {
    return null;
  }
}

async function copy(input, say) {
  input.select();
  try {
    await navigator.clipboard.writeText(input.value);
  } catch {
    document.execCommand('copy'); // the only way without HTTPS
  }
  say('Copied');
}

// The text's row. A browser could take what a code says for markup only if it were parsed, so it is
// set as a value.
function makeRow({ name, text, addon }, say) {
  const row = element('li');
  const place = element('p', { className: 'where' });
  const input = element('input', { readOnly: true, value: text });
  const button = element('button', { textContent: 'Copy' });
  input.setAttribute('aria-label', `${name} text`);
  button.setAttribute('aria-label', `Copy ${name} text`);
  button.addEventListener('click', () => copy(input, say));
  row.append(place, input, button);
  const href = linkOf(text);
  if (href) {
    const link = element('a', {
      href, target: '_blank', rel: 'noopener noreferrer', textContent: 'Open', title: href,
    });
    link.setAttribute('aria-label', `Open ${href}`);
    row.append(link);
  }
  return {
    row,
    tell(where) {
      const description = addon ? `${name} with ${addon}` : name;
      place.textContent = `${description} – ${where.join(', ')}`;
    },
  };
}

// Shows each code once, with where it is; rows stay while their codes do, with focus and selection.
export function makeCodes(list, note, say) {
  let read = { codes: [] }; // the last reading
  let looked = null; // the live codes while they are looked for
  let pages = [];
  const rows = new Map();
  const keyOf = ({ text, addon }) => JSON.stringify([text, addon ?? '']);
  const gathered = () => {
    const codes = new Map();
    const add = (code, where) => {
      const same = codes.get(keyOf(code)) ??
        [...codes.values()].find((other) => !code.kind && other.text === code.text);
      if (same) {
        same.where.add(where);
      } else {
        codes.set(keyOf(code), {
          ...code, name: kNames[code.kind] ?? 'Code', where: new Set([where]),
        });
      }
    };
    (looked ?? read.codes ?? []).forEach((code) => add(code, 'live picture'));
    pages.forEach((page, index) => {
      page.codes.forEach((text) => add({ text }, `page ${index + 1}`));
    });
    return codes;
  };
  const show = () => {
    const codes = gathered();
    for (const [key, { row, name }] of rows) {
      if (codes.get(key)?.name !== name) {
        row.remove();
        rows.delete(key);
      }
    }
    [...codes].forEach(([key, code], index) => {
      if (!rows.has(key)) {
        rows.set(key, { ...makeRow(code, say), name: code.name });
      }
      const { row, tell } = rows.get(key);
      tell([...code.where]);
      if (list.children[index] !== row) {
        list.insertBefore(row, list.children[index] ?? null);
      }
    });
    if (looked) {
      note.textContent = looked.length > 0 ? '' : 'Looking for codes in the live picture …';
    } else if ('codes' in read && 'qr' in read) {
      note.textContent = read.codes.length > 0 ? '' : 'No code in the live picture.';
    }
  };
  return {
    showRead(codes) { read = codes; show(); },
    // Null while they are not looked for.
    showLooked(codes) { looked = codes; show(); },
    showPages(all) { pages = all; show(); },
    async read() {
      note.textContent = 'Looking for codes …';
      try {
        await command('codes');
      } finally {
        note.textContent = '';
        show();
      }
    },
  };
}
