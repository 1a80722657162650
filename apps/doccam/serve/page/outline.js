// The sheet's outline over the live picture, as lines of their own.

// Returns the listeners to the topics "view", "place" and "sheet".
export function makeOutline(svg) {
  const polygon = svg.querySelector('polygon');
  let place = null; // of the whole frame in the form, in form pixels
  let sheet = null;
  const show = () => {
    svg.toggleAttribute('hidden', !place || !sheet);
    if (place && sheet) {
      polygon.setAttribute('points', sheet.corners.map(([x, y]) =>
        `${place.x + x * place.width},${place.y + y * place.height}`).join(' '));
    }
  };
  return {
    view({ width, height }) { svg.setAttribute('viewBox', `0 0 ${width} ${height}`); },
    place(now) { place = now; show(); },
    sheet(now) { sheet = now; show(); },
  };
}
