// The numbers of a step: what the names in its formulas stand for, and what its calls receive.

import {fieldsOf} from './catalogue.js';
import {evaluate} from './formulas.js';

const RECTANGLE = ['left', 'top', 'right', 'bottom'];

/** The picture that a picture parameter's value names. `pictures` are the start and those after each earlier step. */
export const pictureNamed = (value, pictures) => pictures[value === 'start' ? 0 : value + 1];

/** The values of the names in a step's formulas. */
export function valuesOf(fn, parameters, picture, pictures) {
  const values = {width: picture.width, height: picture.height, channels: picture.channels};
  for (const p of fn.parameters) {
    const value = parameters[p.name];
    if (p.kind === 'picture') {
      const {width, height} = pictureNamed(value, pictures);
      Object.assign(values, {[`${p.name}.width`]: width, [`${p.name}.height`]: height});
    } else if (fieldsOf(p)) {
      for (const field of fieldsOf(p)) values[`${p.name}.${field}`] = value[field];
    } else {
      values[p.name] = value;
    }
  }
  return values;
}

/** The numbers among the arguments of a call, by name, as far as `values` gives them. */
export function numbersOf(call, values) {
  const numbers = {width: values.width, height: values.height, rows: values.height, channels: values.channels};
  for (const a of call.arguments) {
    if (a.type === 'tagRECT') {
      for (const field of RECTANGLE) numbers[`${a.name}.${field}`] = values[a.formula + field];
    } else if (a.formula !== undefined && !(a.formula in LATER && !(a.formula in values))) {
      numbers[a.name] = evaluate(a.formula, values);
    }
  }
  return numbers;
}

// Names that get values while a step runs.
const LATER = {'chain.x': 0, 'chain.y': 0, 'chain.N': 0, 'points.N': 0};
