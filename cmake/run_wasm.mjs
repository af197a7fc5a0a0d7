// Runs a WebAssembly program for WASI: node run_wasm.mjs PROGRAM [ARGUMENT...]
//
// The directory of the program is its root and its working directory. The directory of the project and that of
// temporary files keep their names.

import {readFile} from 'node:fs/promises';
import {tmpdir} from 'node:os';
import {dirname, resolve} from 'node:path';
import {argv, env, exit} from 'node:process';
import {fileURLToPath} from 'node:url';
import {WASI} from 'node:wasi';

const program = resolve(argv[2]);
const project = dirname(dirname(fileURLToPath(import.meta.url)));
const wasi = new WASI({
  version: 'preview1',
  args: [program, ...argv.slice(3)],
  env,
  preopens: {'/': dirname(program), '/tmp': tmpdir(), [project]: project},
  returnOnExit: true,
});
const {instance} = await WebAssembly.instantiate(await readFile(program), {wasi_snapshot_preview1: wasi.wasiImport});
exit(wasi.start(instance));
