// The module for web pages exports the functions of the library, and calls work: node web_test.mjs MODULE BOUNDARY.

import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
import {argv} from 'node:process';

import {load} from '../../bindings/web/nuvimgsdk.mjs';

const module = await WebAssembly.compile(await readFile(argv[2]));
const boundary = JSON.parse(await readFile(argv[3], 'utf8'));

const exported = WebAssembly.Module.exports(module).map(({name}) => name);
const listed = boundary.functions.map((f) => f.plain_name);
assert.deepEqual(exported.sort(), [...listed, '_initialize', 'free', 'malloc', 'memory'].sort());

// Files, the clock and the end of the process are all that the module needs.
const imported = WebAssembly.Module.imports(module).map(({module, name}) => `${module}.${name}`);
const system = ['clock_time_get', 'fd_close', 'fd_fdstat_get', 'fd_fdstat_set_flags', 'fd_prestat_dir_name',
                'fd_prestat_get', 'fd_read', 'fd_seek', 'fd_write', 'path_open', 'proc_exit'];
assert.deepEqual(imported.sort(), system.map((name) => `wasi_snapshot_preview1.${name}`));

const sdk = await load(module);
const width = 61;
const height = 47;
const picture = Uint8Array.from({length: width * height}, (_, i) => (i * i * 31 + (i >> 3) * 77) & 255);
const image = sdk.put(picture);
const result = sdk.malloc(picture.length);

sdk.call.NuvThresholdToRes(image, width, height, 128, result);
assert.deepEqual(sdk.bytes(result, picture.length), picture.map((v) => (v >= 128 ? 255 : 0)));

sdk.call.NuvGryImgSobel(image, width, height, result);
const sobel = picture.map((_, i) => {
  const x = i % width;
  const y = Math.floor(i / width);
  if (x === 0 || y === 0 || x === width - 1 || y === height - 1) return 0;
  const at = (dx, dy) => picture[i + dx + dy * width];
  const g0 = at(-1, -1) + 2 * at(0, -1) + at(1, -1) - at(-1, 1) - 2 * at(0, 1) - at(1, 1);
  const g90 = at(-1, -1) + 2 * at(-1, 0) + at(-1, 1) - at(1, -1) - 2 * at(1, 0) - at(1, 1);
  return Math.min(Math.abs(g0) + Math.abs(g90), 255);
});
assert.deepEqual(sdk.bytes(result, picture.length), sobel);

assert.equal(sdk.call.NuvGryRectAvr(image, width, height, 0, width - 1, 0, height - 1),
             Math.floor(picture.reduce((sum, v) => sum + v, 0) / picture.length));

// Without a system a file fails to open.
const name = sdk.put(new TextEncoder().encode('picture.bmp\0'));
assert.equal(sdk.call.NuvWrite8BitImg2BmpFile(image, width, height, name), 0);

// When all memory is taken, a function that allocates gives its failure result.
const filter = () => sdk.call.NuvGryAverageFilterFast(image, width, height, 2, 2, result);
assert.equal(filter(), 1);
const taken = [];
for (let size = 1 << 28; size >= 16; size >>= 1) {
  for (let address; (address = sdk.call.malloc(size)) !== 0;) taken.push(address);
}
assert.equal(filter(), 0);
taken.forEach(sdk.free);
assert.equal(filter(), 1);
console.log(`${listed.length} functions`);
