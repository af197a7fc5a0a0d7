// Elements and numbers as text, for all parts of the page.

// h('button', {class: 'plain', onclick: remove}, 'Remove') makes an element. Names that begin with "on" are listeners;
// true and false set and leave out an attribute; children that are null or false are left out.
export function h(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (value === true) element.setAttribute(name, '');
    else if (value !== false && value != null) element.setAttribute(name, value);
  }
  element.append(...children.flat().filter((child) => child != null && child !== false));
  return element;
}

const SVG = 'http://www.w3.org/2000/svg';

// A picture for a button: paths in a square of 16 units, as lines.
export function icon(paths) {
  const svg = document.createElementNS(SVG, 'svg');
  svg.setAttribute('viewBox', '0 0 16 16');
  svg.setAttribute('aria-hidden', 'true');
  const path = document.createElementNS(SVG, 'path');
  path.setAttribute('d', paths);
  svg.append(path);
  return svg;
}

export const ICONS = {
  add: 'M8 3v10M3 8h10',
  up: 'M8 13V3M4 7l4-4 4 4',
  down: 'M8 3v10M4 9l4 4 4-4',
  remove: 'M4 4l8 8M12 4l-8 8',
  reset: 'M3 3v4h4M3.5 7a5 5 0 1 1-.4 3',
};

export function iconButton(paths, label, onclick, attributes = {}) {
  const own = {type: 'button', class: 'icon', 'aria-label': label, title: label, onclick};
  return h('button', {...own, ...attributes}, icon(paths));
}

// At most four figures after the point, without zeros at the end.
export function numberText(value) {
  if (!Number.isFinite(value)) return String(value);
  return Number.isInteger(value) ? String(value) : String(Number(value.toFixed(4)));
}

// Browsers round their clock to a tenth of a millisecond.
export function timeText(milliseconds) {
  if (milliseconds >= 1000) return `${(milliseconds / 1000).toFixed(2)} s`;
  if (milliseconds < 0.1) return '< 0.1 ms';
  return `${milliseconds.toFixed(milliseconds < 100 ? 1 : 0)} ms`;
}

// "sizeOfTheWindow" becomes "size of the window"; capitals on their own stay.
export function words(name) {
  return name.replace(/([a-z])([A-Z])/g, '$1 $2').replace(/[A-Z](?=[a-z])/g, (letter) => letter.toLowerCase());
}

export function sizeText({width, height}) {
  return `${width} × ${height}`;
}
