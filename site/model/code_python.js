// Programs in Python. The package leaves out what arrays know, and returns results instead of writing to memory.

import {print, substitute} from './formulas.js';
import {Names, pictureName, PRINTED, resultName, wordsOf, wrapped} from './words.js';

export function codeInPython(steps) {
  const program = new Program();
  steps.forEach((step) => program.step(step));
  return program.text();
}

/** XOfRow becomes x_of_row. */
const snake = (name) => name.replace(/([a-z\d])([A-Z])/g, '$1_$2').replace(/^\d/, '_$&').toLowerCase();
const plain = (name) => name.replace(/^p+(?=[A-Z])/, '');
const isPointer = (a) => a.type.endsWith('*');

// A number of elements from which one argument follows: N itself, or N within a limit.
const COUNTED = /^\(?(\w+)(?: > 1 \? \1 : 1\)| < \w+ \? \1 : \w+\))?$/;

// What an argument is in Python, as the package plans it: "number", "known" to an array, "in", "changed" in a copy that is
// returned, "result", "scalar" or "work".
function roles(call) {
  const numbers = new Set(call.arguments.filter((a) => !isPointer(a)).map((a) => a.name));
  const role = new Map(call.arguments.map((a) => [a.name, isPointer(a) ? pointerRole(a) : 'number']));
  for (const a of call.arguments) {
    if (!['in', 'changed'].includes(role.get(a.name)) || a.type.endsWith('char*')) continue;
    const shape = a.tail ? ['height', 'width'] : a.shape;
    const known = shape ? shape.map((size) => (size === '(bRGB ? 3 : 1)' ? 'bRGB' : size)) : [COUNTED.exec(a.count ?? '')?.[1]];
    for (const name of known) if (numbers.has(name)) role.set(name, 'known');
  }
  if (call.capacity) role.set(call.capacity, 'known');
  return role;
}

function pointerRole(a) {
  if (a.role === 'scratch' || a.direction === 'work') return 'work';
  if (a.direction === 'in') return 'in';
  if (a.direction === 'out') return a.count === '1' ? 'scalar' : 'result';
  const kept = a.keeps && (a.name === 'pResImg' || !a.shape) && a.role !== 'pasted_into';
  return kept || a.role === 'result' ? 'result' : 'changed';
}

class Program {
  constructor() {
    this.names = new Names(['sys', 'numpy', 'nuv', 'len', 'max', 'min', 'print', 'list', 'c', 'x', 'y', 'r', 'n', 'value', 'str', 'int',
                            'import', 'in', 'is', 'lambda', 'not', 'or', 'and', 'if', 'else', 'for']);
    this.lines = [];
    const name = this.names.take('picture');
    this.pictures = [picture(name)];
  }

  say(text = '') {
    this.lines.push(...wrapped(text, '#', 'f'));
  }

  step(step) {
    const {fn} = step;
    const current = this.pictures[this.pictures.length - 1];
    this.say();
    this.say(`# ${fn.brief}`);
    const state = {step, current, memory: {},
                   words: {...wordsOf(step, current, this.pictures), channels: step.picture.channels}};
    const returned = fn.calls.map((call) => this.call(state, call));
    this.print(step, state.memory, returned);
    const [result] = fn.results;
    const name = !fn.changesPicture ? current.name : result.memories ? state.memory[result.memories[0]] : returned[fn.main];
    this.pictures.push(fn.changesPicture ? picture(name) : current);
  }

  // Makes a call; names for its results are kept in state.memory. Returns the name of what the function itself returns.
  call(state, call) {
    const {step: {fn, parameters}, words, memory, current} = state;
    const role = roles(call);
    if (call.arguments.some((a) => a.memory?.startsWith('points.'))) this.points(state);
    const texts = call.arguments.filter((a) => ['number', 'in', 'changed'].includes(role.get(a.name))).map((a) => {
      const m = fn.memories[a.memory];
      if (a.type === 'tagRECT') {
        return `(${['left', 'top', 'right', 'bottom'].map((f) => words[a.formula + f]).join(', ')})`;
      }
      if (a.formula !== undefined) return literal(substitute(a.formula, words), a.type);
      if (m.from === 'text') return JSON.stringify(parameters[m.parameter]);
      if (m.from === 'picture') return m.picture === 'current' ? current.name : this.pictures[parameters[m.picture]].name;
      return memory[a.memory];
    });
    const preset = call.arguments.find((a) => fn.memories[a.memory]?.preset);
    if (preset) {
      const {type, preset: field, record} = fn.memories[preset.memory];
      const records = this.names.take('records');
      const start = record.map(({name}) => (name === field ? -1 : 0)).join(', ');
      this.usesNumpy = true;
      this.say(`${records} = numpy.full(${current.name}.size, numpy.array((${start}), nuv.${type}))`);
      texts.push(`out=${records}`);
    }
    const text = `nuv.${call.name}(${texts.join(', ')})`;
    const outputs = call.arguments.filter((a) => isPointer(a) && ['changed', 'result', 'scalar'].includes(role.get(a.name)));
    const main = call === fn.calls[fn.main];
    const fields = (call.result === 'void' ? [] : ['result']).concat(outputs.map((a) => plain(a.name)));
    if (!main && call.result !== 'void' && outputs.length === 0 && !call.lines) {
      this.say(call.result === 'bool' ? `if not ${text}:` : text);
      if (call.result === 'bool') this.say(`    sys.exit("${call.name} failed")`);
      return undefined;
    }
    if (fields.length === 0) {
      this.say(text);
      return undefined;
    }
    const channels = main && fn.changesPicture && fn.results[0].memories ? Number(substitute(
        fn.memories[fn.results[0].memories[0]].shape?.[2] ?? 1, {...words, bRGB: words.channels > 1})) : 1;
    const made = main && fn.changesPicture;
    const isPicture = made && (fields.length === 1);
    const name = this.names.take(isPicture ? pictureName(fn, channels) : fields.length === 1 && outputs.length ?
        snake(fields[0]) : snake(resultName(call)) || 'found');
    this.say(`${name} = ${text}`);
    const field = (f) => (fields.length === 1 ? name : `${name}.${f}`);
    for (const a of outputs) memory[a.memory] = field(plain(a.name));
    if (preset) {
      const {memory: key} = preset;
      const {preset: mark} = fn.memories[key];
      memory[key] = `${memory[key]}[${memory[key]}["${mark}"] >= 0]`;
    }
    if (call.traces) {
      this.largest(state, field('result'));
      return undefined;
    }
    if (main && call.result === 'bool' && !fn.tells) {
      this.say(`if not ${field('result')}:`);
      this.say(`    sys.exit("${call.name} failed")`);
    }
    if (made && !isPicture) this.unpack(state, call, channels, field);
    else if (isPicture) this.reshape(state, name);
    return call.result === 'void' ? undefined : made && call.resultMemory ? memory.result : field('result');
  }

  // Gives the result picture a name of its own.
  unpack({step: {fn}, memory, words}, call, channels, field) {
    const name = this.names.take(pictureName(fn, channels));
    const key = fn.results[0].memories?.[0];
    this.say(`${name} = ${key ? memory[key] : field('result')}`);
    memory[key ?? 'result'] = name;
    if (key) this.reshape({step: {fn}, words}, name);
  }

  // Camera frames come as lists of bytes.
  reshape({step: {fn}, words}, name) {
    const key = fn.results[0].memories?.[0];
    const m = fn.memories[key];
    const a = fn.calls[fn.main].arguments.find((b) => b.memory === key);
    if (!m?.shape || a.shape || m.from !== 'new' || a.count === 'N') return;
    const trees = {width: words.width, height: words.height, rows: words.height, channels: words.channels};
    for (const b of fn.calls[fn.main].arguments) if (b.formula) trees[b.name] = substitute(b.formula, words);
    const [height, width] = m.shape.map((size) => print(substitute(size, trees), true));
    this.say(`${name} = ${name}.reshape(${height}, ${width})`);
  }

  points({current, words, memory}) {
    if ('points.x' in memory) return;
    const [ys, xs] = ['ys', 'xs'].map((name) => this.names.take(name));
    this.usesNumpy = true;
    this.say(`${ys}, ${xs} = numpy.nonzero(${current.name} == 255)`);
    Object.assign(memory, {'points.x': xs, 'points.y': ys});
    words['points.N'] = `${xs}.size`;
  }

  // The contour of the largest area.
  largest({words, memory}, list) {
    const name = this.names.take('largest');
    this.say(`if not ${list}:`);
    this.say('    sys.exit("the picture has no contour")');
    this.say(`${name} = max(${list}, key=lambda c: c.area)`);
    Object.assign(words, {'chain.x': `${name}.x`, 'chain.y': `${name}.y`, 'chain.N': `${name}.ChainCode.size`});
    memory.chain = `${name}.ChainCode`;
  }

  print({fn}, memory, returned) {
    const value = returned[fn.main];
    const {result} = fn.calls[fn.main];
    let single = [];
    const printSingle = () => {
      if (single.length) this.say(`print(f"${fn.name}: ${single.join(', ')}")`);
      single = [];
    };
    for (const r of fn.results.filter(({kind}) => kind !== 'picture')) {
      const m = r.memories && fn.memories[r.memories[0]];
      if (!isSingle(r, m)) printSingle();
      if (r.kind === 'contours' || r.kind === 'regions') {
        this.printRecords(fn, value, PRINTED[r.kind], (name) => `${name} {r.${name}}`);
      } else if (r.from === 'after') {
        this.printRecords(fn, returned[fn.calls.length - 1], PRINTED.TAVI_LINE_SEGMENT, (name) => `{r['${name}']}`);
      } else if (!r.memories) {
        single.push(r.kind === 'text' ? `{'yes' if ${value} else 'no'}` : formatted(value, result));
      } else if (m.record && r.kind !== 'rectangle') {
        this.printRecords(fn, memory[r.memories[0]], PRINTED[m.type], (name) => `{r['${name}']}`);
      } else if (m.record) {
        single.push(`${r.name} ${['left', 'top', 'right', 'bottom'].map((f) => `{${memory[r.memories[0]]}.${f}}`).join(' ')}`);
      } else if (m.count !== '1') {
        this.printArrays(fn, r, r.memories.map((key) => memory[key]), m.type);
      } else {
        const order = {rectangle: ['left', 'top', 'right', 'bottom']}[r.kind] ?? r.fields ?? [undefined];
        const values = order.map((f) => memory[r.memories[f === undefined ? 0 : r.fields.indexOf(f)]]);
        single.push(`${r.kind === 'points' ? 'at' : r.name} ${values.map((v) => formatted(v, m.type)).join(' ')}`);
      }
    }
    printSingle();
  }

  printRecords(fn, list, members, text) {
    this.say(`for r in ${list}:`);
    this.say(`    print(f"${fn.name}: ${members.map(text).join(', ')}")`);
  }

  printArrays(fn, r, names, type) {
    const format = type === 'double' ? ':.10g' : '';
    if (names.length === 1) {
      this.say(`print("${fn.name}: ${r.name}", *${format ? `(f"{value${format}}" for value in ${names[0]})` : names[0]})`);
    } else {
      this.say(`print("${fn.name}: ${r.name}", *(f"{x},{y}" for x, y in zip(${names.join(', ')})))`);
    }
  }

  text() {
    const last = this.pictures[this.pictures.length - 1];
    return ['import sys', '', ...(this.usesNumpy ? ['import numpy'] : []), 'import nuvimgsdk as nuv', '',
            'picture = nuv.imread(sys.argv[1])', ...this.lines, '', `nuv.imwrite(sys.argv[2], ${last.name})`, ''].join('\n');
  }
}

const picture = (name) => ({name, width: `${name}.shape[1]`, height: `${name}.shape[0]`});

// Whether a result is told in one line with others.
const isSingle = (r, m) => !['contours', 'regions'].includes(r.kind) && r.from !== 'after' && (!m || m.count === '1');

const formatted = (value, type) => `{${value}${type === 'double' ? ':.10g' : ''}}`;

function literal(tree, type) {
  if (typeof tree !== 'number') return print(tree, true);
  if (type === 'bool') return tree ? 'True' : 'False';
  return type === 'double' && Number.isInteger(tree) ? `${tree}.0` : String(tree);
}
