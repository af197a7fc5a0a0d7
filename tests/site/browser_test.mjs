// The playground in a browser: playground.html in dist/site, which ./site.sh builds.

import assert from 'node:assert/strict';
import {spawnSync} from 'node:child_process';
import {readFileSync} from 'node:fs';
import {createServer} from 'node:http';
import {createRequire} from 'node:module';
import {join} from 'node:path';
import {after, before, test} from 'node:test';

import {functions} from '../../site/model/files.js';
import {encode} from '../../site/model/pipeline.js';
import {bmpOf, build, root} from './native.mjs';

const require = createRequire(join(root, 'site/package.json'));
const {chromium} = require('playwright-core');
const file = process.env.NUV_PLAYGROUND ?? join(root, 'dist/site/playground.html');
const address = `file://${file}`;

let browser, server, served;

before(async () => {
  browser = await chromium.launch({
    executablePath: '/usr/bin/chromium',
    args: [
      '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync',
      '--use-fake-device-for-media-stream', '--use-fake-ui-for-media-stream',
    ],
  });
  server = createServer((request, response) => {
    response.writeHead(request.url === '/' ? 200 : 404, {'content-type': 'text/html'});
    response.end(request.url === '/' ? readFileSync(file) : '');
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  served = `http://127.0.0.1:${server.address().port}/`;
});

after(async () => {
  await browser?.close();
  server?.close();
});

// Opens the page with a pipeline, and fails if the page makes a request or an error is thrown.
async function withPage(pipeline, use, {url = address, ...options} = {}) {
  const context = await browser.newContext({viewport: {width: 1400, height: 900}, ...options});
  const page = await context.newPage();
  const faults = [];
  page.on('request', (request) => {
    if (!/^(blob|data):/.test(request.url()) && request.url().split('#')[0] !== url) faults.push(request.url());
  });
  page.on('pageerror', (error) => faults.push(error.stack));
  page.on('console', (message) => message.type() === 'error' && faults.push(message.text()));
  try {
    await page.goto(pipeline ? `${url}#${pipeline}` : url);
    await finished(page);
    await use(page);
    assert.deepEqual(faults, []);
  } finally {
    await context.close();
  }
}

// Waits until the pipeline has been run.
const finished = (page) => page.locator('main[aria-busy=false]').waitFor();
const status = (page) => page.locator('#status').textContent();
const steps = (page) => page.locator('#steps .call').allTextContents();
const notes = (page) => page.locator('#steps .note').allTextContents();

// The picture on the screen, pixel for pixel, as bytes in the order B, G, R.
async function shown(page) {
  await page.selectOption('#before', 'none');
  await page.uncheck('#overlay');
  await page.click('#zoom-one');
  await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
  const bytes = await page.evaluate(() => {
    const canvas = document.querySelector('#view canvas');
    const {data} = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
    let painted = '';  // the picture is opaque, and what surrounds it is transparent
    for (let i = 0; i < data.length; i += 4) {
      if (data[i + 3] === 255) painted += String.fromCharCode(data[i + 2], data[i + 1], data[i]);
    }
    return btoa(painted);
  });
  return Buffer.from(bytes, 'base64');
}

// What the library for this machine gives for Python expressions over `coins`: bytes in the order B, G, R.
function native(expressions) {
  const program = `
import base64, json, sys
import numpy as np, nuvimgsdk as nuv
coins = nuv.imread(${JSON.stringify(join(root, 'examples/data/coins.bmp'))})
results = [np.atleast_3d(eval(text)) for text in json.load(sys.stdin)]
json.dump([base64.b64encode(np.repeat(r, 3 // r.shape[2], axis=2).tobytes()).decode() for r in results], sys.stdout)`;
  const {stdout, stderr, status: code} = spawnSync('/usr/bin/python3', ['-c', program], {
    input: JSON.stringify(expressions), maxBuffer: 1e9, encoding: 'utf8', env: build.environment,
  });
  assert.equal(code, 0, stderr);
  return JSON.parse(stdout).map((text) => Buffer.from(text, 'base64'));
}

// Three ways in which a file comes to the page.
async function drop(page, name, bytes) {
  const dataTransfer = await transfer(page, name, bytes);
  await page.dispatchEvent('#view', 'dragenter', {dataTransfer});
  await page.dispatchEvent('#view', 'drop', {dataTransfer});
}

async function paste(page, name, bytes) {
  await page.evaluate((clipboardData) => {
    document.body.dispatchEvent(new ClipboardEvent('paste', {clipboardData, bubbles: true}));
  }, await transfer(page, name, bytes));
}

async function choose(page, name, bytes) {
  await page.setInputFiles('#file', {name, mimeType: 'image/bmp', buffer: bytes});
}

function transfer(page, name, bytes) {
  return page.evaluateHandle(([fileName, text]) => {
    const data = new DataTransfer();
    data.items.add(new File([Uint8Array.from(atob(text), (c) => c.charCodeAt(0))], fileName, {type: 'image/bmp'}));
    return data;
  }, [name, Buffer.from(bytes).toString('base64')]);
}

test('a newcomer sees a pipeline that has run', async () => {
  for (const url of [address, served]) {
    await withPage('', async (page) => {
      assert.ok((await steps(page)).length >= 3);
      assert.match(await status(page), /^\d steps · /);
      assert.match((await notes(page)).at(-1), /\d+ contours/);
      assert.equal(await page.locator('#notice').isVisible(), false);
    }, {url});
  }
});

test('the screen shows the bytes of the native library', async () => {
  const table = [
    ['NuvGryImgSobel', 'nuv.NuvGryImgSobel(coins)'],
    ['NuvThreshold,T=118', 'nuv.NuvThreshold(coins, 118)'],
    ['NuvGryAverageFilter,M=5,N=2', 'nuv.NuvGryAverageFilter(coins, 5, 2)'],
    ['NuvGryImgMedianBoundary0,M=2,N=2', 'nuv.NuvGryImgMedianBoundary0(coins, 2, 2)'],
    ['NuvShenJunEdgeFast,shift=2,grdThreshold=12', 'nuv.NuvShenJunEdgeFast(coins, 2, 12)'],
    ['NuvHistogramEqualizeFast', 'nuv.NuvHistogramEqualizeFast(coins)'],
    ['NuvShrinkGryImg2x2ByAvr', 'nuv.NuvShrinkGryImg2x2ByAvr(coins)'],
    ['NuvCopyGryRect,region=17:30:100:90', 'nuv.NuvCopyGryRect(coins, 17, 100, 30, 90)'],
    ['NuvImgRotate90DegreeCS/NuvFlipVertical', 'nuv.NuvFlipVertical(nuv.NuvImgRotate90DegreeCS(coins))'],
    ['NuvThreshold,T=118/NuvBinImgThin', 'nuv.NuvBinImgThin(nuv.NuvThreshold(coins, 118)).ResImg'],
    ['NuvGry2RGBImg/NuvRGBLine,point1=10:20,point2=300:200,colour=200:100:50',
      'nuv.NuvRGBLine(nuv.NuvGry2RGBImg(coins, coins, coins), 10, 20, 300, 200, 200, 100, 50)'],
  ];
  const expected = native(table.map(([, python]) => python));
  for (const [k, [pipeline]] of table.entries()) {
    await withPage(`coins/${pipeline}`, async (page) => {
      assert.ok(expected[k].equals(await shown(page)), pipeline);
    });
  }
});

test('a file becomes the picture', async () => {
  const data = Uint8Array.from({length: 37 * 21 * 3}, (_, i) => (i * i) % 251);
  for (const bring of [drop, paste, choose]) {
    await withPage('coins', async (page) => {
      await bring(page, 'small.bmp', bmpOf({width: 37, height: 21, channels: 3, data}));
      await page.waitForURL(/#own$/);
      await finished(page);
      assert.equal(await page.locator('#start .note').textContent(), '37 × 21 colour');
      assert.equal(await page.locator('#shipped :checked').textContent(), 'small.bmp');
      assert.ok((await shown(page)).equals(data), bring.name);
      // An address with another picture comes back to it.
      await page.goBack();
      await page.locator('#start .note', {hasText: '384 × 303 gray'}).waitFor();
    });
  }
});

test('a file that is no picture gives a sentence, and the old picture stays', async () => {
  await withPage('coins/NuvGryImgSobel', async (page) => {
    await drop(page, 'letter.png', Buffer.from('no picture'));
    await page.locator('#notice').waitFor();
    assert.match(await page.locator('#notice').textContent(), /cannot decode/);
    assert.match(await page.locator('#start .note').textContent(), /384 × 303 gray/);
  });
});

test('the camera gives a picture', async () => {
  await withPage('coins', async (page) => {
    await page.click('#camera');
    await page.waitForFunction(() => document.querySelector('video').videoWidth > 0);
    await page.click('#camera-dialog .take');
    await page.waitForFunction(() => document.querySelector('#shipped :checked').textContent === 'camera picture');
  }, {url: served, permissions: ['camera']});
});

test('a long call is stopped, and the page goes on', async () => {
  await withPage('coins', async (page) => {
    // The regions of noise take seconds.
    const data = Uint8Array.from({length: 2000 * 1500}, (_, i) => Math.imul(i, 0x9e3779b1) >>> 24);
    await drop(page, 'noise.bmp', bmpOf({width: 2000, height: 1500, channels: 1, data}));
    await page.waitForURL(/#own/);
    await finished(page);
    await page.goto(page.url() + '/NuvMergeSplit,minArea=2'.repeat(5));
    const stop = page.locator('#stop');
    await stop.waitFor();
    await page.click('#start-title');  // the page answers meanwhile
    assert.equal(await page.locator('#start').getAttribute('class'), 'start step selected');
    const begun = Date.now();
    await stop.click();
    await finished(page);
    assert.ok(Date.now() - begun < 5000);
    assert.match((await notes(page)).join(), /Stopped after/);
    await page.locator('#steps .title').first().click();
    await page.getByRole('switch').first().uncheck();
    await page.getByRole('button', {name: 'Remove'}).nth(4).click();
    await stop.waitFor();  // a new worker runs the changed pipeline
  });
});

test('a wrong setting gives a sentence at the setting', async () => {
  await withPage('coins/NuvThreshold/NuvGryImgSobel', async (page) => {
    await page.locator('#steps .title').first().click();
    const box = page.getByRole('spinbutton', {name: 'Threshold'});
    await box.fill('300');
    await finished(page);
    const complaint = page.locator(`#${(await box.getAttribute('aria-describedby')).split(' ').at(-1)}`);
    assert.match(await complaint.textContent(), /from 0 to 255/);
    assert.equal(await box.getAttribute('aria-invalid'), 'true');
    assert.match(await status(page), /Step 1 did not run/);
    await box.fill('90');
    await finished(page);
    assert.equal(await complaint.isVisible(), false);
    assert.match(await status(page), /^2 steps · /);
  });
});

test('a step that takes another kind of picture says so and offers to convert it', async () => {
  await withPage('coins/NuvRGB2Gry', async (page) => {
    assert.match(await page.locator('.settings .complaint').first().textContent(), /colour picture/);
    await page.getByRole('button', {name: 'Insert NuvGry2RGBImg'}).click();
    await finished(page);
    assert.deepEqual(await steps(page), ['NuvGry2RGBImg', 'NuvRGB2Gry']);
    assert.match(await status(page), /^2 steps · /);
  });
});

test('a function shows its example', async () => {
  await withPage('camera/NuvContourRotatedRect', async (page) => {
    assert.match(await status(page), /did not run/);
    await page.getByRole('link', {name: 'Example'}).click();
    await page.locator('#status', {hasText: /^\d steps · /}).waitFor();
    assert.equal((await steps(page)).at(-1), 'NuvContourRotatedRect');
    assert.equal(await page.locator('#steps .step').last().getAttribute('class'), 'step selected');
  });
});

test('the examples of all functions run in the page', async () => {
  await withPage('coins', async (page) => {
    for (const {name, example} of functions) {
      const outcome = await page.evaluate(async (hash) => {
        const line = document.querySelector('#status');
        line.textContent = '';
        location.hash = hash;
        while (!line.textContent) await new Promise((resolve) => setTimeout(resolve, 5));
        return line.textContent;
      }, encode(example));
      assert.match(outcome, /^\d+ steps? · /, name);
    }
  });
});

test('the address holds the state', async () => {
  await withPage('coins/NuvThreshold,T=90/NuvGryImgSobel', async (page) => {
    assert.deepEqual(await steps(page), ['NuvThreshold', 'NuvGryImgSobel']);
    await page.locator('#steps .title').first().click();
    const box = page.getByRole('spinbutton', {name: 'Threshold'});
    assert.equal(await box.inputValue(), '90');
    await box.fill('120');
    await page.waitForURL(/T=120/);
    await page.locator('#steps').getByRole('button', {name: 'Remove NuvGryImgSobel'}).click();
    await page.getByRole('switch', {name: 'NuvThreshold is on'}).uncheck();
    await finished(page);
    assert.equal(await status(page), 'No step');
    for (const expected of [/^1 step · /, /^2 steps · /]) {
      await page.goBack();
      await page.locator('#status', {hasText: expected}).waitFor();
    }
    await page.goBack();
    await page.waitForFunction(() => document.querySelector('[id="step-0-T"]').value === '90');
  });
  await withPage('coins/NuvNothing', async (page) => {
    assert.match(await page.locator('#notice').textContent(), /NuvNothing/);
  });
});

test('the mouse draws a region', async () => {
  await withPage('coins/NuvThresholdInRect', async (page) => {
    await page.click('#zoom-one');
    const box = await page.locator('#view').boundingBox();
    const [centreX, centreY] = [Math.round(box.x + box.width / 2), Math.round(box.y + box.height / 2)];
    await page.mouse.move(centreX, centreY);
    const [, x, y] = /x (\d+) +y (\d+)/.exec(await page.locator('#reading').textContent());
    const [left, top] = [centreX - x, centreY - y];
    await page.getByRole('button', {name: /^Draw/}).click();
    await page.mouse.move(left + 20, top + 30);
    await page.mouse.down();
    await page.mouse.move(left + 80, top + 60);
    await page.mouse.up();
    await page.waitForURL(/region=20:30:80:60/);
    // A corner is dragged farther.
    await page.mouse.move(left + 80, top + 60);
    await page.mouse.down();
    await page.mouse.move(left + 90, top + 70);
    await page.mouse.up();
    await page.waitForURL(/region=20:30:90:70/);
    assert.equal(await page.getByRole('spinbutton', {name: 'right'}).inputValue(), '90');
  });
});

test('the pipeline is shown as a program in three languages', async () => {
  await withPage('coins/NuvThreshold,T=77', async (page) => {
    await page.click('#copy-as');
    const firstLines = {
      'C++': '#include <NuvImgSDK2014DLL.h>', C: '#include <nuvimgsdk_c.h>', Python: 'import nuvimgsdk',
    };
    for (const [language, words] of Object.entries(firstLines)) {
      await page.getByText(language, {exact: true}).click();
      const program = await page.locator('#code pre').textContent();
      assert.ok(program.includes(words) && program.includes('77'), language);
    }
  });
});

test('the keyboard alone is enough', async () => {
  await withPage('coins', async (page) => {
    const press = (...keys) => keys.reduce((last, key) => last.then(() => page.keyboard.press(key)), Promise.resolve());
    const focusOn = async (selector) => {
      for (let i = 0; i < 60; ++i) {
        if (await page.evaluate((wanted) => document.activeElement.matches(wanted), selector)) return;
        await press('Tab');
      }
      assert.fail(`Tab does not reach ${selector}`);
    };
    for (const name of ['NuvThreshold', 'NuvGryImgSobel']) {
      await focusOn('#add');
      await press('Enter');
      await page.keyboard.type(name);
      await press('Enter');
      await finished(page);
    }
    assert.deepEqual(await steps(page), ['NuvThreshold', 'NuvGryImgSobel']);
    await press('Alt+ArrowUp');
    assert.deepEqual(await steps(page), ['NuvGryImgSobel', 'NuvThreshold']);
    await press('Alt+ArrowDown', 'Shift+Tab');  // from the title of step 2 to the switch of step 1
    await focusOn('#view');
    await press('ArrowRight', 'ArrowDown');
    assert.match(await page.locator('#spoken').textContent(), /x \d+ +y \d+ +\d+ → \d+/);
    await focusOn('.divider');
    const share = Number(await page.locator('.divider').getAttribute('aria-valuenow'));
    await press('ArrowRight', 'ArrowRight');
    assert.equal(Number(await page.locator('.divider').getAttribute('aria-valuenow')), share + 2);
    for (let i = 0; i < 2; ++i) {
      await page.keyboard.down('Shift');
      await focusOn('[data-key^=remove]');
      await page.keyboard.up('Shift');
      await press('Enter');
      await finished(page);
    }
    assert.deepEqual(await steps(page), []);
  });
});

test('axe finds no violation', async () => {
  const axe = readFileSync(require.resolve('axe-core'), 'utf8');
  const looks = [{colorScheme: 'light'}, {colorScheme: 'dark'}, {viewport: {width: 360, height: 780}}];
  const scenes = [
    ['', async () => {}],
    ['coins/NuvThresholdInRect,T=300/NuvGryImgSobel', (page) => page.locator('#steps .title').first().click()],
    ['coins', (page) => page.click('#add')],
    ['coins/NuvGryImgSobel', (page) => page.click('#copy-as')],
    ['lines/NuvRGBLine', async () => {}],
    ['coins/NuvGryImgPrjXY', async () => {}],
  ];
  for (const look of looks) {
    for (const [pipeline, use] of scenes) {
      await withPage(pipeline, async (page) => {
        await use(page);
        await page.evaluate(axe);
        const {violations} = await page.evaluate(() => window.axe.run());
        assert.deepEqual(violations.map(({id, nodes}) => `${id}: ${nodes.map(({html}) => html).join(' ')}`), [],
          `${pipeline || 'first'} ${JSON.stringify(look)}`);
        const [content, screen] = await page.evaluate(() => (
          [document.documentElement.scrollWidth, document.documentElement.clientWidth]));
        assert.equal(content, screen, 'the page is wider than the screen');
      }, look);
    }
  }
});
