// The reference in a browser: its search, the list of all functions, and what assistive programs see of an example.

import assert from 'node:assert/strict';
import {createRequire} from 'node:module';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {pathToFileURL} from 'node:url';
import {root} from './native.mjs';

const require = createRequire(join(root, 'site/package.json'));
const {chromium} = require('playwright-core');
const address = (page) => `${pathToFileURL(join(root, 'dist/site'))}/${page}`;
let browser;
let page;
const faults = [];

before(async () => {
  browser = await chromium.launch({executablePath: '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu']});
  page = await browser.newPage();
  page.on('pageerror', (error) => faults.push(error.message));
  page.on('request', (request) => /^(file|data):/.test(request.url()) || faults.push(request.url()));
});
after(() => browser.close());

test('the search finds words inside names, and leads on by the keyboard', async () => {
  await page.goto(address('index.html'));
  await page.focus('#MSearchField');
  await page.keyboard.type('sobel vertical');
  await page.waitForSelector('#found a');
  const found = await page.locator('#found b').allTextContents();
  assert.deepEqual(found.slice(0, 2), ['NuvGryImgSobel90', 'NuvGryImgSobel90Just']);
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('Enter');
  await page.waitForURL(/group__edges__gradients\.html#NuvGryImgSobel90$/);
  await page.focus('#MSearchField');
  await page.keyboard.type('nosuchword');
  await page.waitForFunction(() => document.getElementById('found').textContent === 'Nothing found.');
});

test('the search works after the window has changed its width', async () => {
  await page.setViewportSize({width: 390, height: 844});
  await page.goto(address('index.html'));
  await page.setViewportSize({width: 1200, height: 800});
  await page.focus('#MSearchField');
  await page.keyboard.type('thin');
  await page.waitForSelector('#found a');
  assert.equal(await page.locator('#found b').first().textContent(), 'NuvBinImgThin');
});

test('an address of the list of all functions leads to the function', async () => {
  await page.goto(address('function.html#NuvThresholdToRes'));
  await page.waitForURL(/group__histogram__binarising\.html#NuvThresholdToRes$/);
});

test('axe finds no violation in the entries of functions', async () => {
  for (const colorScheme of ['light', 'dark']) {
    await page.emulateMedia({colorScheme});
    await page.goto(address('group__contours__measures.html'));
    await page.addScriptTag({path: require.resolve('axe-core')});
    const {violations} = await page.evaluate(() => axe.run('.function'));
    assert.deepEqual(violations.map((v) => `${v.id}: ${v.nodes[0].html}`), [], colorScheme);
  }
});

test('no page has raised an error or requested anything from elsewhere', () => assert.deepEqual(faults, []));
