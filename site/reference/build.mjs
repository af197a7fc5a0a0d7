// Makes the reference and the guides of the site: node site/reference/build.mjs MODULE FOLDER
//
// MODULE is nuvimgsdk.wasm, which makes the pictures. FOLDER receives the pages. Doxygen reads copies of the headers
// and guides, which are complete: with signatures, pictures and links.

import {execFileSync} from 'node:child_process';
import {copyFileSync, mkdirSync, readFileSync, renameSync, rmSync, writeFileSync} from 'node:fs';
import {basename, dirname, join, resolve} from 'node:path';
import {fileURLToPath} from 'node:url';
import {leftOut} from '../model/catalogue.js';
import {Engine} from '../model/engine.js';
import {boundary, choices, functions} from '../model/files.js';
import {Examples} from './examples.mjs';
import {readGuide} from './guides.mjs';
import {readHeaders, withBlocks} from './headers.mjs';
import {absence, doors, escaped, functionBlock, functionIndex, searchIndex} from './html.mjs';
import {drawingOf, rimPicture} from './rim.mjs';
import {readSignatures} from './signatures.mjs';

const root = resolve(dirname(fileURLToPath(import.meta.url)), '../..');
const [module, folder] = process.argv.slice(2).map((path) => resolve(path));
const work = join(root, 'build/site');
const input = join(work, 'input');
const pages = join(work, 'pages');  // becomes the folder once it is complete
rmSync(work, {recursive: true, force: true});
mkdirSync(join(input, 'nuv'), {recursive: true});
mkdirSync(join(pages, 'pictures'), {recursive: true});

// The documents of the site, and the labels of their pages.
const GUIDES = {
  'site/guides/front.md': 'index',
  'site/guides/first_steps.md': 'first_steps',
  'docs/python.md': 'python',
  'docs/windows.md': 'windows',
  'site/guides/areas.md': 'areas',
  'docs/performance.md': 'performance',
  'site/guides/results.md': 'results',
  'docs/hosts.md': 'hosts',
  'docs/abi.md': 'abi',
};
// Documents whose place is taken by another page.
const REPLACED = {'docs/gallery.md': 'index', 'docs/quick_reference.md': 'function'};

const headers = await readHeaders(root, boundary);
const links = new Map(headers.flatMap((header) => header.functions)
  .map(({page, plainName}) => [plainName, `${page}#${plainName}`]));
const firstOverload = new Map(boundary.functions.map((f) => [f.name, f.plain_name]).reverse());
const signatures = await readSignatures(boundary, root);
const engine = await Engine.load(await WebAssembly.compile(readFileSync(module)), functions);
const examples = new Examples(engine, pages);
const exampleOf = examples.all();
const reasons = new Map(boundary.functions.map((f) => [f.plain_name, leftOut(f, choices)]));

// The headers.
const functionLink = (name) => links.get(name) ?? links.get(firstOverload.get(name));
for (const header of headers) {
  const example = (name) => exampleOf.get(name) ?? absence(reasons.get(name));
  const block = (name) => functionBlock(name, signatures.get(name), example(name));
  writeFileSync(join(input, header.file), withBlocks(header, block, functionLink));
}
for (const file of ['nuv/records.h', 'nuv/api.h']) copyFileSync(join(root, 'include', file), join(input, file));
writeFileSync(join(input, 'NuvImgSDK2014DLL.h'), readFileSync(join(root, 'include/NuvImgSDK2014DLL.h'), 'utf8')
  .replace('@mainpage NuvImgSDK2014DLL', '@page conventions Conventions'));

// The guides.
const areas = readFileSync(join(root, 'site/guides/areas.md'), 'utf8');
const gallery = JSON.parse(readFileSync(join(root, 'site/guides/gallery.json')));
const site = {
  pages: new Map([...Object.entries({...GUIDES, ...REPLACED}),
    ...headers.map((header) => [`include/${header.file}`, header.page.replace('.html', '')])]),
  functionLink,
  picture(path, words) {
    copyFileSync(join(root, path), join(pages, 'pictures', basename(path)));
    const steps = gallery[basename(path, '.png')];
    return `<img src="pictures/${basename(path)}" alt="${escaped(words)}" loading="lazy">` +
      (steps ? `<a href="playground.html#${steps}" class="try">Try it</a>` : '');
  },
  fragments: {doors, rim: rimPicture(engine, drawingOf(areas))},
};
const sections = headers.flatMap((header) => header.groups);
for (const [file, label] of Object.entries(GUIDES)) {
  const text = await readGuide(root, file, label, site);
  writeFileSync(join(input, `${label}.md`), text);
  const [, title] = text.match(/^# (.*?) \{/m);
  for (const [, name, anchor] of text.matchAll(/^##+ (.*?) \{#(\w+)\}$/gm))
    sections.push({name, link: `${label}.html#${anchor}`, text: `Guide: ${title}`});
  sections.push({name: title, link: `${label}.html`, text: 'Guide'});
}
sections.push({name: 'Conventions', link: 'conventions.html', text: 'What holds for every function'});
writeFileSync(join(pages, 'search_index.js'), searchIndex(boundary, links, sections));
writeFileSync(join(input, 'function.md'), functionIndex(boundary, links, examples.results));

// The head of each page is Doxygen's, with the scripts of the site.
const head = join(work, 'head.html');
execFileSync('doxygen', ['-w', 'html', head, join(work, 'foot.html'), join(work, 'doxygen.css')]);
writeFileSync(head, readFileSync(head, 'utf8').replace('</head>', `
<script src="$relpath^doxygen-awesome-darkmode-toggle.js"></script>
<script src="$relpath^page.js"></script>
</head>`));
execFileSync('doxygen', ['-'], {
  cwd: root,
  stdio: ['pipe', 'inherit', 'inherit'],
  input: `@INCLUDE = site/reference/Doxyfile
INPUT = ${input}
STRIP_FROM_PATH = ${input}
STRIP_FROM_INC_PATH = ${input}
HTML_HEADER = ${head}
OUTPUT_DIRECTORY = ${pages}
PROJECT_NUMBER = ${boundary.version}
`,
});
rmSync(folder, {recursive: true, force: true});
mkdirSync(dirname(folder), {recursive: true});
renameSync(pages, folder);
