// Programs in C++ and C. Both call the same functions; memory is a std::vector in C++, and from calloc in C.

import {print, substitute} from './formulas.js';
import {RECTANGLE, valuesOf} from './values.js';
import {
  isCounted, lower, Names, pictureName, PRINTED, readLater, resultName, singleFormat, wrapped,
} from './words.js';

const FORMATS = {int32_t: '%d', uint32_t: '%u', uint8_t: '%d', double: '%.10g'};
const isIdentifier = (text) => /^[A-Za-z_]\w*$/.test(text);

export function codeInC(steps, picture, isCpp) {
  const program = new Program(isCpp);
  program.read(picture.channels);
  steps.forEach((step, i) => program.step(step, steps, i));
  return program.text();
}

class Program {
  constructor(isCpp) {
    this.isCpp = isCpp;
    this.names = new Names('argc argv main std i x y c r image allocated printf'.split(' '));
    this.lines = [];
    this.pictures = [];
    this.std = isCpp ? 'std::' : '';
    this.null = isCpp ? 'nullptr' : 'NULL';
    this.freed = [];
  }

  say(text = '', depth = 1) {
    this.lines.push(...(text === '' ? [''] : wrapped('  '.repeat(depth) + text, '//')));
  }

  read(channels) {
    const [name, width, height] = ['picture', 'width', 'height'].map((text) => this.names.take(text));
    const picture = {name, width, height, channels};
    this.pictures.push(picture);
    this.say('int32_t width = 0;');
    this.say('int32_t height = 0;');
    const bits = channels === 3 ? 24 : 8;
    const failure = [`%s is no BMP file of ${bits} bits`, ', argv[1]'];
    this.takeOver(picture, 'image', `NuvRead${bits}BitBmpFile2Img(argv[1], &width, &height)`, failure);
  }

  // Makes a picture of an image that a call hands over.
  takeOver(picture, image, call, failure) {
    const name = this.isCpp ? image : picture.name;
    this.say(`uint8_t* ${name} = ${call};`);
    this.fails(`${name} == ${this.null}`, ...failure);
    if (!this.isCpp) return;
    this.say(`std::vector<uint8_t> ${picture.name}(${image}, ${image} + ${this.size(picture)});`);
    this.say(`delete[] ${image};`);
  }

  fails(condition, sentence, values = '') {
    this.say(`if (${condition}) {`);
    this.say(`${this.std}fprintf(stderr, "${sentence}\\n"${values});`, 2);
    this.say('return 1;', 2);
    this.say('}');
  }

  size({width, height, channels}) {
    return `${width} * ${height}${channels === 3 ? ' * 3' : ''}`;
  }

  // The address of memory.
  address(name) {
    return this.isCpp ? `${name}.data()` : name;
  }

  // Declares zeroed memory and returns its address.
  memory(type, name, count) {
    if (Number(count) <= 1024) {
      this.say(`${type} ${name}[${Math.max(1, Number(count))}] = {${this.isCpp ? '' : '0'}};`);
      return name;
    }
    if (this.isCpp) {
      this.say(`std::vector<${type}> ${name}(${count});`);
    } else {
      this.usesAllocated = true;
      this.say(`${type}* ${name} = allocated(${count}, sizeof *${name});`);
      this.freed.push(`free(${name});`);
    }
    return this.address(name);
  }

  // A copy of a picture, with `tail` more bytes. Returns the name.
  copy(picture, name, tail) {
    const size = this.size(picture);
    const copy = this.names.take(name);
    if (this.isCpp) {
      this.say(`std::vector<uint8_t> ${copy} = ${picture.name};`);
      if (tail) this.say(`${copy}.resize(${size} + ${tail});`);
    } else {
      this.usesAllocated = this.usesCopy = true;
      this.say(`uint8_t* ${copy} = allocated(${size}${tail ? ` + ${tail}` : ''}, 1);`);
      this.say(`memcpy(${copy}, ${picture.name}, ${size});`);
      this.freed.push(`free(${copy});`);
    }
    return copy;
  }

  step(step, steps, index) {
    const current = this.pictures[this.pictures.length - 1];
    const {fn} = step;
    this.say();
    this.say(`// ${fn.brief}`);
    const memory = {};
    const words = valuesOf(fn, step.parameters, current, (number) => this.pictures[number]);
    const returned = fn.calls.map((call) => this.call({step, steps, index, current, memory, words}, call));
    this.print(step, memory, returned);
    const result = fn.results[0];
    this.pictures.push(!fn.changesPicture ? current :
                       (result.memories ? memory[result.memories[0]] : returned[fn.main]).picture);
    // Pictures live as long as the program; what else the step allocated ends here.
    const kept = this.pictures.map(({name}) => `free(${name});`);
    this.freed.filter((line) => !kept.includes(line)).reverse().forEach((line) => this.say(line));
    this.freed = [];
  }

  // Declares the memory of a call, makes the call and returns the name of its result.
  call(state, call) {
    const {step: {fn}, words, memory} = state;
    const main = call === fn.calls[fn.main];
    for (const a of call.arguments.filter(({memory: key}) => key?.startsWith('points.'))) this.points(state, a.memory);
    const trees = {...words};
    for (const a of call.arguments) {
      if (a.type === 'tagRECT') {
        for (const f of RECTANGLE) trees[`${a.name}.${f}`] = words[a.formula + f];
      } else if (a.formula !== undefined) {
        trees[a.name] = substitute(a.formula, words);
      }
    }
    for (const a of call.arguments) {
      if (a.memory !== undefined && !(a.memory in memory)) memory[a.memory] = this.declared(state, call, a, trees);
    }
    const texts = call.arguments.map((a) => {
      if (a.memory !== undefined) return memory[a.memory].address;
      if (a.type === 'tagRECT') return this.rectangle(a, trees);
      return literal(trees[a.name], a.type, this.isCpp);
    });
    const text = `${this.isCpp ? call.cppName : call.name}(${texts.join(', ')})`;
    return this.made(state, call, text, main);
  }

  rectangle(a, trees) {
    const name = this.names.take(lower(a.name));
    const ends = RECTANGLE.map((f) => trees[`${a.name}.${f}`]);
    this.say(`const ${this.isCpp ? 'tagRECT' : 'NUV_RECT'} ${name} = {${ends.join(', ')}};`);
    return name;
  }

  // Memory of one argument: {address, name, count, picture}.
  declared(state, call, a, trees) {
    const {step: {fn, parameters}} = state;
    const m = fn.memories[a.memory];
    const plainName = lower(a.name.replace(/^p+(?=[A-Z])/, ''));
    if (m.from === 'text') {
      const name = this.names.take('text');
      this.say(`char ${name}[] = "${parameters[m.parameter].replace(/["\\]/g, '\\$&')}";`);
      return {address: name};
    }
    if (m.from === 'picture') return this.givenPicture(state, a, m, trees);
    if (m.shape) return this.newPicture(state, call, a, m, trees);
    if (m.count === '1') {
      const name = this.names.take(plainName);
      const type = !m.record ? m.type : this.isCpp ? 'tagRECT' : 'NUV_RECT';
      this.say(`${type} ${name} = ${m.record ? '{0, 0, 0, 0}' : '0'};`);
      return {address: `&${name}`, name};
    }
    const count = print(substitute(m.count, trees));
    const name = this.names.take(m.work ? 'work' : plainName);
    const address = this.memory(m.type, name, count);
    if (!m.preset) return {address, name, count};
    this.say(`for (int32_t i = 0; i < ${count}; ++i) ${name}[i].${m.preset} = -1;`);
    return {address, name, count: `${count} && ${name}[i].${m.preset} >= 0`};
  }

  // A picture that a call reads or changes. It is changed in place if nothing else reads it any more.
  givenPicture({step: {fn, parameters}, steps, index, current}, a, m, trees) {
    const isCurrent = m.picture === 'current';
    const picture = isCurrent ? current : this.pictures[parameters[m.picture]];
    const tail = m.tail && print(trees[m.tail]);
    const isResult = memoryOfPicture(fn) === a.memory;
    const isReadBeside = Object.values(fn.memories).some((other) => other !== m && other.picture === 'current');
    const isReadLater = this.pictures.some((p, i) => p === current && readLater(steps, i, index));
    const isInPlace = isCurrent && isResult && !isReadBeside && !isReadLater;
    if (!tail && (!m.copy || isInPlace)) return {address: this.address(picture.name), picture};
    const name = this.copy(picture, tail ? 'extended' : isResult ? pictureName(fn, picture.channels) : 'copy', tail);
    return {address: this.address(name), picture: {...picture, name}};
  }

  // A picture that a call makes. Its size gets names where it is no name yet.
  newPicture({step: {fn}, words}, call, a, m, trees) {
    const shape = m.shape.map((size) => print(substitute(size, trees)));
    const channels = Number(shape[2] ?? 1);
    const name = this.names.take(a.memory === memoryOfPicture(fn) ? pictureName(fn, channels) :
                                 lower(a.name.replace(/^p+(?=[A-Z])|Img$/g, '')));
    const [height, width] = ['Height', 'Width'].map((side, axis) => {
      if (isIdentifier(shape[axis])) return shape[axis];
      const size = this.names.take(name + side);
      this.say(`const int32_t ${size} = ${shape[axis]};`);
      const {formula} = call.arguments.find((b) => b.name === m.shape[axis]) ?? {};
      if (formula in words) trees[m.shape[axis]] = size;
      return size;
    });
    const picture = {name, width, height, channels};
    const count = this.size(picture);
    return {address: this.memory('uint8_t', name, count), name, picture, count};
  }

  // Collects the white pixels.
  points({current, words, memory}) {
    if ('points.x' in memory) return;
    const [xs, ys] = ['xs', 'ys'].map((name) => this.names.take(name));
    const pixel = `${current.name}[y * ${current.width} + x]`;
    const loop = (body) => {
      this.say(`for (int32_t y = 0; y < ${current.height}; ++y) {`);
      this.say(`for (int32_t x = 0; x < ${current.width}; ++x) {`, 2);
      this.say(`if (${pixel} != 255) continue;`, 3);
      body.forEach((line) => this.say(line, 3));
      this.say('}', 2);
      this.say('}');
    };
    const n = this.names.take('n');
    if (this.isCpp) {
      this.say(`std::vector<int32_t> ${xs}, ${ys};`);
      loop([`${xs}.push_back(x);`, `${ys}.push_back(y);`]);
      this.say(`const int32_t ${n} = static_cast<int32_t>(${xs}.size());`);
    } else {
      this.memory('int32_t', xs, `${current.width} * ${current.height}`);
      this.memory('int32_t', ys, `${current.width} * ${current.height}`);
      this.say(`int32_t ${n} = 0;`);
      loop([`${xs}[${n}] = x;`, `${ys}[${n}++] = y;`]);
    }
    words['points.N'] = n;
    memory['points.x'] = {address: this.address(xs)};
    memory['points.y'] = {address: this.address(ys)};
  }

  // Makes the call and keeps what it returns.
  made({step: {fn}, memory, words}, call, text, main) {
    const {result} = call;
    if (call.resultMemory === 'delete[]') {
      const [width, height] = ['pResWidth', 'pResHeight'].map((key) => memory[key].name);
      const picture = {name: this.names.take(pictureName(fn, 1)), width, height, channels: 1};
      this.takeOver(picture, this.names.take('image'), text, [`${fn.name} failed`]);
      return {picture};
    }
    if (call.resultMemory) {
      const type = result.slice(0, -1);
      const list = this.names.take(type === 'RegionStruct' ? 'regions' : 'contours');
      this.say(`${type}* ${list} = ${text};`);
      this.freed.push(`${call.resultMemory}(${list});`);
      if (call.traces) this.largest(list, words, memory);
      return {name: list};
    }
    if (call.lines) {
      const name = this.names.take('segments');
      this.say(`const TAVI_LINE_SEGMENT* ${name} = ${text};`);
      return {name};
    }
    if (result === 'bool' && (!main || fn.changesPicture)) {
      this.fails(`!${text}`, `${call.name} failed`);
      return {};
    }
    if (result === 'void' || !main) {
      this.say(`${text};`);
      return {};
    }
    const name = this.names.take(isCounted(fn) ? 'count' : resultName(call));
    this.say(`const ${result} ${name} = ${text};`);
    return {name};
  }

  // The contour of the largest area.
  largest(list, words, memory) {
    const name = this.names.take('largest');
    this.say(`const NUV_CONTOUR_STRUCT* ${name} = ${list};`);
    this.say(`for (const NUV_CONTOUR_STRUCT* c = ${list}; c != ${this.null}; c = c->pNext) {`);
    this.say(`if (c->area > ${name}->area) ${name} = c;`, 2);
    this.say('}');
    this.fails(`${name} == ${this.null}`, 'the picture has no contour');
    Object.assign(words, {'chain.x': `${name}->x`, 'chain.y': `${name}->y`, 'chain.N': `${name}->N`});
    memory.chain = {address: `${name}->pChainCode`};
  }

  // Prints the results that are no pictures: single ones in one line, each list in a line of its own.
  print({fn}, memory, returned) {
    const value = returned[fn.main].name;
    let single = [];
    const add = (format, ...values) => single.push({format, values});
    const printSingle = () => {
      if (single.length === 0) return;
      const format = single.map((s) => s.format).join(', ');
      this.say(`${this.std}printf("${fn.name}: ${format}\\n", ${single.flatMap((s) => s.values).join(', ')});`);
      single = [];
    };
    for (const r of fn.results.filter(({kind}) => kind !== 'picture')) {
      if (r.kind === 'contours' || r.kind === 'regions') {
        printSingle();
        this.printList(fn, r, value);
      } else if (r.from === 'after') {
        printSingle();
        const list = returned[fn.calls.length - 1].name;
        this.printRecords(fn, 'TAVI_LINE_SEGMENT', list, `${value} && ${list} != ${this.null}`);
      } else if (!r.memories) {
        if (r.kind === 'text') add('%s', `${value} ? "yes" : "no"`);
        else add(FORMATS[fn.calls[fn.main].result], value);
      } else {
        const [first] = r.memories;
        const {name, count} = memory[first];
        const m = fn.memories[first];
        if (count !== undefined) {
          printSingle();
          this.printArrays(fn, r, r.memories.map((key) => memory[key].name), r.counted ? value : count, m);
        } else if (m.record) {
          add('%d %d to %d %d', ...RECTANGLE.map((f) => `${name}.${f}`));
        } else {
          const order = r.kind === 'rectangle' ? RECTANGLE : r.fields ?? [undefined];
          const names = order.map((f) => memory[r.memories[f === undefined ? 0 : r.fields.indexOf(f)]].name);
          add(singleFormat(r, names.map(() => FORMATS[m.type])), ...names);
        }
      }
    }
    printSingle();
  }

  printList(fn, {kind}, list) {
    const type = kind === 'contours' ? 'NUV_CONTOUR_STRUCT' : 'RegionStruct';
    const next = kind === 'contours' ? 'pNext' : 'next';
    const members = PRINTED[kind];
    this.say(`for (const ${type}* r = ${list}; r != ${this.null}; r = r->${next}) {`);
    this.say(`${this.std}printf("${fn.name}: ${members.map((name) => `${name} %d`).join(', ')}\\n", ` +
             `${members.map((name) => `r->${name}`).join(', ')});`, 2);
    this.say('}');
  }

  printRecords(fn, type, list, count) {
    const members = PRINTED[type];
    this.say(`for (int32_t i = 0; i < ${count}; ++i) {`);
    this.say(`${this.std}printf("${fn.name}: ${members.map(() => '%d').join(' ')}\\n", ` +
             `${members.map((name) => `${list}[i].${name}`).join(', ')});`, 2);
    this.say('}');
  }

  printArrays(fn, r, names, count, m) {
    if (m.record) return this.printRecords(fn, m.type, names[0], count);
    const format = names.map(() => FORMATS[m.type]).join(',');
    this.say(`${this.std}printf("${fn.name}: ${r.name}");`);
    this.say(`for (int32_t i = 0; i < ${count}; ++i) ${this.std}printf(" ${format}", ` +
             `${names.map((name) => `${name}[i]`).join(', ')});`);
    return this.say(`${this.std}printf("\\n");`);
  }

  text() {
    const last = this.pictures[this.pictures.length - 1];
    this.say();
    const write = `NuvWrite${last.channels === 3 ? 24 : 8}BitImg2BmpFile`;
    this.fails(`!${write}(${this.address(last.name)}, ${last.width}, ${last.height}, argv[2])`, 'cannot write %s',
               ', argv[2]');
    if (!this.isCpp) {
      const [first, ...others] = new Set(this.pictures.map(({name}) => name));
      for (const name of others) this.say(`free(${name});`);
      this.usesFree = this.usesAllocated || others.length > 0;
      this.say(`nuv_free(${first});`);
    }
    this.say('return 0;');
    const headers = this.isCpp ? ['NuvImgSDK2014DLL.h', '', 'cstdio', 'vector'] :
        ['nuvimgsdk_c.h', '', 'stdio.h', ...(this.usesFree ? ['stdlib.h'] : []),
         ...(this.usesCopy ? ['string.h'] : [])];
    return [
      ...headers.map((header) => header && `#include <${header}>`), ...(this.usesAllocated ? ALLOCATED : []), '',
      'int main(int argc, char** argv) {', '  if (argc != 3) {',
      `    ${this.std}fprintf(stderr, "usage: %s PICTURE.bmp RESULT.bmp\\n", argv[0]);`, '    return 2;', '  }',
      ...this.lines, '}', '',
    ].join('\n');
  }
}

const ALLOCATED = `
// Zeroed memory, or the end of the program.
static void* allocated(int32_t count, size_t size) {
  void* memory = calloc(count > 0 ? count : 1, size);
  if (memory == NULL) {
    fprintf(stderr, "out of memory\\n");
    exit(1);
  }
  return memory;
}`.split('\n');

const memoryOfPicture = (fn) => (fn.changesPicture ? fn.results[0].memories?.[0] : undefined);

function literal(tree, type, isCpp) {
  if (typeof tree !== 'number') return print(tree);
  if (type === 'bool') return tree ? 'true' : 'false';
  if (type === 'double' && Number.isInteger(tree)) return `${tree}.0`;
  return String(tree);
}
