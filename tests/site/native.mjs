// The module, and the native build beside which the tests put it.

import assert from 'node:assert/strict';
import {execFile} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {fileURLToPath} from 'node:url';
import {promisify} from 'node:util';

import {code} from '../../site/model/code.js';
import {Engine} from '../../site/model/engine.js';
import {decodePicture, functions, shippedPicture} from '../../site/model/files.js';
import {printedNumbers} from '../../site/model/words.js';

export const root = fileURLToPath(new URL('../..', import.meta.url));
const native = process.env.NUV_BUILD_DIR ?? join(root, 'build/release');
const webModule = process.env.NUV_WEB_MODULE ?? join(root, 'build/wasm-simd/bindings/web/nuvimgsdk.wasm');

export const engine = await Engine.load(await WebAssembly.compile(readFileSync(webModule)), functions);

export const build = {
  flags: ['-O1', '-Wall', '-Wextra'],
  link: (library) => ['-L', native, '-L', `${native}/bindings`, `-l${library}`,
                      `-Wl,-rpath,${native}:${native}/bindings`],
  environment: {...process.env, PYTHONPATH: join(root, 'bindings/python'), PYTHONDONTWRITEBYTECODE: '1',
                NUVIMGSDK_LIBRARY: join(native, 'bindings/libnuvimgsdk_c.so')},
};

/** A picture as a BMP file of 8 or 24 bits. */
export function bmpOf({width, height, channels, data}) {
  const row = width * channels;
  const stride = Math.ceil(row / 4) * 4;
  const start = channels === 1 ? 54 + 1024 : 54;
  const file = Buffer.alloc(start + stride * height);
  file.write('BM');
  const fields = [[2, file.length], [10, start], [14, 40], [18, width], [22, height], [34, stride * height]];
  for (const [at, value] of fields) file.writeInt32LE(value, at);
  file.writeUInt16LE(1, 26);
  file.writeUInt16LE(channels * 8, 28);
  if (channels === 1) for (let i = 0; i < 256; ++i) file.writeUInt32LE(i * 0x10101, 54 + 4 * i);
  for (let y = 0; y < height; ++y) file.set(data.subarray(y * row, (y + 1) * row), start + (height - 1 - y) * stride);
  return file;
}

// Runs programs in one process of Python: job.json lists [program, picture, result].
const RUNNER = `
import contextlib, io, json, runpy, sys
texts = []
for job in json.load(open(sys.argv[1])):
    sys.argv, text = job, io.StringIO()
    with contextlib.redirect_stdout(text):
        runpy.run_path(job[0])
    texts.append(text.getvalue())
json.dump(texts, sys.stdout)
`;

/** What the native library gives for states, by their programs in Python: [{picture, text}]. */
export async function nativeResults(states) {
  const folder = mkdtempSync(join(tmpdir(), 'native'));
  try {
    const jobs = states.map((state, i) => {
      const [program, start, result] = ['py', 'start.bmp', 'bmp'].map((end) => join(folder, `${i}.${end}`));
      const picture = shippedPicture(state.picture);
      writeFileSync(program, code(state, functions, 'python', picture));
      writeFileSync(start, bmpOf(picture));
      return [program, start, result];
    });
    writeFileSync(join(folder, 'job.json'), JSON.stringify(jobs));
    const settings = {env: build.environment, maxBuffer: 1e9};
    const {stdout} = await promisify(execFile)('/usr/bin/python3', ['-c', RUNNER, join(folder, 'job.json')], settings);
    return JSON.parse(stdout).map((text, i) => ({picture: decodePicture(readFileSync(jobs[i][2])), text}));
  } finally {
    rmSync(folder, {recursive: true});
  }
}

const NUMBER = /(?<![A-Za-z_\d.])-?(?:\d+(?:\.\d+)?(?:e[-+]\d+)?|nan|inf)(?![A-Za-z_])/g;

/** Compares what a program printed with the results of its steps. */
export function assertPrinted(text, results, message) {
  const numbers = results.flatMap(printedNumbers);
  const values = text.split('\n').map((line) => line.slice(line.indexOf(':') + 1));
  const printed = values.flatMap((value) => value.match(NUMBER) ?? []).map(Number);
  assert.equal(printed.length, numbers.length, `${message}: the count of numbers`);
  printed.forEach((value, i) => assert.ok(isNear(value, numbers[i]), `${message}: ${value} instead of ${numbers[i]}`));
}

// Sines differ in their last bit, and programs print ten digits.
const isNear = (a, b) => Object.is(a, b) || Math.abs(a - b) <= 1e-6 * Math.max(1, Math.abs(b));
