// The module, and the native build beside which the tests put it.

import {readFileSync} from 'node:fs';
import {join} from 'node:path';
import {fileURLToPath} from 'node:url';

import {Engine} from '../../site/model/engine.js';
import {functions} from '../../site/model/files.js';

export const root = fileURLToPath(new URL('../..', import.meta.url));
const native = process.env.NUV_BUILD_DIR ?? join(root, 'build/release');
const webModule = process.env.NUV_WEB_MODULE ?? join(root, 'build/wasm-simd/bindings/web/nuvimgsdk.wasm');

export const engine = await Engine.load(await WebAssembly.compile(readFileSync(webModule)), functions);

export const build = {
  flags: ['-O1', '-Wall', '-Wextra'],
  link: (library) => ['-L', native, '-L', join(native, 'bindings'), `-l${library}`, `-Wl,-rpath,${native}:${join(native, 'bindings')}`],
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
  [[2, file.length], [10, start], [14, 40], [18, width], [22, height], [34, stride * height]].forEach(([at, n]) => file.writeInt32LE(n, at));
  file.writeUInt16LE(1, 26);
  file.writeUInt16LE(channels * 8, 28);
  if (channels === 1) for (let i = 0; i < 256; ++i) file.writeUInt32LE(i * 0x10101, 54 + 4 * i);
  for (let y = 0; y < height; ++y) file.set(data.subarray(y * row, (y + 1) * row), start + (height - 1 - y) * stride);
  return file;
}
