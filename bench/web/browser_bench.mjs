// Times the functions of web_bench.cpp in Chromium, and prints the same lines: name, tab, microseconds.
//
//     node bench/web/browser_bench.mjs nuvimgsdk.wasm
//
// The clock of a page is coarse, so the time of a function is that of the fastest of many rounds of calls.

import {readFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {join, resolve} from 'node:path';
import {fileURLToPath} from 'node:url';

const root = resolve(fileURLToPath(import.meta.url), '../../..');
const {chromium} = createRequire(join(root, 'site/package.json'))('playwright-core');

// Runs in the page.
async function measureAll({module, loader, photograph}) {
  const {load} = await import(`data:text/javascript,${encodeURIComponent(loader)}`);
  const sdk = await load(await WebAssembly.compile(Uint8Array.from(module)));
  const [width, height] = [1280, 960];

  // The photograph of 512 by 512 pixels, mirrored at its edges until the size is filled.
  const mirrored = (i) => (Math.floor(i / 512) % 2 === 0 ? i % 512 : 511 - i % 512);
  const pixels = Uint8Array.from({length: width * height},
    (_, i) => photograph[mirrored(Math.floor(i / width)) * 512 + mirrored(i % width)]);
  const gray = sdk.put(pixels);
  const binary = sdk.put(pixels.map((value) => (value >= 128 ? 255 : 0)));
  const [rgb, result, work] = [3, 1, 1].map((channels) => sdk.malloc(channels * width * height));
  sdk.call.NuvGry2RGBImg(gray, gray, gray, width, height, rgb);
  sdk.call.NuvDrawGryRect(binary, width, height, 0, width, 0, height, 0);

  const median = (half) => sdk.call.NuvGryImgMedianBoundary0(gray, width, height, half, half, result);
  const calls = {
    'NuvThreshold': () => sdk.call.NuvThresholdToRes(gray, width, height, 128, result),
    'NuvGryImgSobel': () => sdk.call.NuvGryImgSobel(gray, width, height, result),
    'NuvGryAverageFilterFast 11x11': () => sdk.call.NuvGryAverageFilterFast(gray, width, height, 5, 5, result),
    'NuvGryImgMedianBoundary0 3x3': () => median(1),
    'NuvGryImgMedianBoundary0 5x5': () => median(2),
    'NuvGryImgMedianBoundary0 15x15': () => median(7),
    'NuvRGB2Gry': () => sdk.call.NuvRGB2Gry(rgb, width, height, result),
    'NuvGetContours': () => sdk.call.NuvFreeContours(sdk.call.NuvGetContours(binary, work, width, height, 0, 0, 0)),
    'NuvBinImgThin': () => sdk.call.NuvBinImgThin(binary, work, width, height, result),
    'NuvImgRotate90DegreeCS': () => sdk.call.NuvImgRotate90DegreeCS(gray, width, height, false, result),
  };
  const timed = (call, times) => {
    const start = performance.now();
    for (let i = 0; i < times; ++i) call();
    return performance.now() - start;
  };
  const fastest = (call, times, rounds) => Math.min(...Array.from({length: rounds}, () => timed(call, times)));
  return Object.entries(calls).map(([name, call]) => {
    fastest(call, 1, 20);  // the engine compiles while the first calls run
    let times = 1;
    while (fastest(call, times, 3) < 10) times *= 2;  // a round takes 10 ms or longer
    return `${name}\t${(fastest(call, times, 20) / times * 1000).toFixed(1)}`;
  });
}

const bmp = readFileSync(join(root, 'examples/data/camera.bmp'));
const start = bmp.readInt32LE(10);
const rows = Array.from({length: 512}, (_, y) => bmp.subarray(start + (511 - y) * 512, start + (512 - y) * 512));
const browser = await chromium.launch({executablePath: '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu']});
try {
  const page = await browser.newPage();
  const lines = await page.evaluate(measureAll, {
    module: [...readFileSync(process.argv[2])],
    loader: readFileSync(join(root, 'bindings/web/nuvimgsdk.mjs'), 'utf8'),
    photograph: [...Buffer.concat(rows)],
  });
  console.log(lines.join('\n'));
} finally {
  await browser.close();
}
