// What stands beside the picture: its histogram, and what the selected step has found.

import {h, numberText, sizeText, words} from './elements.js';
import {drawable} from './drawings.js';
import {canvasOf, histograms, summary} from './picture.js';

const MOST_ROWS = 300;
const CHANNELS = {1: [['gray', '--gray-bars']], 3: [['red', '--red-bars'], ['green', '--green-bars'], ['blue', '--blue-bars']]};

// Fills a panel with the results that a function has given. emphasise is called with an item of a result that the mouse or the keyboard points at, or null.
export function showResults(panel, picture, results, fn, emphasise) {
  const bins = histograms(picture);
  panel.replaceChildren(
    h('section', {},
      h('h3', {}, 'Histogram of the picture'),
      histogramPlot(bins.map((counts, c) => [counts, ...CHANNELS[picture.channels][c]])),
      facts(picture, bins)),
    ...results.map((result) => resultSection({...described(fn, result), ...result}, emphasise)).filter(Boolean));
}

// Bars of one or three histograms over each other, scaled to the greatest bin; a bin that towers over all others is cut.
function histogramPlot(series) {
  const canvas = h('canvas', {class: 'histogram', width: 512, height: 160, role: 'img', 'aria-label': series.map(([bins, name]) => {
    const {least, most, mean} = summary(bins);
    return `${name}: least ${least}, mean ${mean.toFixed(1)}, greatest ${most}`;
  }).join('; ')});
  const draw = () => {
    const context = canvas.getContext('2d');
    const heights = series.flatMap(([bins]) => [...bins]).sort((a, b) => b - a);
    const full = Math.max(1, Math.min(heights[0], 3 * (heights[Math.min(4, heights.length - 1)] || heights[0])));
    const width = canvas.width / series[0][0].length;
    const style = getComputedStyle(canvas);
    context.globalCompositeOperation = style.getPropertyValue('--blend').trim();
    for (const [bins, , colour] of series) {
      canvas.style.color = `var(${colour})`;
      context.fillStyle = style.color;
      bins.forEach((count, i) => {
        const height = count && Math.max(2, canvas.height * Math.min(1, count / full));
        context.fillRect(Math.min(i * width, canvas.width - 2), canvas.height - height, Math.max(width, 2), height);
      });
    }
  };
  requestAnimationFrame(draw);
  return canvas;
}

function facts(picture, bins) {
  const rows = bins.map((counts, c) => [CHANNELS[picture.channels][c][0], summary(counts)]);
  return h('table', {class: 'facts'},
    h('thead', {}, h('tr', {}, h('td', {}, sizeText(picture)), ...['least', 'mean', 'greatest'].map((name) => h('th', {scope: 'col'}, name)))),
    h('tbody', {}, rows.map(([name, {least, mean, most}]) => h('tr', {}, h('th', {scope: 'row'}, name),
      [least, mean.toFixed(1), most].map((value) => h('td', {}, value))))));
}

function resultSection(result, emphasise) {
  const {kind, value, help} = result;
  if (value == null) return null;
  const body = bodyOf(result, emphasise);
  const count = Array.isArray(value) && kind !== 'histogram' ? ` (${value.length})` : '';
  if (kind === 'number' || kind === 'text') return h('section', {class: 'single', title: help}, h('h3', {}, title(result)), body);
  return h('section', {title: help}, h('h3', {}, title(result) + count), body);
}

// The label and the help of a result.
function described(fn, {name}) {
  const {label, help} = fn.results.find((result) => result.name === name) ?? {};
  return {label, help};
}

// Outputs that belong together, such as "X Y", have the name of their kind.
function title({label, name, kind}) {
  const text = label ?? (name.includes(' ') ? kind : words(name));
  return text[0].toUpperCase() + text.slice(1);
}

function bodyOf(result, emphasise) {
  const {kind, value} = result;
  switch (kind) {
    case 'number': return h('output', {}, numberText(value));
    case 'text': return h('output', {}, value);
    case 'picture': return pictureOf(value);
    case 'histogram': return histogramPlot([[value, 'counts', '--gray-bars']]);
    case 'numbers': return typeof value[0] === 'object' ? table(result, value, emphasise) : numberList(result);
    default: return table(result, drawable(result), emphasise);
  }
}

function pictureOf(picture) {
  const canvas = h('canvas', {width: picture.width, height: picture.height, role: 'img', 'aria-label': sizeText(picture)});
  canvas.getContext('2d').drawImage(canvasOf(picture), 0, 0);
  return canvas;
}

// A plot of a series of numbers and its values as text.
function numberList(result) {
  const values = result.value;
  const shown = values.slice(0, MOST_ROWS).map(numberText).join('  ');
  const text = h('div', {class: 'numbers', tabindex: 0, role: 'region', 'aria-label': `${title(result)} as numbers`},
    shown + (values.length > MOST_ROWS ? ` … and ${values.length - MOST_ROWS} more` : ''));
  return values.length < 8 ? text : [linePlot(title(result), values), text];
}

function linePlot(name, values) {
  const canvas = h('canvas', {class: 'histogram', width: 512, height: 160, role: 'img', 'aria-label': `${name} as a line`});
  const least = Math.min(0, values.reduce((a, b) => Math.min(a, b)));
  const most = Math.max(0, values.reduce((a, b) => Math.max(a, b)));
  requestAnimationFrame(() => {
    const context = canvas.getContext('2d');
    const height = (value) => 158 - 156 * (value - least) / (most - least || 1);
    canvas.style.color = 'var(--accent)';
    context.strokeStyle = getComputedStyle(canvas).color;
    context.lineWidth = 2;
    context.beginPath();
    values.forEach((value, i) => context.lineTo(512 * i / (values.length - 1), height(value)));
    context.stroke();
  });
  return canvas;
}

// A table with a row for each item. A row that is pointed at stands out in the picture.
function table(result, items, emphasise) {
  if (items.length === 0) return h('p', {class: 'help'}, 'None.');
  const columns = Object.keys(items[0]).filter((key) => typeof items[0][key] !== 'object');
  const rows = items.slice(0, MOST_ROWS).map((item, i) => h('tr', {onmouseenter: () => emphasise(item)},
    h('th', {scope: 'row'}, i + 1), columns.map((key) => h('td', {}, typeof item[key] === 'number' ? numberText(item[key]) : String(item[key])))));
  let current = -1;
  const scroller = h('div', {class: 'scroller', tabindex: 0, role: 'region', 
    'aria-label': `${title(result)}; the arrow keys mark a row in the picture`,
    onmouseleave: () => emphasise(null),
    onblur: () => mark(-1),
    onkeydown: (event) => {
      const to = {ArrowDown: current + 1, ArrowUp: current - 1, Home: 0, End: rows.length - 1}[event.key];
      if (to === undefined) return;
      event.preventDefault();
      mark(Math.min(Math.max(to, 0), rows.length - 1));
    }},
  h('table', {}, h('thead', {}, h('tr', {}, h('td', {}), columns.map((key) => h('th', {scope: 'col'}, words(key))))), h('tbody', {}, rows)),
  items.length > MOST_ROWS && h('p', {class: 'help'}, `… and ${items.length - MOST_ROWS} more.`));
  function mark(to) {
    rows[current]?.classList.remove('current');
    current = to;
    rows[current]?.classList.add('current');
    rows[current]?.scrollIntoView({block: 'nearest'});
    emphasise(items[current] ?? null);
  }
  return scroller;
}
