// Programs in Python. The package leaves out what arrays know, and returns results instead of writing to memory.

import {print, substitute} from './formulas.js';
import {RECTANGLE, valuesOf} from './values.js';
import {isCounted, Names, pictureName, PRINTED, resultName, singleFormat, wrapped} from './words.js';

export function codeInPython(steps, start) {
  const program = new Program(start);
  steps.forEach((step) => program.step(step));
  return program.text();
}

/** XOfRow becomes x_of_row. */
const snake = (name) => name.replace(/([a-z\d])([A-Z])/g, '$1_$2').replace(/^\d/, '_$&').toLowerCase();
const plain = (name) => name.replace(/^p+(?=[A-Z])/, '');
const isPointer = (a) => a.type.endsWith('*');

// A number of elements from which one argument follows: N itself, or N within a limit.
const COUNTED = /^\(?(\w+)(?: > 1 \? \1 : 1\)| < \w+ \? \1 : \w+\))?$/;

// What an argument is in Python, as the package plans it: "number", "known" to an array, "in", "changed" in a copy
// that is returned, "result", "scalar" or "work".
function roles(call) {
  const numbers = new Set(call.arguments.filter((a) => !isPointer(a)).map((a) => a.name));
  const role = new Map(call.arguments.map((a) => [a.name, isPointer(a) ? pointerRole(a) : 'number']));
  for (const a of call.arguments) {
    if (!['in', 'changed'].includes(role.get(a.name)) || a.type.endsWith('char*')) continue;
    const shape = a.tail ? ['height', 'width'] : a.shape ?? [COUNTED.exec(a.count ?? '')?.[1]];
    for (const size of shape) {
      const name = size === '(bRGB ? 3 : 1)' ? 'bRGB' : size;
      if (numbers.has(name)) role.set(name, 'known');
    }
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
  constructor(start) {
    this.names = new Names('sys numpy nuv max print c x y r value'.split(' '));
    this.lines = [];
    this.pictures = [picture(this.names.take('picture'), start)];
  }

  say(text = '') {
    this.lines.push(...wrapped(text, '#', 'f'));
  }

  step(step) {
    const {fn} = step;
    const current = this.pictures[this.pictures.length - 1];
    this.say();
    this.say(`# ${fn.brief}`);
    const words = valuesOf(fn, step.parameters, current, (number) => this.pictures[number]);
    const state = {step, current, words, memory: {}};
    const returned = fn.calls.map((call) => this.call(state, call));
    this.print(step, state.memory, returned);
    const [result] = fn.results;
    this.pictures.push(!fn.changesPicture ? current :
                       picture(result.memories ? state.memory[result.memories[0]] : returned[fn.main], step.after));
  }

  // Makes a call. state.memory receives the names of what it gives; the name of what it returns is the result.
  call(state, call) {
    const {step: {fn, after}, memory} = state;
    const isMain = call === fn.calls[fn.main];
    const role = roles(call);
    if (call.arguments.some((a) => a.memory?.startsWith('points.'))) this.points(state);
    const outputs = call.arguments.filter((a) => ['changed', 'result', 'scalar'].includes(role.get(a.name)));
    const fields = [...(call.result === 'void' ? [] : ['result']), ...outputs.map((a) => plain(a.name))];
    const text = `nuv.${call.name}(${this.arguments(state, call, role).join(', ')})`;
    if (!isMain && outputs.length === 0 && !call.lines) {
      this.say(call.result === 'bool' ? `if not ${text}:` : text);
      if (call.result === 'bool') this.say(`    sys.exit("${call.name} failed")`);
      return undefined;
    }
    const givesPicture = isMain && fn.changesPicture;
    const isPicture = givesPicture && fields.length === 1;
    const name = this.names.take(isPicture ? pictureName(fn, after.channels) : givesPicture ? 'result' :
                                 call.lines ? 'segments' : isMain && isCounted(fn) && fields.length === 1 ? 'count' :
                                 snake(fields.length === 1 && outputs.length === 1 ? fields[0] : resultName(call)));
    this.say(`${name} = ${text}`);
    const field = (f) => (fields.length === 1 ? name : `${name}.${f}`);
    for (const a of outputs) {
      const list = field(plain(a.name));
      const mark = fn.memories[a.memory]?.preset;
      memory[a.memory] = mark ? `${list}[${list}["${mark}"] >= 0]` : list;
    }
    if (call.traces) this.largest(state, field('result'));
    if (isMain && call.result === 'bool' && fn.changesPicture) {
      this.say(`if not ${field('result')}:`);
      this.say(`    sys.exit("${call.name} failed")`);
    }
    if (!givesPicture) return field('result');
    if (isPicture) this.reshape(state, name);
    else this.unpack(state, field('result'));
    return call.resultMemory ? memory.result : field('result');
  }

  // The arguments of a call as Python sees them.
  arguments({step: {fn, parameters}, words, memory, current}, call, role) {
    const seen = call.arguments.filter((a) => ['number', 'in', 'changed'].includes(role.get(a.name)));
    const texts = seen.map((a) => {
      const m = fn.memories[a.memory];
      if (a.type === 'tagRECT') return `(${RECTANGLE.map((f) => words[a.formula + f]).join(', ')})`;
      if (a.formula !== undefined) return literal(substitute(a.formula, words), a.type);
      if (m.from === 'text') return JSON.stringify(parameters[m.parameter]);
      if (m.from !== 'picture') return memory[a.memory];
      return m.picture === 'current' ? current.name : this.pictures[parameters[m.picture]].name;
    });
    for (const a of call.arguments) {
      const {preset, type, record} = fn.memories[a.memory] ?? {};
      if (!preset) continue;
      const records = this.names.take('records');
      const start = record.map(({name}) => (name === preset ? -1 : 0)).join(', ');
      this.usesNumpy = true;
      this.say(`${records} = numpy.full(${current.name}.size, numpy.array((${start}), nuv.${type}))`);
      texts.push(`out=${records}`);
    }
    return texts;
  }

  // Gives the result picture a name of its own.
  unpack(state, returned) {
    const {step: {fn, after}, memory} = state;
    const name = this.names.take(pictureName(fn, after.channels));
    const key = fn.results[0].memories?.[0];
    this.say(`${name} = ${key ? memory[key] : returned}`);
    memory[key ?? 'result'] = name;
    this.reshape(state, name);
  }

  // Camera frames come as lists of bytes.
  reshape({step: {fn}, words}, name) {
    const {calls, main, memories, results} = fn;
    const a = calls[main].arguments.find((b) => b.memory && b.memory === results[0].memories?.[0]);
    const {from, shape} = memories[a?.memory] ?? {};
    if (from !== 'new' || a.shape || a.count === 'N') return;
    const trees = {...words};
    for (const b of calls[main].arguments) if (b.formula) trees[b.name] = substitute(b.formula, words);
    const [height, width] = shape.map((size) => print(substitute(size, trees), true));
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
        const list = returned[fn.calls.length - 1];
        this.printRecords(fn, `${list} if ${list} is not None else ()`, PRINTED.TAVI_LINE_SEGMENT,
                          (name) => `{r['${name}']}`);
      } else if (!r.memories) {
        single.push(r.kind === 'text' ? `{'yes' if ${value} else 'no'}` : formatted(value, result));
      } else if (m.record && r.kind !== 'rectangle') {
        this.printRecords(fn, memory[r.memories[0]], PRINTED[m.type], (name) => `{r['${name}']}`);
      } else if (m.record) {
        single.push(singleFormat(r, RECTANGLE.map((f) => `{${memory[r.memories[0]]}.${f}}`)));
      } else if (m.count !== '1') {
        this.printArrays(fn, r, r.memories.map((key) => memory[key]), m.type);
      } else {
        const order = r.kind === 'rectangle' ? RECTANGLE : r.fields ?? [undefined];
        const values = order.map((f) => memory[r.memories[f === undefined ? 0 : r.fields.indexOf(f)]]);
        single.push(singleFormat(r, values.map((v) => formatted(v, m.type))));
      }
    }
    printSingle();
  }

  printRecords(fn, list, members, text) {
    this.say(`for r in ${list}:`);
    this.say(`    print(f"${fn.name}: ${members.map(text).join(', ')}")`);
  }

  printArrays(fn, r, names, type) {
    const values = names.length > 1 ? `*(f"{x},{y}" for x, y in zip(${names.join(', ')}))` :
        type === 'double' ? `*(f"{value:.10g}" for value in ${names[0]})` : `*${names[0]}`;
    this.say(`print("${fn.name}: ${r.name}", ${values})`);
  }

  text() {
    const last = this.pictures[this.pictures.length - 1];
    return [
      'import sys', '', ...(this.usesNumpy ? ['import numpy'] : []), 'import nuvimgsdk as nuv', '',
      'if len(sys.argv) != 3:', '    sys.exit(f"usage: {sys.argv[0]} PICTURE.bmp RESULT.bmp")', '',
      'picture = nuv.imread(sys.argv[1])', ...this.lines, '', `nuv.imwrite(sys.argv[2], ${last.name})`, '',
    ].join('\n');
  }
}

// A picture under its name in the program.
const picture = (name, {channels}) => ({name, width: `${name}.shape[1]`, height: `${name}.shape[0]`, channels});

// Whether a result is printed in one line with others.
const isSingle = (r, m) => !['contours', 'regions'].includes(r.kind) && r.from !== 'after' && (!m || m.count === '1');

const formatted = (value, type) => `{${value}${type === 'double' ? ':.10g' : ''}}`;

function literal(tree, type) {
  if (typeof tree !== 'number') return print(tree, true);
  if (type === 'bool') return tree ? 'True' : 'False';
  return type === 'double' && Number.isInteger(tree) ? `${tree}.0` : String(tree);
}
