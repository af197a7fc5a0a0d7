// Programs that "Copy as" gives in C++, C and Python do what the engine does: the same picture, and the same numbers.

import assert from 'node:assert/strict';
import {execFile} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import test, {after} from 'node:test';
import {promisify} from 'node:util';

import {code} from '../../site/model/code.js';
import {decodePicture, functions, shippedPicture} from '../../site/model/files.js';
import {decode, isOn} from '../../site/model/pipeline.js';
import {assertPrinted, bmpOf, build, engine, root} from './native.mjs';

const run = promisify(execFile);
const folder = mkdtempSync(join(tmpdir(), 'copy_as'));
after(() => rmSync(folder, {recursive: true}));

const PIPELINES = [
  'coins',
  'coins/NuvGryAverageFilter,M=40,N=40/NuvImg1Substract2To2/NuvThreshold,T=24/NuvGetContours,minArea=200',
  'coins/NuvThreshold/NuvMarkChainByColor,color=99/NuvContourCenter/NuvContourRect/NuvIsPointIncludedByChain',
  'coins/NuvGetOtsuThreshold/NuvGetHistogramInRect,region=40:30:99:120/NuvGetImageAvrAndDev/NuvDrawHistogram2Img',
  'coins/NuvImg1Difference2To1/NuvDrawGryRect/NuvGryLine,point1=5:6,point2=300:200/NuvSetNumberString2GryImg,Str=2014',
  'coins/NuvRotateImgByCCS,angle=33/NuvShrinkImgByAvr,M=3,N=2/NuvImgRotate90DegreeCS/NuvZoomGryImg2x2',
  'coins/NuvThreshold/NuvHoughLines_HT/NuvFittingLine/NuvPointsRect/NuvContour2Poly4/NuvRLXRegionsGet',
  'camera/NuvImgChainLines_DoGryImg,minLength=40/NuvMergeSplit,minArea=500/NuvGryFastMedianFilter/NuvMaxBrightRect',
  'camera/NuvImgChainLines_DoGryImg,bFitLines=false/NuvShenJunEdgeFastWithPoints/~NuvThreshold/' +
      'NuvRemoveEdgePointsByGrd/NuvGryImgPrjXYInRect/NuvImageShift',
  'camera/NuvGry2RGBImg,GreenImg=start/NuvRGBLine,colour=1:2:3/NuvYUV420SP2RGB/NuvRGBImgPrj2X/NuvRGB2YUV422P',
  'lines/NuvCopyRGBRectWithGry/NuvRGBAverageFilterFast/NuvRGB2Gry/NuvShiftXPerRowFast,k=0.25/NuvDataAvrAndDif',
  'lines/NuvRGB2Gry/NuvRobertByMask,MskImg=0/NuvShiftImg2BasedImg1,Img2=0/NuvImgDifferenceInRect,Img2=0/' +
      'NuvPasteGryImg2ResImg,GryImg=1/NuvThreshold/NuvRLXRegionsWithID',
];

// What makes a program of a source, and what runs it.
const compiler = (program, standard, headers, library) => (source) => ({
  make: [program, [standard, ...build.flags, '-I', join(root, headers), source, '-o', `${source}.out`,
                   ...build.link(library)]],
  start: [`${source}.out`],
});
const LANGUAGES = {
  cpp: compiler('g++', '-std=c++11', 'include', 'NuvImgSDK2014DLL'),
  c: compiler('gcc', '-std=c99', 'bindings/c', 'nuvimgsdk_c'),
  python: (source) => ({start: ['/usr/bin/python3', source]}),
};

for (const [number, pipeline] of PIPELINES.entries()) {
  test(pipeline, async (t) => {
    const state = decode(pipeline, functions);
    const start = shippedPicture(state.picture);
    const pictures = [start];
    const results = [];
    for (const step of state.steps) {
      const picture = pictures[pictures.length - 1];
      const done = isOn(step) ? engine.run(step, picture, pictures) : {picture, results: []};
      pictures.push(done.picture);
      results.push(...done.results);
    }
    const file = join(folder, String(number));
    writeFileSync(`${file}.bmp`, bmpOf(start));
    for (const [language, commands] of Object.entries(LANGUAGES)) {
      const source = `${file}.${language}`;
      const result = `${source}.bmp`;
      writeFileSync(source, code(state, functions, language, start));
      const {make, start: [program, ...args]} = commands(source);
      await t.test(language, async () => {
        if (make) assert.equal((await run(...make)).stderr, '', 'no warnings');
        const settings = {env: build.environment, maxBuffer: 1e8};
        const {stdout} = await run(program, [...args, `${file}.bmp`, result], settings);
        assert.deepEqual(decodePicture(readFileSync(result)), pictures[pictures.length - 1], 'the picture');
        assertPrinted(stdout, results, language);
      });
    }
  });
}
