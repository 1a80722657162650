// The outlines of the sheet and of codes over the live picture, as lines of their own.

const kSvg = 'http://www.w3.org/2000/svg';

// Returns the listeners to the topics "view", "place", "sheet" and "liveCodes".
export function makeOutline(svg) {
  const sheetLine = svg.querySelector('polygon');
  const codeLines = svg.querySelector('g');
  let place = null; // of the whole frame in the form, in form pixels
  let sheet = null;
  let codes = [];
  const frame = (line, corners) => line.setAttribute('points', corners.map(([x, y]) =>
    `${place.x + x * place.width},${place.y + y * place.height}`).join(' '));
  const show = () => {
    svg.toggleAttribute('hidden', !place || (!sheet && codes.length === 0));
    if (!place) {
      return;
    }
    frame(sheetLine, sheet?.corners ?? []);
    codeLines.replaceChildren(...codes.map(({ corners }) => {
      const line = document.createElementNS(kSvg, 'polygon');
      frame(line, corners);
      return line;
    }));
  };
  return {
    view({ width, height }) { svg.setAttribute('viewBox', `0 0 ${width} ${height}`); },
    place(now) { place = now; show(); },
    sheet(now) { sheet = now; show(); },
    liveCodes(now) { codes = now ?? []; show(); },
  };
}
