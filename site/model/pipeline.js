// Pipelines: their form in an address, and what a step cannot take.

import {fieldsOf, initialValues, limits} from './catalogue.js';
import {evaluate} from './formulas.js';
import {numbersOf, pictureNamed, valuesOf} from './values.js';

/** The parameters of a step, with initial values where it states none. */
export function withInitialValues(step, fn, picture) {
  return {...initialValues(fn, picture), ...step.parameters};
}

/** Whether a step runs. Steps that are switched off leave the picture as it is. */
export const isOn = (step) => !step.off;

/** "coins/NuvGryAverageFilter,M=5/~NuvThreshold,T=90": readable. A step that is switched off begins with ~. */
export function encode({picture, steps}) {
  const text = (value) => encodeURIComponent(inOneText(value)).replace(/%3A/g, ':');
  const written = ({call, parameters = {}, off}) => [
    off ? `~${call}` : call, ...Object.entries(parameters).map(([name, value]) => `${name}=${text(value)}`),
  ].join(',');
  return [picture, ...steps.map(written)].join('/');
}

/** The state that encode() wrote. Values are checked by complaints(), because their kinds are in the catalogue. */
export function decode(text, functions) {
  const [picture, ...steps] = text.replace(/^#/, '').split('/');
  const known = new Map(functions?.map((f) => [f.name, f]));
  if (!/^[\w-]+$/.test(picture)) throw new Error(`The address names no picture: "${picture}".`);
  return {
    picture,
    steps: steps.filter((step) => step !== '').map((step) => {
      const [name, ...parameters] = step.split(',');
      const call = name.replace(/^~/, '');
      if (functions && !known.has(call)) throw new Error(`The address names a function that is not here: "${call}".`);
      const values = parameters.map((text) => decodedParameter(text, call, known.get(call)));
      return {call, ...(name === call ? {} : {off: true}), parameters: Object.fromEntries(values)};
    }),
  };
}

function decodedParameter(text, call, fn) {
  const [, name, value] = /^(\w+)=(.*)$/.exec(text) ?? [];
  if (name === undefined) throw new Error(`The address holds "${text}", which is no parameter of ${call}.`);
  return [name, decoded(unescaped(value), fn?.parameters.find((p) => p.name === name))];
}

function unescaped(text) {
  try {
    return decodeURIComponent(text);
  } catch {
    throw new Error(`The address holds "${text}", which is no text.`);
  }
}

// Regions, colours and points differ in the number of their fields.
const fieldsByNumber = (n) => fieldsOf({kind: {4: 'region', 3: 'colour', 2: 'point'}[n]});

function inOneText(value) {
  if (value === null || typeof value !== 'object') return String(value);
  return fieldsByNumber(Object.keys(value).length).map((field) => value[field]).join(':');
}

function decoded(text, parameter) {
  if (parameter?.kind === 'text') return text;
  if (text === 'true' || text === 'false') return text === 'true';
  if (/^-?\d+(\.\d+)?(e[-+]?\d+)?$/.test(text)) return Number(text);
  const numbers = text.split(':').map(Number);
  const fields = fieldsByNumber(numbers.length);
  if (!fields || numbers.some(Number.isNaN)) return text;
  return Object.fromEntries(fields.map((field, i) => [field, numbers[i]]));
}

/**
 * What the steps of a state cannot take.
 * @param pictures  the start and the pictures after the steps, as far as they are known
 */
export function complaints(state, functions, pictures) {
  const known = new Map(functions.map((f) => [f.name, f]));
  return state.steps.flatMap((step, index) => {
    if (!isOn(step) || !pictures[index]) return [];
    return stepComplaints(step, known, pictures[index], pictures.slice(0, index + 1))
        .map((complaint) => ({step: index, ...complaint}));
  });
}

/** What one step cannot take: [{parameter, sentence}]. */
export function stepComplaints(step, functions, picture, pictures) {
  const fn = functions.get(step.call);
  if (!fn) return [{sentence: `There is no function ${step.call}.`}];
  const kind = picture.channels === 3 ? 'colour' : 'gray';
  if (fn.takes === 'gray' && kind === 'colour') {
    return [{sentence: `${fn.name} takes a gray picture: put NuvRGB2Gry before it.`}];
  }
  if (fn.takes === 'colour' && kind === 'gray') {
    return [{sentence: `${fn.name} takes a colour picture: put NuvGry2RGBImg before it.`}];
  }
  const stranger = Object.keys(step.parameters ?? {}).find((name) => !fn.parameters.some((p) => p.name === name));
  if (stranger) return [{parameter: stranger, sentence: `${fn.name} has no parameter ${stranger}.`}];
  const parameters = withInitialValues(step, fn, picture);
  const found = fn.parameters.flatMap((p) => {
    const demand = wrong(p, parameters[p.name], fn, picture, pictures);
    return demand ? [{parameter: p.name, sentence: `${p.label} must be ${demand}.`}] : [];
  });
  return found.length ? found : forbidden(fn, parameters, picture, pictures);
}

// What the headers forbid: a function that is called with it may read beyond its memory.
function forbidden(fn, parameters, picture, pictures) {
  const values = valuesOf(fn, parameters, picture, (value) => pictureNamed(value, pictures));
  const {width, height} = picture;
  const found = [];
  const refuse = (formula, demand) => {
    const p = fn.parameters.find(({name}) => name === formula.split('.')[0]);
    if (found.some(({parameter}) => parameter === p.name)) return;
    found.push({parameter: p.name, sentence: `${p.label} must be ${demand}.`});
  };
  const inside = `inside the picture of ${width} by ${height} pixels`;
  const isInside = (left, right, top, bottom) =>
      left >= 0 && left <= right && right < width && top >= 0 && top <= bottom && bottom < height;
  for (const call of fn.calls) {
    const numbers = numbersOf(call, values);
    const {x1, x2, y1, y2} = numbers;
    if (call.regionsInside && !isInside(x1, x2, y1, y2)) refuse('region', inside);
    for (const a of call.arguments) {
      if (a.inside && !isInside(...['left', 'right', 'top', 'bottom'].map((f) => numbers[`${a.name}.${f}`]))) {
        refuse(a.formula, inside);
      }
      if (!a.range || !(a.name in numbers)) continue;
      const {least, most, demand} = a.range;
      const value = numbers[a.name];
      if ((least && value < evaluate(least, numbers)) || (most && value > evaluate(most, numbers))) {
        refuse(a.formula, demand);
      }
    }
  }
  if (fn.clearBorder && !hasClearBorder(picture)) {
    found.push({sentence: `${fn.name} takes a picture whose border is black: put NuvSetImageBoundary before it.`});
  }
  return found;
}

function hasClearBorder({width, height, data}) {
  return data.every((value, i) => value < 2 || (i % width > 0 && i % width < width - 1 && i >= width &&
                                               i < width * (height - 1)));
}

// What a value must be, or undefined if it is.
function wrong(p, value, fn, picture, pictures) {
  if (p.kind === 'picture') return wrongPicture(value, fn.memories, p, picture, pictures);
  if (p.kind === 'switch') return typeof value === 'boolean' ? undefined : 'true or false';
  if (p.kind === 'text') return /^[ -~]*$/.test(value) ? undefined : 'a text of plain characters';
  if (p.kind === 'option') {
    const values = p.options.map((option) => option.value);
    return values.includes(value) ? undefined : `one of ${values.join(', ')}`;
  }
  const fields = fieldsOf(p);
  if (fields) {
    if (!fields.every((field) => isInteger32(value?.[field]))) return `integers: ${fields.join(', ')}`;
    const isByte = (field) => value[field] >= 0 && value[field] <= 255;
    return p.kind === 'colour' && !fields.every(isByte) ? 'from 0 to 255 each' : undefined;
  }
  const {least, most} = limits(p, picture);
  if (p.kind === 'integer' ? !isInteger32(value) : !Number.isFinite(value)) {
    return p.kind === 'integer' ? 'a whole number' : 'a number';
  }
  return value < least || value > most ? `from ${least} to ${most}` : undefined;
}

const isInteger32 = (value) => Number.isInteger(value) && value === (value | 0);

function wrongPicture(value, memories, p, picture, pictures) {
  const other = value === 'start' || value >= 0 ? pictureNamed(value, pictures) : undefined;
  if (!other) return '"start" or the number of an earlier step';
  const memory = Object.values(memories).find((m) => m.picture === p.name);
  if (memory?.takes === 'gray' && other.channels !== 1) return 'a gray picture';
  if (memory?.takes === 'colour' && other.channels !== 3) return 'a colour picture';
  if (memory?.takes === 'either' && other.channels !== picture.channels) return 'of the same kind as the current one';
  const size = ({width, height}) => `${width} by ${height}`;
  if (memory?.anySize || size(other) === size(picture)) return undefined;
  return `of ${size(picture)} pixels like the current one, not ${size(other)}`;
}
