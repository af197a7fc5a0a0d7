// The example of each function: a pipeline that ends with it, run by the library, as pictures and HTML.

import {createHash} from 'node:crypto';
import {writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {functions, shippedPicture} from '../model/files.js';
import {encode, withInitialValues} from '../model/pipeline.js';
import {escaped} from './html.mjs';
import {bars, overlay, png, reduced} from './pictures.mjs';

const MOST_NUMBERS = 8;
const MOST_BARS = 1024;
const FEW_PLACES = 2;

function valueText(value) {
  if (typeof value === 'object') return Object.entries(value).map(([k, v]) => `${k} ${valueText(v)}`).join(', ');
  if (typeof value !== 'number' || Number.isInteger(value)) return String(value);
  return String(Number(value.toPrecision(6)));
}

// The HTML of a result that is no picture.
function resultHtml({kind, value}) {
  if (!Array.isArray(value)) return escaped(valueText(value));
  if (kind !== 'histogram' && kind !== 'numbers') {
    return value.length > FEW_PLACES ? String(value.length) : escaped(value.map(valueText).join('; '));
  }
  if (value.length > MOST_NUMBERS && value.length <= MOST_BARS) return bars(value);
  const first = value.slice(0, MOST_NUMBERS).map(valueText).join(', ');
  return escaped(value.length > MOST_NUMBERS ? `${first}, ... (${value.length} numbers)` : first);
}

function resultList(results) {
  const counted = ({kind, value}) =>
    Array.isArray(value) && value.length > FEW_PLACES && kind !== 'histogram' && kind !== 'numbers';
  const rows = results.filter((r) => r.kind !== 'picture' && r.value !== undefined)
    .map((r) => `<dt>${escaped(counted(r) ? `number of ${r.kind}` : r.name)}</dt><dd>${resultHtml(r)}</dd>`);
  return rows.length === 0 ? '' : `<dl>${rows.join('')}</dl>`;
}

// The regions and points that are parameters, in the form of results.
function placesOf(fn, values) {
  const kinds = {region: 'rectangle', point: 'points'};
  return fn.parameters.filter((p) => p.kind in kinds).map((p) => ({kind: kinds[p.kind], value: values[p.name]}));
}

export class Examples {
  constructor(engine, folder) {
    Object.assign(this, {engine, folder});
    this.files = new Map();    // of pictures, by their content: equal pictures share a file
    this.results = new Map();  // the file of the last picture of each example, by the name of its function
  }

  // The HTML of all examples, by the names of their functions.
  all() {
    return new Map(functions.map((fn) => [fn.name, this.html(fn)]));
  }

  // The file of a picture.
  file(picture, name) {
    const bytes = png(reduced(picture));
    const content = createHash('sha256').update(bytes).digest('hex');
    if (!this.files.has(content)) {
      this.files.set(content, `pictures/${name}.png`);
      writeFileSync(join(this.folder, this.files.get(content)), bytes);
    }
    return this.files.get(content);
  }

  // The HTML of a picture with what is drawn over it.
  figure(picture, words, drawn, caption, file) {
    const {width, height} = reduced(picture);
    return `<figure><div><img src="${file}" width="${width}" height="${height}" alt="${words}" loading="lazy">
      ${drawn}</div><figcaption>${caption}</figcaption></figure>`;
  }

  // The HTML of a function's example.
  html(fn) {
    const {picture, steps} = fn.example;
    const pictures = [shippedPicture(picture)];
    let outcome;
    for (const step of steps) {
      outcome = this.engine.run(step, pictures.at(-1), pictures);
      pictures.push(outcome.picture);
    }
    const [before, after] = pictures.slice(-2);
    const values = withInitialValues(steps.at(-1), fn, before);
    const source = [picture, ...steps.slice(0, -1).map((step) => step.call)].join(' → ');
    const settings = escaped(Object.entries(values).map(([name, v]) => `${name} = ${valueText(v)}`).join(', '));
    const given = overlay(placesOf(fn, values), before, 'given');
    const found = overlay(outcome.results, after, 'found');

    const file = this.file(before, `${fn.name}_before`);
    const figures = [];
    if (fn.changesPicture) {
      const result = this.file(after, fn.name);
      if (fn.takes !== 'none') figures.push(this.figure(before, 'Before', given, source, file));
      figures.push(this.figure(after, 'After', found, settings || fn.name, result));
      this.results.set(fn.name, result);
    } else if (fn.takes !== 'none' || given || found) {
      figures.push(this.figure(before, 'The picture', given + found, `${source}<br>${settings}`, file));
    }
    return `<div class="example">${figures.join('')}${resultList(outcome.results)}
      <a class="try" href="playground.html#${encode(fn.example)}" aria-label="Try it: ${fn.name}">Try it</a></div>`;
  }
}
