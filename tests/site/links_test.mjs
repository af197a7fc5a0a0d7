// Tests of the pages in dist/site. The target of each link exists, each function has a section, and the pipeline of each
// "Try it" runs without complaint.

import assert from 'node:assert/strict';
import {readdirSync, readFileSync} from 'node:fs';
import {dirname, join, normalize} from 'node:path';
import {test} from 'node:test';
import {boundary, functions, shippedPicture} from '../../site/model/files.js';
import {complaints, decode} from '../../site/model/pipeline.js';
import {engine, root} from './native.mjs';

const site = join(root, 'dist/site');

const files = ['', 'search', 'pictures'].flatMap((folder) => readdirSync(join(site, folder), {withFileTypes: true})
  .filter((entry) => entry.isFile()).map((entry) => join(folder, entry.name)));
const pages = new Map(files.filter((file) => file.endsWith('.html') && file !== 'playground.html')
  .map((file) => [file, readFileSync(join(site, file), 'utf8')]));
const scripts = new Map(files.filter((file) => /^(navtree.*|menudata|modules|group_.*|search\/.*)\.js$/.test(file))
  .map((file) => [file, readFileSync(join(site, file), 'utf8')]));

const plain = (text) => text.replaceAll('&amp;', '&').replace(/&#(\d+);/g, (_, code) => String.fromCharCode(code));
const found = (text, pattern) => [...text.matchAll(pattern)].map(([, match]) => plain(match));
const anchors = new Map([...pages].map(([file, text]) => [file, new Set(found(text, /\s(?:id|name)="([^"]*)"/g))]));
const attributes = (text) => found(text.replace(/<script\b[^]*?<\/script>/g, ''), /\s(?:href|src)="([^"]*)"/g);

function* links() {
  for (const [file, text] of pages) for (const link of attributes(text)) yield {file, link};
  for (const [file, text] of scripts)
    for (const link of found(text, /["']((?:\.\.\/)?[\w-]+\.html(?:#[^"']*)?)["']/g)) yield {file, link};
}

test('every link leads to a file and an anchor of the site', () => {
  const known = new Set(files);
  const broken = [];
  let count = 0;
  for (const {file, link} of links()) {
    if (/^(https?|mailto|javascript|data):/.test(link) || link === '' || link.startsWith('$')) continue;
    const [path, anchor] = link.split('#');
    const target = path === '' ? file : normalize(join(dirname(file), path));
    ++count;
    const missing = !known.has(target) || (anchor && anchors.has(target) && !anchors.get(target).has(anchor));
    if (missing) broken.push(`${file}: ${link}`);
  }
  assert.deepEqual([...new Set(broken)], []);
  assert.ok(count > 5000, `only ${count} links were found`);
});

test('every function has a section with its signatures in C++, C and Python', () => {
  assert.equal(boundary.functions.length, 461);
  const index = new Map([...pages.get('function.html').matchAll(/<dt id="(\w+)"><a href="([^"#]*)#(\w+)">/g)]
    .map(([, name, page, anchor]) => [name, {page, anchor}]));
  for (const f of boundary.functions) {
    const {page, anchor} = index.get(f.plain_name);
    assert.equal(anchor, f.plain_name);
    const [, section] = pages.get(page).split(`<div id="${anchor}" class="function">`);
    const rows = [...section.split('</table>')[0].matchAll(/<th>(.*?)<\/th><td><code>(.*?)<\/code>/g)]
      .map(([, language, code]) => [language, plain(code.replace(/<\/?span>/g, ''))]);
    assert.deepEqual(rows.map(([language]) => language), ['C++', 'C', 'Python']);
    const [cpp, c, python] = rows.map(([, code]) => code);
    for (const a of f.arguments) {
      assert.ok(cpp.includes(a.name) && c.includes(a.name), `${f.plain_name} lacks ${a.name}`);
    }
    assert.match(cpp, new RegExp(`\\b${f.name}\\(`));
    assert.match(c, new RegExp(`\\b${f.plain_name}\\(`));
    assert.match(python, new RegExp(`^${f.plain_name}\\(`));
  }
});

test('every "Try it" is a pipeline that runs', () => {
  const states = new Set([...pages.values()].flatMap((text) => found(text, /href="playground\.html#([^"]*)"/g)));
  const shown = new Set();
  for (const text of states) {
    const state = decode(decodeURI(text), functions);
    const pictures = [shippedPicture(state.picture)];
    for (const step of state.steps) pictures.push(engine.run(step, pictures.at(-1), pictures).picture);
    assert.deepEqual(complaints(state, functions, pictures), [], text);
    shown.add(state.steps.at(-1).call);
  }
  assert.deepEqual(functions.map((fn) => fn.name).filter((name) => !shown.has(name)), []);
});

test('no page requests anything from elsewhere', () => {
  for (const [file, text] of pages)
    assert.doesNotMatch(text, /<(?:script|img|iframe|link|source)\b[^>]*(?:src|href)="(?:https?:)?\/\//, file);
  for (const file of files.filter((name) => name.endsWith('.css')))
    assert.doesNotMatch(readFileSync(join(site, file), 'utf8'), /@import|url\(["']?(?:https?:)?\/\//, file);
});
