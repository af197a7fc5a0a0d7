// The example of each function: a pipeline that ends with it, run by the library, its pictures, and its HTML.

import {createHash} from 'node:crypto';
import {readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {catalogue} from '../model/catalogue.js';
import {Engine} from '../model/engine.js';
import {encode, withInitialValues} from '../model/pipeline.js';
import {escaped} from './html.mjs';
import {bars, overlay, png, readPicture, reduced} from './pictures.mjs';

const number = (v) => (Number.isInteger(v) ? String(v) : String(Number(v.toPrecision(6))));
const valueText = (v) => (typeof v === 'object' ? Object.entries(v).map(([k, n]) => `${k} ${number(n)}`).join(', ')
  : typeof v === 'number' ? number(v) : String(v));

const MOST_BARS = 1024;
const MOST_NUMBERS = 8;
const numberList = (values) => escaped(values.slice(0, MOST_NUMBERS).map(number).join(', ')) +
  (values.length > MOST_NUMBERS ? `, ... (${values.length} numbers)` : '');

// The numbers of a step's results as a list.
function resultList(results) {
  const rows = results.filter((r) => r.kind !== 'picture' && r.value !== undefined).map(({name, kind, value}) => {
    if (kind === 'histogram' || kind === 'numbers')
      return [name, value.length > 8 && value.length <= MOST_BARS ? bars(value) : numberList(value)];
    if (Array.isArray(value)) return [`number of ${kind}`, String(value.length)];
    return [name, escaped(valueText(value))];
  });
  return rows.length && `<dl>${rows.map(([name, html]) => `<dt>${escaped(name)}</dt><dd>${html}</dd>`).join('')}</dl>`;
}

// What a parameter draws over the picture before the call.
function shapeOfParameter(kind, value) {
  if (kind === 'region') return [{kind: 'rectangle', value}];
  return kind === 'point' ? [{kind: 'points', value: [value]}] : [];
}

export class Examples {
  static async load(root, module, folder) {
    const read = (path) => JSON.parse(readFileSync(join(root, path)));
    const functions = catalogue(read('boundary/boundary.json'), read('bindings/web/parameters.json'));
    const engine = await Engine.load(await WebAssembly.compile(readFileSync(module)), functions);
    const pictures = new Map(read('site/model/pictures.json')
      .map(({name, file}) => [name, readPicture(join(root, file))]));
    return Object.assign(new Examples(), {functions, engine, pictures, folder, files: new Map(),
      results: new Map()});
  }

  // The HTML of a picture, which becomes a PNG file. Equal pictures share a file.
  picture(full, words, name) {
    const picture = reduced(full);
    const bytes = png(picture);
    const hash = createHash('sha256').update(bytes).digest('hex');
    if (!this.files.has(hash)) {
      this.files.set(hash, `pictures/${name}.png`);
      writeFileSync(join(this.folder, this.files.get(hash)), bytes);
    }
    this.results.set(name, this.files.get(hash));
    return `<img src="${this.files.get(hash)}" width="${picture.width}" height="${picture.height}"
      alt="${escaped(words)}" loading="lazy">`;
  }

  // The HTML of a function's example.
  html(fn) {
    const state = fn.example;
    const pictures = [this.pictures.get(state.picture)];
    let outcome;
    for (const step of state.steps) {
      outcome = this.engine.run(step, pictures.at(-1), pictures);
      pictures.push(outcome.picture);
    }
    const [before, after] = pictures.slice(-2);
    const source = escaped([state.picture, ...state.steps.slice(0, -1).map((step) => step.call)].join(', '));
    const values = withInitialValues(state.steps.at(-1), fn, before);
    const parameters = Object.entries(values).map(([name, v]) => `${name} = ${valueText(v)}`);
    const given = overlay(fn.parameters.flatMap(({name, kind}) => shapeOfParameter(kind, values[name])), before, 'given');
    const found = overlay(outcome.results, after, 'found');
    const caption = escaped(parameters.join(', '));
    const [shown, changed] = fn.changesPicture ? [given, true] : [given + found, false];
    const figures = [];
    const figure = (picture, words, name, drawn, text) => figures.push(`<figure><div>
      ${this.picture(picture, words, name)}${drawn}</div><figcaption>${text}</figcaption></figure>`);
    if (fn.takes !== 'none' || shown)
      figure(before, changed ? 'Before' : 'The picture', `${fn.name}_before`, shown, changed ? source : `${source}<br>${caption}`);
    if (changed) figure(after, 'After', fn.name, found, caption || fn.name);
    return `<div class="example">${figures.join('')}${resultList(outcome.results) || ''}
      <a class="try" href="playground.html#${encode(state)}" aria-label="Try it: ${fn.name}">Try it</a></div>`;
  }
}
