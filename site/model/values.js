// The numbers of a step: what the names in its formulas stand for, and what its calls receive.

import {fieldsOf} from './catalogue.js';
import {evaluate} from './formulas.js';

/** The ends of a rectangle in the order of tagRECT. */
export const RECTANGLE = ['left', 'top', 'right', 'bottom'];

/** The picture that a picture parameter's value names. `pictures` are the start and those after each earlier step. */
export const pictureNamed = (value, pictures) => pictures[value === 'start' ? 0 : value + 1];

/**
 * The values of the names in a step's formulas: numbers, or names in programs for the sizes of pictures.
 * @param pictureOf  the picture that a value of a picture parameter names
 */
export function valuesOf(fn, parameters, picture, pictureOf) {
  const {width, height, channels} = picture;
  const values = {width, height, channels, rows: height};
  for (const p of fn.parameters) {
    const value = parameters[p.name];
    if (p.kind === 'picture') {
      const other = pictureOf(value);
      Object.assign(values, {[`${p.name}.width`]: other.width, [`${p.name}.height`]: other.height});
    } else if (fieldsOf(p)) {
      for (const field of fieldsOf(p)) values[`${p.name}.${field}`] = value[field];
    } else if (p.kind !== 'text') {
      values[p.name] = Number(value);
    }
  }
  return values;
}

/** The numbers among the arguments of a call, by name. Some are known only when the calls before have been made. */
export function numbersOf(call, values) {
  const {width, height, channels, rows} = values;
  const numbers = {width, height, channels, rows};
  for (const a of call.arguments) {
    if (a.type === 'tagRECT') {
      for (const field of RECTANGLE) numbers[`${a.name}.${field}`] = values[a.formula + field];
    } else if (a.formula in values || (a.formula !== undefined && !/^(chain|points)\./.test(a.formula))) {
      numbers[a.name] = evaluate(a.formula, values);
    }
  }
  return numbers;
}

/** Width, height and channels of the picture after a step. */
export function pictureAfter(fn, parameters, picture, pictureOf) {
  if (!fn.changesPicture) return picture;
  const [result] = fn.results;
  if (!result.memories) return turned(picture, parameters.angle);
  const {shape} = fn.memories[result.memories[0]];
  if (!shape) return picture;
  const numbers = numbersOf(fn.calls[fn.main], valuesOf(fn, parameters, picture, pictureOf));
  const [height, width, channels = 1] = shape.map((size) => evaluate(size, numbers));
  return {width, height, channels};
}

// The size of the picture that NuvRotateImgByCCS gives.
function turned({width, height}, angle) {
  const [c, s] = [Math.cos, Math.sin].map((f) => Math.trunc(1024 * f((angle * 3.1415926) / 180)));
  const corners = [[0, 0], [width - 1, 0], [0, height - 1], [width - 1, height - 1]];
  const moved = [([x, y]) => (x * c - y * s) >> 10, ([x, y]) => (x * s + y * c) >> 10];
  const places = moved.map((move) => corners.map(move));
  const [w, h] = places.map((list) => Math.max(...list) - Math.min(...list) + 1);
  return {width: w, height: h, channels: 1};
}
