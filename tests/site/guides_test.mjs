// The programs of the guides, compiled and run as the guides say. They print what the guides print.

import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {root} from './native.mjs';

const work = mkdtempSync(join(tmpdir(), 'nuv_guides_'));
const installed = join(work, 'installed');
const guide = (name) => readFileSync(join(root, 'site/guides', name), 'utf8');

// The blocks of code of one language, in their order.
const blocks = (text, language) =>
  [...text.matchAll(/^```(\w*)\n([^]*?)^```$/gm)].filter((match) => match[1] === language).map((match) => match[2]);

// Runs commands of a shell in a folder that has the project's pictures, with the installed library.
const run = (commands) => execFileSync('sh', ['-ec', commands], {
  cwd: work,
  encoding: 'utf8',
  env: {
    ...process.env,
    PKG_CONFIG_PATH: join(installed, 'lib/pkgconfig'),
    LD_LIBRARY_PATH: join(installed, 'lib'),
    PYTHONPATH: join(root, 'bindings/python'),
    PYTHONDONTWRITEBYTECODE: '1',
    NUVIMGSDK_LIBRARY: join(installed, 'lib/libnuvimgsdk_c.so'),
  },
});

before(() => {
  execFileSync('cmake', ['--install', join(root, 'build/release'), '--prefix', installed]);
  cpSync(join(root, 'examples/data'), join(work, 'examples/data'), {recursive: true});
});
after(() => rmSync(work, {recursive: true}));

test('first steps count the coins in C++ and in Python', () => {
  const text = guide('first_steps.md');
  writeFileSync(join(work, 'coins.cpp'), blocks(text, 'cpp')[0]);
  const lines = run(blocks(text, 'sh').at(-1)).trimEnd().split('\n');
  assert.equal(lines.length, 24);
  assert.equal(`${lines.slice(0, 3).join('\n')}\n`, blocks(text, '')[0]);
  writeFileSync(join(work, 'coins.py'), blocks(text, 'python')[0]);
  const areas = lines.map((line) => line.replace(/at .*, area/, 'area'));
  assert.deepEqual(run('/usr/bin/python3 coins.py').trimEnd().split('\n'), areas);
});

test('the guide to areas prints the areas that it explains', () => {
  const text = guide('areas.md');
  writeFileSync(join(work, 'areas.cpp'), blocks(text, 'cpp')[0]);
  const flags = '-Wall -Wextra -Werror $(pkg-config --cflags --libs NuvImgSDK2014DLL)';
  const printed = run(`g++ areas.cpp ${flags} -o areas && ./areas`);
  assert.equal(printed, blocks(text, '')[0]);
});
