// What stands beside the picture: its histogram, and what the selected step has found.

import {h, numberText, sizeText, words} from './elements.js';
import {drawable} from './drawings.js';
import {canvasOf, histograms, summary} from './picture.js';

const MOST_ROWS = 300;
const LEAST_PLOT = 8;  // a series of fewer numbers has no plot
const PLOT = {width: 512, height: 160};

// Names of the channels, and their colours in plots.
const CHANNELS = {
  1: [['gray', '--gray-bars']],
  3: [['red', '--red-bars'], ['green', '--green-bars'], ['blue', '--blue-bars']],
};

// Fills a panel with what the function of the selected step has found in its picture. emphasise is called with an item
// of a result that the mouse or the keyboard points at, or with null.
export function showResults(panel, picture, results, fn, emphasise) {
  const sections = results.filter(({value}) => value != null)
    .map((result) => resultSection({...described(fn, result), ...result}, emphasise));
  const bins = histograms(picture);
  const named = bins.map((counts, c) => [counts, ...CHANNELS[picture.channels][c]]);
  panel.replaceChildren(
    h('section', {}, h('h3', {}, 'Histogram of the picture'), histogramPlot(named), facts(picture, named)),
    ...sections);
}

// The label and the help of a result.
function described(fn, {name}) {
  const {label, help} = fn.results.find((result) => result.name === name) ?? {};
  return {label, help};
}

// A canvas for a plot. draw gets its context and a function that gives the colour of a variable of the style sheet.
function plot(label, draw) {
  const canvas = h('canvas', {class: 'plot', ...PLOT, role: 'img', 'aria-label': label});
  requestAnimationFrame(() => {
    const style = getComputedStyle(canvas);
    const context = canvas.getContext('2d');
    context.globalCompositeOperation = style.getPropertyValue('--blend').trim();
    draw(context, (name) => {
      canvas.style.color = `var(${name})`;
      return style.color;
    });
  });
  return canvas;
}

// Bars of histograms over each other. A few bins that tower over all others are cut.
function histogramPlot(series) {
  const label = series.map(([bins, name]) => {
    const {least, most, mean} = summary(bins);
    return `${name}: least ${least}, mean ${mean.toFixed(1)}, greatest ${most}`;
  }).join('; ');
  return plot(label, (context, colourOf) => {
    const {width, height} = PLOT;
    const heights = series.flatMap(([bins]) => [...bins]).sort((a, b) => b - a);
    const full = Math.max(1, Math.min(heights[0], 3 * (heights[4] || heights[0])));
    for (const [bins, , colour] of series) {
      const step = width / bins.length;
      const bar = Math.max(step, 2);
      context.fillStyle = colourOf(colour);
      bins.forEach((count, i) => {
        const top = count && Math.max(2, height * Math.min(1, count / full));
        context.fillRect(Math.min(i * step, width - bar), height - top, bar, top);
      });
    }
  });
}

function linePlot(label, values) {
  return plot(label, (context, colourOf) => {
    const {width, height} = PLOT;
    const least = values.reduce((a, b) => Math.min(a, b), 0);
    const most = values.reduce((a, b) => Math.max(a, b), 0);
    context.strokeStyle = colourOf('--accent');
    context.lineWidth = 2;
    context.beginPath();
    values.forEach((value, i) => {
      const share = (value - least) / (most - least || 1);
      context.lineTo(width * i / (values.length - 1), height - 2 - (height - 4) * share);
    });
    context.stroke();
  });
}

// Columns whose names are not plain.
const COLUMNS = {isOuter: 'object', N: 'codes', gry: 'gray', ID: 'number', parentID: 'parent', curArea: 'last area'};

const heads = (names) => names.map((name) => h('th', {scope: 'col'}, name));
function textOf(value) {
  if (typeof value === 'boolean') return value ? 'yes' : 'no';
  return typeof value === 'number' ? numberText(value) : value;
}

const cells = (values) => values.map((value) => h('td', {}, textOf(value)));
const row = (name, values, attributes = {}) => h('tr', attributes, h('th', {scope: 'row'}, name), cells(values));

function facts(picture, named) {
  const rows = named.map(([bins, name]) => {
    const {least, mean, most} = summary(bins);
    return row(name, [least, mean.toFixed(1), most]);
  });
  return h('table', {},
    h('thead', {}, h('tr', {}, h('td', {}, sizeText(picture)), heads(['least', 'mean', 'greatest']))),
    h('tbody', {}, rows));
}

function resultSection(result, emphasise) {
  const {kind, value, help} = result;
  const single = kind === 'number' || kind === 'text';
  const count = Array.isArray(value) && kind !== 'histogram' ? ` (${value.length})` : '';
  return h('section', {class: single ? 'single' : '', title: help},
    h('h3', {}, title(result) + count), bodyOf(result, emphasise));
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
    case 'picture': return pictureBody(value);
    case 'histogram': return histogramPlot([[value, 'counts', '--gray-bars']]);
    case 'numbers': return typeof value[0] === 'object' ? table(result, value, emphasise) : numberList(result);
    default: return table(result, drawable(result), emphasise);
  }
}

function pictureBody(picture) {
  const {width, height} = picture;
  const canvas = h('canvas', {width, height, role: 'img', 'aria-label': sizeText(picture)});
  canvas.getContext('2d').drawImage(canvasOf(picture), 0, 0);
  return canvas;
}

// A series of numbers as a line and as text.
function numberList(result) {
  const values = result.value;
  const rest = values.length - MOST_ROWS;
  const text = values.slice(0, MOST_ROWS).map(numberText).join('  ') + (rest > 0 ? ` … and ${rest} more` : '');
  const label = `${title(result)} as numbers`;
  const list = h('div', {class: 'numbers', tabindex: 0, role: 'region', 'aria-label': label}, text);
  return values.length < LEAST_PLOT ? list : [linePlot(`${title(result)} as a line`, values), list];
}

// A table with a row for each item. A row that is pointed at stands out in the picture.
function table(result, items, emphasise) {
  if (items.length === 0) return h('p', {class: 'help'}, 'None.');
  const isBoolean = (key) => typeof items[0][key] === 'boolean';
  const columns = Object.keys(items[0]).filter((key) => typeof items[0][key] !== 'object')
    .sort((a, b) => isBoolean(a) - isBoolean(b));
  const rows = items.slice(0, MOST_ROWS).map((item, i) => (
    row(i + 1, columns.map((key) => item[key]), {onmouseenter: () => emphasise(item)})));
  let current = -1;
  const mark = (to) => {
    rows[current]?.classList.remove('current');
    current = to;
    rows[current]?.classList.add('current');
    rows[current]?.scrollIntoView({block: 'nearest'});
    emphasise(items[current] ?? null);
  };
  return h('div', {
    class: 'scroller', tabindex: 0, role: 'region',
    'aria-label': `${title(result)}; the arrow keys mark a row in the picture`,
    onmouseleave: () => emphasise(null),
    onblur: () => mark(-1),
    onkeydown: (event) => {
      const to = {ArrowDown: current + 1, ArrowUp: current - 1, Home: 0, End: rows.length - 1}[event.key];
      if (to === undefined) return;
      event.preventDefault();
      mark(Math.min(Math.max(to, 0), rows.length - 1));
    },
  },
  h('table', {},
    h('thead', {}, h('tr', {}, h('td'), heads(columns.map((key) => COLUMNS[key] ?? words(key))))),
    h('tbody', {}, rows)),
  items.length > MOST_ROWS && h('p', {class: 'help'}, `… and ${items.length - MOST_ROWS} more.`));
}
