// The catalogue, pipelines and the engine: every function runs, wrong parameters give sentences, and results are those
// of the native library.

import assert from 'node:assert/strict';
import test from 'node:test';

import {fieldsOf, initialValues, leftOut, limits} from '../../site/model/catalogue.js';
import {boundary, choices, choicesText, functions, shipped, shippedPicture} from '../../site/model/files.js';
import {evaluate, print, substitute} from '../../site/model/formulas.js';
import {complaints, decode, encode} from '../../site/model/pipeline.js';
import {assertPrinted, engine, nativeResults} from './native.mjs';

const pictures = Object.fromEntries(shipped.map(({name}) => [name, shippedPicture(name)]));
const known = new Map(functions.map((f) => [f.name, f]));

function run(state) {
  const seen = [pictures[state.picture]];
  const all = [];
  let done;
  for (const step of state.steps) {
    const picture = seen[seen.length - 1];
    done = engine.run(step, picture, seen);
    all.push(...done.results);
    seen.push(done.picture);
  }
  return {...done, all, before: seen[seen.length - 2], seen};
}

test('each function is in the catalogue, or its absence has a reason', () => {
  assert.ok(functions.length >= 400, `${functions.length} functions`);
  for (const f of boundary.functions) {
    assert.ok(known.has(f.plain_name) || leftOut(f, choices).length > 10, f.plain_name);
  }
  const groups = new Set(boundary.functions.flatMap((f) => [f.plain_name, ...f.groups]));
  for (const name of Object.keys(choices.leftOut)) assert.ok(groups.has(name), `there is no ${name} to leave out`);
  for (const name of [...Object.keys(choices.functions), ...Object.keys(choices.parametersOf)]) {
    assert.ok(known.has(name), `there is no ${name} to describe`);
  }
  const used = functions.flatMap((f) => f.parameters.flatMap(({name, kind}) => [name, kind, `${f.name}.${name}`]));
  const chosen = Object.entries(choices.parametersOf).flatMap(([f, own]) => Object.keys(own).map((p) => `${f}.${p}`));
  const stated = [...Object.keys(choices.parameters), ...chosen];
  assert.deepEqual(stated.filter((name) => !used.includes(name)), [], 'parameters that no function has');
  const names = choicesText.match(/(?<=^    )"\w+"(?=: \{)/gm);
  const sections = [choices.parameters, choices.parametersOf, choices.functions];
  assert.deepEqual(names, sections.flatMap(Object.keys).map((name) => `"${name}"`), 'a name stands twice');
});

test('parameters and results have plain names', () => {
  for (const fn of functions) {
    for (const p of fn.parameters) assert.ok(p.label, `${fn.name}: ${p.name}`);
    for (const {kind, label, name} of fn.results) {
      assert.ok(kind === 'picture' || label || /^[A-Z]\w*$/.test(name), `${fn.name}: ${name}`);
    }
  }
});

test('each example runs and changes its picture, and initial values are accepted', () => {
  for (const fn of functions) {
    const {picture, results, before, seen} = run(fn.example);
    if (fn.changesPicture) {
      const isSame = before.width === picture.width && Buffer.compare(before.data, picture.data) === 0;
      assert.ok(!isSame, `${fn.name} changes nothing`);
      assert.ok(picture.data.some((value) => value !== picture.data[0]), `${fn.name} gives a flat picture`);
      assert.equal(picture.data.length, picture.width * picture.height * picture.channels, fn.name);
    } else {
      assert.equal(picture, before, fn.name);
    }
    assert.deepEqual(results.map(({name, kind}) => ({name, kind})),
                     fn.results.slice(fn.changesPicture ? 1 : 0).map(({name, kind}) => ({name, kind})), fn.name);
    for (const {name, value} of results) assert.notEqual(value, undefined, `${fn.name}: ${name}`);
    const pictureParameters = fn.example.steps.at(-1).parameters;
    const values = Object.fromEntries(fn.parameters.filter((p) => p.kind === 'picture' && p.name in pictureParameters)
        .map((p) => [p.name, pictureParameters[p.name]]));
    engine.run({call: fn.name, parameters: values}, before, seen.slice(0, -1));
    for (const p of fn.parameters) {
      const {least, most} = limits(p, before);
      const value = initialValues(fn, before)[p.name];
      assert.ok(!(value < least || value > most), `${fn.name}: ${p.name} is ${value}`);
    }
  }
});

test('addresses hold states', () => {
  const state = {picture: 'coins', steps: [
    {call: 'NuvGryAverageFilter', parameters: {M: 40, N: 40}},
    {call: 'NuvImg1Substract2To2', parameters: {Img1: 'start'}, off: true},
    {call: 'NuvDrawGryRect', parameters: {region: {bottom: 30, right: 20, left: -5, top: 1}}},
    {call: 'NuvSetNumberString2GryImg', parameters: {Str: '3,5/7=:%', point: {x: 1, y: 2}}}]};
  assert.equal(encode(state), 'coins/NuvGryAverageFilter,M=40,N=40/~NuvImg1Substract2To2,Img1=start/' +
               'NuvDrawGryRect,region=-5:1:20:30/NuvSetNumberString2GryImg,Str=3%2C5%2F7%3D:%25,point=1:2');
  assert.deepEqual(decode(encode(state), functions), state);
  for (const fn of functions) {
    const parameters = initialValues(fn, {width: 40, height: 30, channels: 1});
    const all = {picture: 'own', steps: [{call: fn.name, parameters}]};
    assert.deepEqual(decode(encode(all), functions), all, fn.name);
  }
  for (const text of ['', 'co ins', 'coins/NuvNothing', 'coins/NuvThreshold,T', 'coins/NuvThreshold,T=%zz']) {
    assert.throws(() => decode(text, functions), {message: /^The address .*\.$/}, text);
  }
});

test('what a step cannot take is said in a sentence', () => {
  const {coins, lines} = pictures;
  const cases = [
    [coins, 'NuvNothing', {}, /^There is no function NuvNothing\.$/],
    [lines, 'NuvThreshold', {}, /^NuvThreshold takes a gray picture: put NuvRGB2Gry before it\.$/],
    [coins, 'NuvRGB2Gry', {}, /^NuvRGB2Gry takes a colour picture: put NuvGry2RGBImg before it\.$/],
    [coins, 'NuvThreshold', {T: 1.5}, /^Threshold must be a whole number\.$/],
    [coins, 'NuvThreshold', {T: 256}, /^Threshold must be from 0 to 255\.$/],
    [coins, 'NuvThreshold', {T: 'x'}, /whole number/],
    [coins, 'NuvThreshold', {t: 5}, /^NuvThreshold has no parameter t\.$/],
    [coins, 'NuvRotateImgByCCS', {angle: NaN}, /^Angle in degrees must be a number\.$/],
    [coins, 'NuvGetContours', {mode: 7}, /^Contours must be one of 0, 1, 2\.$/],
    [coins, 'NuvCopyGryRect', {region: {left: 0, top: 0, right: 384, bottom: 9}},
     /^Region must be inside the picture of 384 by 303 pixels\.$/],
    [coins, 'NuvCopyGryRect', {region: {left: 9, top: 0, right: 8, bottom: 9}}, /^Region must be inside/],
    [coins, 'NuvCopyGryRect', {region: 5}, /^Region must be integers: left, top, right, bottom\.$/],
    [coins, 'NuvPixelsOn2PLine', {point1: {x: -1, y: 0}}, /^From must be a column of the image\.$/],
    [coins, 'NuvExtractEdgePointInCircle', {rx: 300}, /^Centre must be a column with the ellipse inside the image\.$/],
    [coins, 'NuvMarkContour', {}, /takes a picture whose border is black: put NuvSetImageBoundary before it\.$/],
    [coins, 'NuvImgDifferenceInRect', {rect2: {left: 0, top: 0, right: 10, bottom: 303}}, /inside the picture/],
    [coins, 'NuvImg1AndImg2To1', {Img2: -1}, /"start" or the number/],
    [coins, 'NuvImg1AndImg2To1', {Img2: 3}, /^Second picture must be "start" or the number of an earlier step\.$/],
    [lines, 'NuvRGBRectAvr', {}, /^Mask must be a gray picture\.$/],
    [coins, 'NuvSetNumberString2GryImg', {Str: 'é'}, /plain characters/],
    [lines, 'NuvRGBLine', {colour: {red: 256, green: 0, blue: 0}}, /^Colour must be from 0 to 255 each\.$/],
  ];
  for (const [picture, call, parameters, sentence] of cases) {
    const state = {picture: 'own', steps: [{call, parameters}]};
    const [complaint] = complaints(state, functions, [picture]);
    assert.match(complaint?.sentence ?? 'no complaint', sentence, call);
    assert.throws(() => engine.run(state.steps[0], picture), {message: complaint.sentence});
    const off = {...state, steps: [{...state.steps[0], off: true}]};
    assert.deepEqual(complaints(off, functions, [picture]), []);
  }
  const small = {width: 9, height: 7, channels: 1, data: new Uint8Array(63)};
  const steps = [{call: 'NuvShrinkGryImgByMedian'}, {call: 'NuvImg1AndImg2To1', parameters: {Img2: 'start'}}];
  const sentence = 'Second picture must be of 9 by 7 pixels like the current one, not 384 by 303.';
  const found = complaints({picture: 'own', steps}, functions, [coins, small]);
  assert.deepEqual(found, [{step: 1, parameter: 'Img2', sentence}]);
  assert.throws(() => engine.run({call: 'NuvContourCenter'}, small), /the picture has none/);
  assert.throws(() => engine.run({call: 'NuvFittingLine'}, small), /has none/);
});

// Numbers from a seed.
function random(seed) {
  let state = seed;
  return (n) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * n);
  };
}

// Puts guards around the memory that the engine allocates, and checks them when it is freed.
function guard(sdk) {
  const {malloc, free, bytes} = sdk;
  const sizes = new Map();
  const zones = (address) => [bytes(address - 64, 64), bytes(address + sizes.get(address), 64)];
  sdk.malloc = (length) => {
    const address = malloc.call(sdk, length + 128) + 64;
    sizes.set(address, length);
    zones(address).forEach((zone) => zone.fill(0xa5));
    return address;
  };
  sdk.free = (address) => {
    if (!sizes.has(address)) return free(address);
    const isWhole = zones(address).every((zone) => zone.every((value) => value === 0xa5));
    assert.ok(isWhole, 'nothing is written outside');
    sizes.delete(address);
    return free(address - 64);
  };
  return () => Object.assign(sdk, {malloc, free});
}

test('hostile parameters and tiny pictures give results or sentences, and harm nothing', () => {
  const next = random(1);
  const integers = [0, -1, 1, 2, 7, 100, 383, 1000, -1000, 65536, 2 ** 31 - 1, -(2 ** 31)];
  const one = (list) => list[next(list.length)];
  const integer = () => one(integers);
  const hostile = (p, picture) => {
    const {least = 0, most = 1} = limits(p, picture);
    const place = () => (next(3) ? next(picture.width) : integer());
    switch (p.kind) {
      case 'integer': return next(3) ? least + next(most - least + 1) : integer();
      case 'real': return next(3) ? least + (most - least) * next(100) / 99 : one([NaN, Infinity, -1e300, 1e-300, 0]);
      case 'option': return one(p.options).value;
      case 'switch': return next(2) === 1;
      case 'picture': return 'start';
      case 'text': return one(['', '0', '9'.repeat(50)]);
      default: return Object.fromEntries(fieldsOf(p).map((field) => [field, place()]));
    }
  };
  const pixel = () => one([0, 255, next(256)]);
  const tiny = [1, 3].flatMap((channels) => [[1, 1], [2, 3], [17, 5], [40, 31]].map(([width, height]) => ({
    width, height, channels, data: Uint8Array.from({length: width * height * channels}, pixel)})));
  let ran = 0;
  const release = guard(engine.sdk);
  for (const fn of functions) {
    for (let round = 0; round < 24; ++round) {
      const picture = tiny[next(tiny.length)];
      const parameters = Object.fromEntries(fn.parameters.map((p) => [p.name, hostile(p, picture)]));
      try {
        engine.run({call: fn.name, parameters}, picture);
        ++ran;
      } catch (error) {
        const isSentence = !error.fatal && /\.$/.test(error.message);
        assert.ok(isSentence, `${fn.name} ${JSON.stringify(parameters)}: ${error.stack}`);
      }
    }
  }
  release();
  assert.ok(ran > 2000, `${ran} calls ran`);
});

test('memory is freed after each step', () => {
  const texts = ['coins/NuvThreshold/NuvGetContours', 'camera/NuvMergeSplit', 'coins/NuvRotateImgByCCS',
                 'lines/NuvYUV420SP2RGB'];
  const states = texts.map((text) => decode(text, functions));
  states.forEach(run);
  const {byteLength} = engine.sdk.memory.buffer;
  for (let i = 0; i < 12; ++i) states.forEach(run);
  assert.equal(engine.sdk.memory.buffer.byteLength, byteLength);
});

test('each function gives what it gives in the native library', async () => {
  // Noise differs from call to call.
  const states = functions.map((fn) => fn.example).filter(({steps}) => !steps.some(({call}) => /Noise$/.test(call)));
  assert.ok(states.length >= 400);
  const native = await nativeResults(states);
  states.forEach((state, i) => {
    const {picture, all} = run(state);
    assert.deepEqual(native[i].picture, picture, encode(state));
    assertPrinted(native[i].text, all, encode(state));
  });
});

test('formulas', () => {
  const values = {a: 7, b: -7, 'r.x': 3};
  const cases = [['a/2', 3], ['b/2', -4], ['a*2 + r.x', 17], ['(a > 6 ? a : 6) - 1', 6], ['(a | 8) >> 1', 7],
                 ['-a', -7], ['a - 1 - 1', 5], ['2*a > 13 ? 1e-1 : 0', 0.1]];
  for (const [formula, value] of cases) {
    assert.equal(evaluate(formula, values), value, formula);
  }
  assert.throws(() => evaluate('c', values), /needs c/);
  assert.equal(print(substitute('(w - 1)/n*2 + 3*2', {n: 4})), '(w - 1) / 4 * 2 + 6');
  assert.equal(print(substitute('w/2 - (h > 1 ? h : 1)', {}), true), 'w // 2 - (h if h > 1 else 1)');
});
