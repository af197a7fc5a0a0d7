// Runs steps on pictures with nuvimgsdk.wasm.

import {load} from '../../bindings/web/nuvimgsdk.mjs';
import {evaluate} from './formulas.js';
import {stepComplaints, withInitialValues} from './pipeline.js';
import {numbersOf, pictureNamed, RECTANGLE, valuesOf} from './values.js';

const TYPES = {
  uint8_t: {size: 1, array: Uint8Array, get: 'getUint8'}, bool: {size: 1, array: Uint8Array, get: 'getUint8'},
  int32_t: {size: 4, array: Int32Array, get: 'getInt32'}, uint32_t: {size: 4, array: Uint32Array, get: 'getUint32'},
  double: {size: 8, array: Float64Array, get: 'getFloat64'}, pointer: {size: 4, get: 'getUint32'},
};
const typeOf = (name) => (name.endsWith('*') ? TYPES.pointer : TYPES[name]);

/** The offsets of a record's fields, and its size. */
function layout(record) {
  let end = 0;
  let alignment = 1;
  const fields = record.map(({name, type}) => {
    const {size, get} = typeOf(type);
    const offset = Math.ceil(end / size) * size;
    end = offset + size;
    alignment = Math.max(alignment, size);
    return {name, offset, get, isBool: type === 'bool'};
  });
  return {fields, size: Math.ceil(end / alignment) * alignment};
}

const sizeOf = (memory) => (memory.record ? layout(memory.record).size : TYPES[memory.type].size);

export class Engine {
  /** @param functions  of catalogue() */
  static async load(compiledModule, functions) {
    return new Engine(await load(compiledModule), functions);
  }

  constructor(sdk, functions) {
    this.sdk = sdk;
    this.functions = new Map(functions.map((f) => [f.name, f]));
  }

  /**
   * Runs one step.
   * @param pictures  the start and the pictures after each earlier step; the last one is `picture`
   */
  run(step, picture, pictures = [picture]) {
    const [complaint] = stepComplaints(step, this.functions, picture, pictures);
    if (complaint) throw Object.assign(new Error(complaint.sentence), complaint);
    const fn = this.functions.get(step.call);
    const run = new Run(this.sdk, fn, withInitialValues(step, fn, picture), picture, pictures);
    try {
      return run.result();
    } catch (error) {
      if (!(error instanceof WebAssembly.RuntimeError)) throw error;
      run.ends = [];  // the module is lost, and its memory with it
      throw Object.assign(new Error(`${fn.name} failed: ${error.message}.`), {fatal: true});
    } finally {
      run.free();
    }
  }
}

// One call of Engine.run: its memory, and the values of the names that formulas use.
class Run {
  constructor(sdk, fn, parameters, picture, pictures) {
    Object.assign(this, {sdk, fn, parameters, picture, pictures});
    this.memories = new Map();
    this.ends = [];
    this.values = valuesOf(fn, parameters, picture, (value) => pictureNamed(value, pictures));
  }

  free() {
    while (this.ends.length) this.ends.pop()();
  }

  result() {
    const {fn} = this;
    const main = fn.calls[fn.main];
    let milliseconds = 0;
    const returned = fn.calls.map((call) => {
      const addresses = this.arguments(call);
      const start = performance.now();
      const value = this.sdk.call[call.name](...addresses);
      milliseconds += performance.now() - start;
      // A function that makes a picture returns whether it succeeded; a measure returns an answer.
      if (call.result === 'bool' && !value && (call !== main || fn.changesPicture)) {
        throw new Error(`${call.name} did not succeed. It returns ${call.returns}.`);
      }
      return this.returned(call, value);
    });
    const value = returned[fn.main];
    const results = fn.results.map((r) => {
      const {name, kind} = r;
      if (r.memories || kind === 'picture') return {name, kind, value: this.output(r, value)};
      return {name, kind, value: r.from === 'after' ? returned[fn.calls.length - 1] : worded(value, main.result)};
    });
    return {picture: fn.changesPicture ? results.shift().value : this.picture, results, milliseconds};
  }

  // Arguments of a call: numbers and addresses.
  arguments(call) {
    this.numbers = numbersOf(call, this.values);
    // Points are collected when their memory is made, and only then is their number known.
    call.arguments.filter((a) => a.memory?.startsWith('points.')).forEach((a) => this.memory(a.memory));
    this.numbers = numbersOf(call, this.values);
    return call.arguments.map((a) => {
      if (a.memory !== undefined) return this.memory(a.memory).address;
      if (a.type !== 'tagRECT') return this.numbers[a.name];
      return this.put(Int32Array.from(RECTANGLE, (field) => this.numbers[`${a.name}.${field}`]));
    });
  }

  // What a call returned, with lists as arrays. Lists and images are released at the end of the step.
  returned(call, value) {
    if (call.resultMemory === 'delete[]') {
      this.ends.push(() => this.sdk.free(value >>> 0));
    } else if (call.resultMemory) {
      this.ends.push(() => this.sdk.call[call.resultMemory](value));
    }
    // A detector hands over as many records as its detection returned.
    if (call.lines) return value === 0 ? [] : this.records(value >>> 0, call.record, this.detected);
    if (!call.record) {
      this.detected = value;
      return value;
    }
    const list = [];
    for (let address = value >>> 0; address !== 0;) {
      const [record] = this.records(address, call.record, 1);
      address = record.pNext ?? record.next;
      [record.x, record.y] = [record.x ?? record.x0, record.y ?? record.y0];
      record.chain = Array.from(this.sdk.bytes(record.pChainCode, record.N));
      list.push(record);
    }
    if (call.traces) this.follow(list);
    return list.map((record) => Object.fromEntries(Object.entries(record).filter(
        ([name]) => !/^(pChainCode|pNext|next|reserved\d|sameLevelParentID|x0|y0)$/.test(name))));
  }

  // Chooses the largest contour as the chain of the step.
  follow(contours) {
    const [largest] = contours.sort((a, b) => b.area - a.area);
    if (!largest) {
      throw new Error(`${this.fn.name} follows the outline of an object, and the picture has none: ` +
                      'put a threshold such as NuvThreshold before it.');
    }
    Object.assign(this.values, {'chain.x': largest.x, 'chain.y': largest.y, 'chain.N': largest.N});
    this.memories.set('chain', {address: largest.pChainCode, count: largest.N});
  }

  pictureOf(name) {
    return name === 'current' ? this.picture : pictureNamed(this.parameters[name], this.pictures);
  }

  memory(key) {
    if (!this.memories.has(key)) this.memories.set(key, this.made(this.fn.memories[key]));
    return this.memories.get(key);
  }

  made(memory) {
    const {from} = memory;
    if (from === 'text') {
      const text = new TextEncoder().encode(`${this.parameters[memory.parameter]}\0`);
      return {address: this.put(text), count: text.length};
    }
    if (from === 'points') {
      const {width, data} = this.picture;
      const places = [];
      const place = memory.field === 'x' ? (i) => i % width : (i) => Math.floor(i / width);
      data.forEach((value, i) => value === 255 && places.push(place(i)));
      if (places.length === 0) throw new Error(`${this.fn.name} takes the white pixels, and the picture has none.`);
      this.values['points.N'] = places.length;
      return {address: this.put(Int32Array.from(places)), count: places.length};
    }
    if (from === 'picture') {
      const {width, height, channels, data} = this.pictureOf(memory.picture);
      const tail = memory.tail === undefined ? 0 : Math.max(0, this.numbers[memory.tail]);
      const address = this.zeroed(data.length + tail);
      this.sdk.bytes(address, data.length).set(data);
      return {address, width, height, channels};
    }
    const value = (formula) => Math.max(0, evaluate(formula, this.numbers));
    const [height, width, channels] = (memory.shape ?? []).map(value);
    const size = memory.shape ? width * height * (channels ?? 1) : value(memory.count);
    // A page that asks for an impossible size gets a sentence instead of a full memory.
    const bytes = Math.max(size, value(memory.count)) * sizeOf(memory);
    if (!(bytes <= 2 ** 29)) throw new Error(`${this.fn.name} needs a result of ${bytes} bytes: too many for a page.`);
    const address = this.zeroed(bytes);
    if (memory.preset) this.preset(address, size, memory);
    return {address, count: size, width, height, channels: channels ?? 1};
  }

  // Marks records as not yet written.
  preset(address, count, {record, preset}) {
    const {fields, size} = layout(record);
    const {offset} = fields.find(({name}) => name === preset);
    const view = new DataView(this.sdk.memory.buffer, address);
    for (let i = 0; i < count; ++i) view.setInt32(i * size + offset, -1, true);
  }

  zeroed(bytes) {
    const address = this.sdk.malloc(Math.max(bytes, 1));
    this.ends.push(() => this.sdk.free(address));
    this.sdk.bytes(address, bytes).fill(0);
    return address;
  }

  put(array) {
    const address = this.zeroed(array.byteLength);
    this.sdk.bytes(address, array.byteLength).set(new Uint8Array(array.buffer, array.byteOffset, array.byteLength));
    return address;
  }

  records(address, record, count) {
    const {fields, size} = layout(record);
    const view = new DataView(this.sdk.memory.buffer);
    return Array.from({length: count}, (_, i) => Object.fromEntries(
        fields.map(({name, offset, get, isBool}) => {
          const value = view[get](address + i * size + offset, true);
          return [name, isBool ? value !== 0 : value];
        })));
  }

  numbersAt(key, count) {
    const {array} = TYPES[this.fn.memories[key].type];
    return Array.from(new array(this.sdk.memory.buffer, this.memory(key).address, count));
  }

  // The value of a result that the call wrote to memory.
  output(result, returned) {
    if (result.kind === 'picture') return this.pictureAt(result, returned);
    const [key] = result.memories;
    const {record, type, preset} = this.fn.memories[key];
    const {address, count} = this.memory(key);
    const length = result.counted ? Math.max(0, Math.min(count, returned)) : count;
    if (record) {
      let records = this.records(address, record, length);
      if (preset) records = records.filter((r) => r[preset] >= 0);
      return result.kind === 'rectangle' ? records[0] : records.map((r) => asSegment(r, preset !== undefined));
    }
    if (!result.fields) {
      const values = this.numbersAt(key, length);
      return result.kind === 'number' ? worded(values[0], type) : values;
    }
    const columns = result.memories.map((k) => this.numbersAt(k, length));
    const rows = columns[0].map((_, i) => Object.fromEntries(result.fields.map((f, k) => [f, columns[k][i]])));
    return result.kind === 'rectangle' ? rows[0] : rows;
  }

  pictureAt(result, returned) {
    let {address, width, height, channels} = result.memories ? this.memory(result.memories[0]) : {};
    if (!result.memories) {
      [width, height] = ['pResWidth', 'pResHeight'].map((key) => this.numbersAt(key, 1)[0]);
      [address, channels] = [returned >>> 0, 1];
      if (address === 0) throw new Error(`${this.fn.name} gave no picture.`);
    }
    if (width * height === 0) throw new Error(`${this.fn.name} gives a picture without pixels here.`);
    return {width, height, channels, data: this.sdk.bytes(address, width * height * channels).slice()};
  }
}

// A number, or a bool as a word.
const worded = (value, type) => (type === 'bool' ? (value ? 'yes' : 'no') : value);

// A run of a row or a column as a segment.
function asSegment({x, y, x1 = x, x2 = x, y1 = y, y2 = y, ID}, isNumbered) {
  return {x1, y1, x2, y2, ...(isNumbered ? {ID} : {})};
}
