// Page settings and picture controls.
import { merging, newest } from './connection.js';

const kFlags = ['crop', 'rectangle', 'cleanEdges', 'cleanBackground'];
const kChoices = ['look', 'colour'];

export function makeSettings(say, failed) {
  const field = (id) => document.getElementById(id);
  const post = merging('settings', (a, b) => ({ ...a, ...b }), failed);
  let known = { version: -1 }; // the server's last settings
  let underWay = 0;
  // Shows values set here until the server has responded, as earlier events may arrive late.
  const show = (settings) => {
    if (settings?.version > known.version) {
      known = settings;
    }
    if (underWay > 0 || known.version < 0) {
      return;
    }
    for (const flag of kFlags) {
      field(flag).checked = known[flag];
    }
    for (const choice of kChoices) {
      field(choice).value = known[choice];
    }
    if (document.activeElement !== field('quality')) {
      field('quality').value = known.quality;
    }
    field('quality-value').value = known.quality;
  };
  const send = async (fields) => {
    ++underWay;
    const answer = await post(fields);
    --underWay;
    show(answer);
  };
  for (const flag of kFlags) {
    field(flag).addEventListener('change', () => send({ [flag]: field(flag).checked }));
  }
  for (const choice of kChoices) {
    field(choice).addEventListener('change', () => send({ [choice]: field(choice).value }));
  }
  field('quality').addEventListener('input', () => {
    field('quality-value').value = field('quality').value;
    send({ quality: Number(field('quality').value) });
  });
  return {
    show,
    toggle(flag) {
      field(flag).click();
      say(`${field(flag).labels[0].textContent.trim()}: ${field(flag).checked ? 'on' : 'off'}`);
    },
    nextColour() {
      const select = field('colour');
      select.selectedIndex = (select.selectedIndex + 1) % select.options.length;
      send({ colour: select.value });
      say(`Colour mode: ${select.selectedOptions[0].textContent}`);
    },
    stepQuality(step) {
      field('quality').stepUp(step);
      field('quality').dispatchEvent(new Event('input'));
      say(`Quality: ${field('quality').value}`);
    },
  };
}

export const element = (tag, properties) => Object.assign(document.createElement(tag), properties);

function makeSlider(control, failed) {
  const row = element('div', { className: 'slider' });
  const slider = element('input', {
    type: 'range', id: `control-${control.name}`, min: control.minimum, max: control.maximum,
  });
  const textContent = control.name[0].toUpperCase() + control.name.slice(1);
  const label = element('label', { textContent, htmlFor: slider.id });
  const value = element('output', { htmlFor: slider.id });
  const reset = element('button', { textContent: '↺', title: `Reset ${control.name}` });
  reset.setAttribute('aria-label', reset.title);
  row.append(label, value, slider, reset);
  const send = merging('control', newest, failed);
  slider.addEventListener('input', () => {
    value.value = slider.value;
    send({ name: control.name, value: Number(slider.value) });
  });
  reset.addEventListener('click', () => send({ name: control.name }));
  return row;
}

export function makeControls(place, failed) {
  let shown = '';
  return (controls) => {
    const kinds = JSON.stringify(controls.map(({ value, ...kind }) => kind));
    if (kinds !== shown) {
      shown = kinds;
      place.replaceChildren(...controls.map((control) => makeSlider(control, failed)));
    }
    controls.forEach((control, index) => {
      const row = place.children[index];
      const slider = row.querySelector('input');
      if (!slider.matches(':active')) {
        slider.value = control.value;
        row.querySelector('output').value = control.value;
      }
    });
  };
}
