// The functions that make sense on a picture, planned from boundary.json: what they take, which parameters a person
// chooses, what they give, and the calls that a step consists of.
//
// A number of a call is bound to a formula over these names:
//
//     width, height, channels     of the current picture
//     M, region.left, point.x     parameters and their fields
//     from.width, from.height     sizes of another picture, if the parameter is called `from`
//     chain.x, chain.y, chain.N   the contour that is traced in the current picture
//     points.N                    the number of points that are collected from the current picture
//
// A pointer of a call is bound to a memory of the step: {from: ...}
//
//     "picture"    the picture that `picture` names: "current" or a parameter; `copy` if the call changes it
//     "new"        zeroed memory: results and work space
//     "text"       a parameter
//     "chain"      the codes of the largest contour that NuvGetContours found
//     "points"     the columns or rows of the white pixels; `field` is "x" or "y"

import {evaluate} from './formulas.js';

const FIELDS = {
  region: ['left', 'top', 'right', 'bottom'],
  point: ['x', 'y'],
  colour: ['red', 'green', 'blue'],
};

// Consecutive numbers that are one parameter: their names, its kind, and for each number a field.
const GROUPS = [
  ['x1 x2 y1 y2', 'region', 'region.left region.right region.top region.bottom'],
  ['x1 y1 x2 y2', 'point', 'point1.x point1.y point2.x point2.y'],
  ['x3 y3', 'point', 'point3.x point3.y'],
  ['x y', 'point', 'point.x point.y'],
  ['x0 y0', 'point', 'point.x point.y'],
  ['px py', 'point', 'point.x point.y'],
  ['cx cy', 'point', 'centre.x centre.y'],
  ['r g b', 'colour', 'colour.red colour.green colour.blue'],
  ['b g r', 'colour', 'colour.blue colour.green colour.red'],
  ['colorR colorG colorB', 'colour', 'colour.red colour.green colour.blue'],
  ['bkR bkG bkB', 'colour', 'background.red background.green background.blue'],
  ['fgR fgG fgB', 'colour', 'foreground.red foreground.green foreground.blue'],
].map(grouped);

function grouped([names, kind, fields]) {
  return {names: names.split(' '), kind, fields: fields.split(' ')};
}

// Outputs that are one result: their names, the kind, and the fields in the same order.
const OUTPUTS = [
  ['pX1 pY1 pX2 pY2', 'segments', 'x1 y1 x2 y2'],
  ['pX1 pX2 pY1 pY2', 'rectangle', 'left right top bottom'],
  ['pMinX pMaxX pMinY pMaxY', 'rectangle', 'left right top bottom'],
  ['pX pY', 'points', 'x y'],
  ['pMaxX pMaxY', 'points', 'x y'],
  ['pKeyX pKeyY', 'points', 'x y'],
  ['pPolyX pPolyY', 'points', 'x y'],
].map(grouped);

// Outputs that repeat the size of a result.
const SIZES = /^p(Res|New)(Width|Height)$/;

const base = (a) => a.type.replace('const ', '').replace(/\*$/, '');
const isPointer = (a) => a.type.endsWith('*');
const isImage = (a) => base(a) === 'uint8_t' && (a.shape !== undefined || (/Img/.test(a.name) && a.count === 'N') ||
                                                a.tail !== undefined);
const plainName = (name) => name.replace(/^p+(?=[A-Z])/, '');

/** All functions that the playground offers, in the order of boundary.json. */
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
  const value = (initial, kind) => {
    if (kind in FIELDS) {
      return Object.fromEntries(FIELDS[kind].map((field) => [field, Math.floor(evaluate(initial[field], picture))]));
    }
    if (kind === 'integer') return Math.floor(evaluate(initial, picture));
    return kind === 'real' ? evaluate(initial, picture) : initial;
  };
  return Object.fromEntries(fn.parameters.map((p) => [p.name, value(p.initial, p.kind)]));
}

/** The fields of a parameter's value, or undefined if it is one number, text or switch. */
export const fieldsOf = (parameter) => FIELDS[parameter.kind];

class Planner {
  constructor(f, described, records, choices) {
    Object.assign(this, {f, described, records, choices});
    this.own = choices.functions[f.plain_name] ?? {};
    this.parameters = new Map();
    this.memories = {};
    this.calls = [];
    this.takes = undefined;
  }

  entry() {
    const {f, own} = this;
    for (const name of own.first ?? []) this.add(this.described.get(name), false);
    const main = this.add(f, true);
    if (own.after) this.add(this.described.get(own.after), false).lines = true;
    const picture = this.picture(main);
    const results = this.results(main, picture);
    return {
      name: f.plain_name, cppName: f.name, brief: f.doc.brief, text: f.doc.text, notes: f.doc.notes,
      references: f.doc.references, rooms: f.groups, link: f.plain_name,
      takes: this.takes ?? 'none',
      example: this.example(main),
      parameters: [...this.parameters.values()],
      results: picture ? [picture, ...results] : results,
      changesPicture: picture !== undefined,
      // What the engine and code() need: the calls, the one among them that gives the results, and their memory.
      calls: this.calls, main: this.calls.indexOf(main), memories: this.memories, tells: this.tells(main, picture),
      clearBorder: own.clearBorder,
    };
  }

  // Binds the arguments of a function and adds the call. Memories of other calls than the main one get the
  // function's name before their own. `fixed` gives numbers that are no parameters, and `source` the parameter that is
  // taken in place of the current picture.
  add(f, main, fixed = {}, source = 'current') {
    const call = {name: f.plain_name, cppName: f.name, result: f.result, resultMemory: f.result_memory,
                  returns: f.doc.returns, regionsInside: f.regions_inside, record: this.records.get(f.result.replace(/\*$/, '')),
                  arguments: f.arguments.map((a) => ({...a, ...(main && a.type === 'tagRECT' && this.own.inside ? {inside: true} : {})}))};
    const numbers = new Map(f.arguments.filter((a) => !isPointer(a)).map((a) => [a.name, a]));
    const bound = new Map(Object.entries(fixed));
    const bind = (name, formula) => numbers.has(name) && !bound.has(name) && bound.set(name, formula);
    const memory = (a, kind) => {
      const key = main ? a.name : `${f.plain_name}.${a.name}`;
      this.memories[key] = kind;
      a.memory = key;
    };

    const images = call.arguments.filter(isImage);
    const chain = f.arguments.some((a) => a.name === 'pChainCode' && a.direction === 'in');
    const current = this.current(f, images, chain);
    for (const a of call.arguments.filter(isPointer)) {
      const type = base(a);
      if (type === 'char') {
        memory(a, {from: 'text', parameter: this.parameter(f, a, plainName(a.name), 'text').name});
      } else if (a === current) {
        if (source === 'current') this.takes = takes(a);
        memory(a, {from: 'picture', picture: source, takes: takes(a), copy: a.direction === 'inout', tail: a.tail});
        this.bindSizes(a, bind, source === 'current' ? '' : `${source}.`);
      } else if (isImage(a) && a.name === 'pResImg' && a.direction === 'inout' && !a.keeps && a.role !== 'pasted_into') {
        memory(a, {from: 'picture', picture: 'current', copy: true});
      } else if (isImage(a) && (a.direction === 'in' || (a.direction === 'inout' && !a.keeps && a.role !== 'result'))) {
        const parameter = this.parameter(f, a, plainName(a.name), 'picture');
        const anySize = a.shape && current?.shape && a.shape[1] !== current.shape[1];
        memory(a, {from: 'picture', picture: parameter.name, takes: takes(a), copy: a.direction === 'inout', anySize});
        if (a.shape) this.bindSizes(a, bind, `${parameter.name}.`);
      } else if (a.name === 'pChainCode' && a.direction === 'in') {
        this.trace();
        a.memory = 'chain';
        for (const name of ['x', 'y', 'N']) bind(name, `chain.${name}`);
      } else if (/^p[XY]$/.test(a.name) && a.direction !== 'out' && a.count !== '1') {
        a.memory = this.points(a);
        bind('N', this.own.points === 'contour' ? 'chain.N' : 'points.N');
      } else if (a.direction === 'in') {
        a.memory = this.made(f, a, bind);
      } else {
        const rows = a.shape && ['y2+1', 'rows'].includes(a.shape[0]) ? ['height', ...a.shape.slice(1)] : a.shape;
        memory(a, {from: 'new', type, record: this.records.get(type), count: a.count, shape: rows ?? frameShape(a), work: a.direction === 'work' ||
                   a.role === 'scratch', preset: this.own.preset?.[a.name]});
      }
    }
    if (main && this.own.bind) this.trace();
    for (const [name, formula] of Object.entries(main ? this.own.bind ?? {} : {})) bind(name, formula);
    for (const name of ['width', 'height']) bind(name, name);
    bind('bRGB', 'channels > 1');
    call.capacity = f.lists?.capacity;
    if (call.capacity) bind(call.capacity, 'width*height');
    this.bindParameters(f, [...numbers.values()].filter((a) => !bound.has(a.name)), bound);
    for (const a of call.arguments) if (bound.has(a.name)) a.formula = bound.get(a.name);
    this.calls.push(call);
    return call;
  }

  // The image that is the current picture: one that the function changes before one that it reads.
  current(f, images, chain) {
    const pasted = images.find((a) => a.role === 'pasted_into');
    if (pasted) return pasted;
    const changed = images.find((a) => a.direction === 'inout' && a.name !== 'pResImg');
    if (changed) return changed;
    return images.find((a) => a.direction === 'in' && !(chain && a.name === 'pGryImg'));
  }

  // The rows and columns that a picture knows.
  bindSizes(a, bind, owner) {
    if (!a.shape) return a.count === 'N' && bind('N', 'width*height*channels');
    bind(a.shape[0], `${owner}height`);
    bind(a.shape[1], `${owner}width`);
  }

  // The largest contour of the current picture.
  trace() {
    if ('chain' in this.memories) return;
    this.memories.chain = {from: 'chain'};
    this.takes ??= 'gray';
    const call = this.add(this.described.get('NuvGetContours'), false, {minPerimeter: '8', minArea: '1', mode: '1'});
    call.traces = true;
  }

  // The white pixels of the current picture, or the positions of its largest contour.
  points(a) {
    if (this.own.points === 'contour') {
      this.trace();
      if (!('NuvChain2Points.pX' in this.memories)) this.add(this.described.get('NuvChain2Points'), false);
      return `NuvChain2Points.${a.name}`;
    }
    this.takes ??= 'gray';
    const field = a.name === 'pX' ? 'x' : 'y';
    this.memories[`points.${field}`] ??= {from: 'points', field};
    return `points.${field}`;
  }

  // Data that are computed from the picture before the call. Returns the name of the memory.
  made(f, a, bind) {
    const prepare = (name, output, takes, source) => {
      this.takes ??= takes;
      const key = `${name}.${output}`;
      if (!(key in this.memories)) this.add(this.described.get(name), false, {}, source);
      return key;
    };
    if (a.name === 'pTargetHistogram') {
      return prepare('NuvGetHistogram', 'pHistogram', 'gray', this.parameter(f, a, 'Target', 'picture').name);
    }
    if (/Histogram$/.test(a.name)) {
      bind(a.count, '256');
      return prepare('NuvGetHistogram', 'pHistogram', 'gray');
    }
    if (/^p(Prj|Data)$/.test(a.name) && base(a) === 'int32_t') {
      const rows = /height/.test(a.count);
      bind('N', rows ? 'height' : 'width');
      return prepare('NuvGryImgPrjXY', rows ? 'pPrjY' : 'pPrjX', 'gray');
    }
    const format = /CbYCrY|YUV420SP|YUV420P|YUV422P/.exec(f.plain_name);
    if (format && base(a) === 'uint8_t') {
      const output = format[0] === 'CbYCrY' ? 'pCbYCrYImg' : 'pYUVImg';
      return prepare(`NuvRGB2${format[0]}`, output, 'colour');
    }
    throw new Error(`${f.plain_name}: parameters.json must say why it is left out, or where ${a.name} comes from`);
  }

  // Makes parameters of the numbers that nothing else gives.
  bindParameters(f, numbers, bound) {
    for (let i = 0; i < numbers.length;) {
      const group = GROUPS.find(({names}) => names.every((name, k) => numbers[i + k]?.name === name));
      const {names, kind, fields} = this.own.groups ? grouped(this.own.groups) : group ?? {names: [numbers[i].name]};
      if (kind) {
        names.forEach((name, k) => {
          this.parameter(f, numbers[i + k], fields[k].split('.')[0], kind);
          bound.set(name, fields[k]);
        });
      } else {
        const a = numbers[i];
        const {name} = this.parameter(f, a, a.name, KINDS[a.type]);
        bound.set(a.name, a.type === 'tagRECT' ? `${name}.` : name);
      }
      i += names.length;
    }
  }

  // The parameter of this name, made when it is first met.
  parameter(f, a, name, kind) {
    if (!this.parameters.has(name)) {
      const {parameters} = this.choices;
      const chosen = {...parameters[kind], ...parameters[name], ...this.choices.parametersOf[this.f.plain_name]?.[name]};
      const help = chosen.help ?? a.doc;
      this.parameters.set(name, {
        name, label: chosen.label ?? name, kind: chosen.options ? 'option' : kind, least: chosen.least,
        most: chosen.most, step: chosen.step ?? (kind === 'integer' ? 1 : undefined), initial: chosen.initial,
        options: chosen.options, help: help && help[0].toUpperCase() + help.slice(1),
      });
    }
    return this.parameters.get(name);
  }

  // A state that shows what the function does.
  example(main) {
    const {own} = this;
    const wantsBinary = Object.keys(this.memories).some((key) => key === 'chain' || key.startsWith('points.')) ||
        main.arguments.some((a) => /^p(Bin|Edge)Img$/.test(a.name) && this.memories[a.memory].picture === 'current');
    const before = own.before ?? (wantsBinary ? this.choices.binary : []);
    const step = {call: this.f.plain_name, parameters: own.example ?? {}};
    return {picture: own.picture ?? this.choices.pictures[this.takes ?? 'none'], steps: [...before, step]};
  }

  // The memory that is the step's result picture: a result before a changed picture.
  picture(main) {
    if (this.own.measures) return undefined;
    if (main.resultMemory === 'delete[]') return {name: 'result', kind: 'picture', help: main.returns};
    const pictures = main.arguments.filter((a) => this.isResultPicture(a));
    const a = pictures.find((b) => b.name === 'pResImg') ?? pictures[0];
    return a && {name: plainName(a.name), kind: 'picture', help: a.doc, memories: [a.memory]};
  }

  // Whether a bool is an answer. Functions that make a picture return it to say that they succeeded.
  tells(main, picture) {
    return this.own.tells ?? picture === undefined;
  }

  isResultPicture(a) {
    const m = this.memories[a.memory];
    return m !== undefined && a.direction !== 'in' && (m.from === 'picture' ? m.copy : m.from === 'new' && m.shape !== undefined && !m.work &&
                               m.type === 'uint8_t');
  }

  // What the step gives besides its picture.
  results(main, picture) {
    const results = [];
    const lists = this.f.lists?.outputs ?? [];
    const kind = {int32_t: 'number', double: 'number', bool: 'text', 'NUV_CONTOUR_STRUCT*': 'contours',
                  'RegionStruct*': 'regions'}[main.result];
    const success = main.result === 'bool' && !this.tells(main, picture);
    if (kind && !success && !lists.length) {
      const name = kind === 'contours' || kind === 'regions' ? kind : 'result';
      results.push({name, label: this.choices.results[name], kind, help: main.returns});
    }
    const outputs = main.arguments.filter((a) => this.isOutput(a) && a.memory !== picture?.memories?.[0]);
    for (let i = 0; i < outputs.length;) {
      const group = OUTPUTS.find(({names}) => names.every((name, k) => outputs[i + k]?.name === name));
      const members = outputs.slice(i, i + (group?.names.length ?? 1));
      const [a] = members;
      const name = members.map((b) => plainName(b.name)).join(' ');
      results.push({
        name,
        label: this.choices.results[name],
        kind: group?.kind ?? (this.isResultPicture(a) ? 'picture' : kindOf(a)), help: a.doc,
        memories: members.map((b) => b.memory), fields: group?.fields, counted: lists.includes(a.name),
      });
      i += members.length;
    }
    if (this.own.after) results.push({name: 'segments', label: this.choices.results.segments, kind: 'segments', help: 'The fitted lines.', from: 'after'});
    return results;
  }

  isOutput(a) {
    if (!isPointer(a) || a.direction === 'in' || SIZES.test(a.name)) return false;
    const m = this.memories[a.memory];
    return m.from === 'new' ? !m.work : this.isResultPicture(a) && !this.own.measures;
  }
}

const KINDS = {int32_t: 'integer', uint32_t: 'integer', uint8_t: 'integer', double: 'real', bool: 'switch',
               tagRECT: 'region'};

// What kind of picture an image argument takes.
function takes(a) {
  if (!a.shape) return a.tail === undefined ? 'either' : 'gray';
  return a.shape.length === 2 ? 'gray' : a.shape[2] === 3 ? 'colour' : 'either';
}

// Camera frames are shown as gray pictures of their bytes.
function frameShape(a) {
  if (!/^p(CbYCrY|YUV|Res)Img$/.test(a.name)) return undefined;
  return {'width*height*2': ['height', '2*width'], 'width*height*3/2': ['height*3/2', 'width'],
          '(x2-x1+1)*(y2-y1+1)*2': ['y2-y1+1', '2*(x2-x1+1)'],
          '(x2-x1+1)*(y2-y1+1)*3/2': ['(y2-y1+1)*3/2', 'x2-x1+1'],
          '6*width*height': ['6*height', 'width'], N: ['height', 'width', 'channels']}[a.count];
}

function kindOf(a) {
  const type = base(a);
  if (type === 'RLX' || type === 'RLY') return 'segments';
  if (type === 'tagRECT') return 'rectangle';
  if (a.count === '1') return 'number';
  return /Histogram$/.test(a.name) ? 'histogram' : 'numbers';
}
