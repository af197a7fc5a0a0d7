// Makes playground.html, one file that holds all it needs.
//
//     node site/playground/build.mjs WASM OUT.html
//
// The module, the catalogue, the worker and the pictures are compressed and stand in the page as base64.

import {createHash} from 'node:crypto';
import {readFile, writeFile, mkdir} from 'node:fs/promises';
import {dirname} from 'node:path';
import {gzipSync} from 'node:zlib';
import {fileURLToPath} from 'node:url';
import {build, transform} from 'esbuild';
import {catalogue} from '../model/catalogue.js';

const [wasm, out] = process.argv.slice(2);
if (!out) {
  console.error('usage: node site/playground/build.mjs WASM OUT.html');
  process.exit(2);
}

const here = (name) => new URL(name, import.meta.url);
const text = (name) => readFile(here(name), 'utf8');
const json = async (name) => JSON.parse(await text(name));

async function bundle(name) {
  const {outputFiles} = await build({
    entryPoints: [fileURLToPath(here(name))],
    bundle: true, minify: true, write: false, format: 'iife', target: 'es2022',
  });
  return outputFiles[0].text.trim().replaceAll('</script', '<\\/script');
}

const packed = (id, bytes) =>
  `<script type="application/gzip;base64" id="${id}">${gzipSync(bytes, {level: 9}).toString('base64')}</script>`;

const hash = (content) => `'sha256-${createHash('sha256').update(content).digest('base64')}'`;

const pictures = await json('../model/pictures.json');
const boundary = await json('../../boundary/boundary.json');
const functions = catalogue(boundary, await json('../../bindings/web/parameters.json'));
const script = await bundle('main.js');
const {code: style} = await transform(await text('style.css'), {loader: 'css', minify: true});
const shipped = pictures.map(({name, title, source}) => ({name, title, source}));
const data = [
  packed('module', await readFile(wasm)),
  packed('worker', await bundle('worker.js')),
  packed('catalogue', JSON.stringify({functions, pictures: shipped})),
  ...await Promise.all(pictures.map(async ({name, file}) => (
    packed(`picture-${name}`, await readFile(here(`../../${file}`)))))),
];
const parts = {
  policy: `default-src 'none'; script-src ${hash(script)} 'wasm-unsafe-eval'; style-src ${hash(style)}; ` +
    "worker-src blob:; img-src data: blob:; base-uri 'none'; form-action 'none'",
  style, script, data: data.join('\n'),
};
const html = (await text('index.html')).replace(/\{\{(\w+)\}\}/g, (_, name) => parts[name]);
await mkdir(dirname(out), {recursive: true});
await writeFile(out, html);
console.log(`${out}: ${(html.length / 1e6).toFixed(2)} MB, ${functions.length} functions`);
