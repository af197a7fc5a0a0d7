// The functions that make sense on a picture: what they take, which parameters a person chooses, and what they give.

import {evaluate} from './formulas.js';
import {Planner} from './planner.js';

const FIELDS = {
  region: ['left', 'top', 'right', 'bottom'],
  point: ['x', 'y'],
  colour: ['red', 'green', 'blue'],
};

/** All functions that the playground offers, in the order of boundary.json. `choices` is parameters.json. */
export function catalogue(boundary, choices) {
  const described = new Map(boundary.functions.map((f) => [f.plain_name, f]));
  const records = new Map(boundary.records.map(({name, fields}) => [name, fields]));
  return boundary.functions.filter((f) => leftOut(f, choices) === undefined)
      .map((f) => new Planner(f, described, records, choices).entry());
}

/** Why a function is not in the catalogue, or undefined. */
export function leftOut(f, choices) {
  const title = [f.plain_name, ...f.groups].find((name) => name in choices.leftOut);
  return title && choices.leftOut[title];
}

/** The range of a parameter for a picture. */
export function limits(parameter, picture) {
  const value = (formula) => (formula === undefined ? undefined : evaluate(formula, picture));
  return {least: value(parameter.least), most: value(parameter.most)};
}

/** The values with which a function starts on a picture. */
export function initialValues(fn, picture) {
  const whole = (formula) => Math.floor(evaluate(formula, picture));
  const value = ({kind, initial}) => {
    if (kind in FIELDS) return Object.fromEntries(FIELDS[kind].map((field) => [field, whole(initial[field])]));
    if (kind === 'integer') return whole(initial);
    return kind === 'real' ? evaluate(initial, picture) : initial;
  };
  return Object.fromEntries(fn.parameters.map((p) => [p.name, value(p)]));
}

/** The fields of a parameter's value, or undefined if it is one number, text or switch. */
export const fieldsOf = (parameter) => FIELDS[parameter.kind];
