// The module, and the native build beside which the tests put it.

import {execFile} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {fileURLToPath} from 'node:url';
import {promisify} from 'node:util';

import {code} from '../../site/model/code.js';
import {Engine} from '../../site/model/engine.js';
import {decodePicture, functions, shippedPicture} from '../../site/model/files.js';

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

/** The picture that the native library gives for a state, by its program in Python. */
export async function nativeResult(state) {
  const folder = mkdtempSync(join(tmpdir(), 'native'));
  const [program, start, result] = ['program.py', 'start.bmp', 'result.bmp'].map((name) => join(folder, name));
  const picture = shippedPicture(state.picture);
  writeFileSync(program, code(state, functions, 'python', picture));
  writeFileSync(start, bmpOf(picture));
  try {
    await promisify(execFile)('/usr/bin/python3', [program, start, result], {env: build.environment});
    return decodePicture(readFileSync(result));
  } finally {
    rmSync(folder, {recursive: true});
  }
}
