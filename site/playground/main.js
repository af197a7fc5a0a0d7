// The page: holds the state, runs it in the worker, and shows what comes back.

import {forgetAddress, settleAddress, writeAddress} from './address.js';
import {Chooser} from './chooser.js';
import {CopyAs, copyBy} from './copy_as.js';
import {commonStart, inserted, moved, removed, toggled, withParameters} from './edits.js';
import {h, numberText, sizeText, timeText} from './elements.js';
import {FIRST} from './first.js';
import {canvasOf, decodePicture} from './picture.js';
import {showResults} from './results.js';
import {Runner} from './runner.js';
import {listenForPictures} from './sources.js';
import {StepList, drawThumbnail} from './steps.js';
import {View} from './view.js';
import {initialValues} from '../model/catalogue.js';
import {lineOf} from '../model/geometry.js';
import {decode} from '../model/pipeline.js';

const LONG = 400;  // milliseconds after which a run is announced and gets a stop button

const $ = (id) => document.getElementById(id);

// The bytes of an element that holds them compressed, in base64.
async function unpack(id) {
  const packed = Uint8Array.from(atob($(id).textContent), (letter) => letter.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

const page = {
  functions: new Map(),  // by name
  shipped: [],           // {name, title, source}
  state: {picture: '', steps: []},
  selected: 0,           // 0 is the start, k the picture after step k
  start: null,
  own: null,             // {picture, name} of the visitor
  outcomes: [],          // by step: {made, picture, results, milliseconds} or {made, complaints}
  armed: null,           // {name, button}: the setting that the mouse draws
  lastChange: undefined,

  // The picture that step k gets.
  inputOf(k) {
    for (let i = k - 1; i >= 0; --i) {
      if (this.outcomes[i]?.picture) return this.outcomes[i].picture;
    }
    return this.start;
  },

  select(index) {
    this.selected = index;
    this.disarm();
    steps.render();
    showAll();
  },

  // Takes a new state. Changes of one kind in a row are one entry of the history; a change without a kind is an entry
  // of its own.
  take(state, kind) {
    const replaces = kind !== undefined && kind === this.lastChange;
    this.lastChange = kind;
    this.state = state;
    writeAddress(state, replaces);
    run();
  },

  // Replaces the whole state, and shows its last step.
  async open(state) {
    writeAddress(state);
    await readAddress();
    this.select(state.steps.length);
  },

  takeSteps(all, selected) {
    this.selected = selected;
    this.disarm();
    this.outcomes.length = Math.min(this.outcomes.length, commonStart(this.state.steps, all));
    this.take({...this.state, steps: all});
    steps.render();
    showAll();
  },

  // Puts a step after the selected one, or at another place.
  add(call, at = this.selected) {
    this.takeSteps(inserted(this.state.steps, at, call, this.functions), at + 1);
    steps.focus(at);
  },

  move(k, to) {
    if (to < 0 || to >= this.state.steps.length || to === k) return;
    const key = document.activeElement?.dataset.key?.replace(/\d+$/, to);
    this.takeSteps(moved(this.state.steps, k, to, this.functions), to + 1);
    steps.render(key);
    say(`${this.state.steps[to].call} is now step ${to + 1} of ${this.state.steps.length}.`);
  },

  remove(k) {
    const {call} = this.state.steps[k];
    this.takeSteps(removed(this.state.steps, k, this.functions), this.selected > k ? this.selected - 1 : this.selected);
    const left = this.state.steps.length;
    if (left) steps.focus(Math.min(k, left - 1));
    else $('add').focus();
    say(`${call} is removed.`);
  },

  toggle(k) {
    this.takeSteps(toggled(this.state.steps, k), this.selected);
  },

  reset(k) {
    this.takeSteps(withParameters(this.state.steps, k, {}), this.selected);
    steps.focus(k);
  },

  setParameter(k, name, value) {
    const {call, parameters: old} = this.state.steps[k];
    const initial = initialValues(this.functions.get(call), this.inputOf(k))[name];
    const parameters = {...old, [name]: value};
    if (JSON.stringify(value) === JSON.stringify(initial)) delete parameters[name];
    this.outcomes.length = Math.min(this.outcomes.length, k + 1);
    this.take({...this.state, steps: withParameters(this.state.steps, k, parameters)}, `${k} ${name}`);
    showView();
  },

  // The mouse draws the setting of the selected step until it has done so.
  arm(parameter, button) {
    const again = this.armed?.name === parameter.name;
    this.disarm();
    if (!again) {
      this.armed = {name: parameter.name, button};
      button.setAttribute('aria-pressed', 'true');
      if (matchMedia('(max-width: 700px)').matches) $('view').scrollIntoView({block: 'nearest'});
    }
    showView();
  },

  disarm() {
    this.armed?.button.setAttribute('aria-pressed', 'false');
    this.armed = null;
  },
};

let runner, view, steps, chooser, copyAs;

// ---- Running ----

let waiting = null;  // {since, step, timer} while the worker is running

function run() {
  $('again').hidden = true;
  beginWaiting();
  runner.start(page.state, page.outcomes.map((outcome) => outcome?.made));
}

function beginWaiting() {
  if (waiting) return;
  document.querySelector('main').setAttribute('aria-busy', 'true');
  waiting = {since: performance.now(), step: 0};
  waiting.timer = setInterval(() => {
    const passed = performance.now() - waiting.since;
    if (passed < LONG) return;
    const text = `${page.state.steps[waiting.step]?.call ?? 'The pipeline'} is running`;
    if ($('stop').hidden) say(`${text}. It can be stopped.`);
    $('stop').hidden = false;
    setStatus('');
    $('clock').textContent = `${text} · ${timeText(passed)}`;
  }, 100);
}

function endWaiting() {
  clearInterval(waiting?.timer);
  waiting = null;
  document.querySelector('main').setAttribute('aria-busy', 'false');
  $('stop').hidden = true;
  $('clock').textContent = '';
}

function report(message) {
  const {step} = message;
  if (message.failed) {
    endWaiting();
    complain(message.failed);
  } else if (message.began) {
    if (waiting) waiting.step = step;
  } else if (message.done) {
    finish();
  } else {
    const isNew = Boolean(message.picture || message.complaints);
    if (isNew) page.outcomes[step] = message;
    steps.update(step, page.outcomes[step]);
    if (isNew && page.selected === step + 1) showAll();
  }
}

function finish() {
  endWaiting();
  const failed = page.outcomes.findIndex((outcome) => outcome?.complaints);
  page.outcomes.length = failed < 0 ? page.state.steps.length : failed + 1;
  for (let k = page.outcomes.length; k < page.state.steps.length; ++k) steps.update(k);
  if (failed >= 0) {
    setStatus(`Step ${failed + 1} did not run`);
    say(`Step ${failed + 1}, ${page.state.steps[failed].call}: ${page.outcomes[failed].complaints[0].sentence}`);
    // Later steps have no picture, so the one that did not run is shown.
    if (page.selected > failed + 1) page.select(failed + 1);
    else showAll();
  } else {
    const on = page.state.steps.filter(({off}) => !off).length;
    const time = page.outcomes.reduce((sum, {milliseconds}) => sum + milliseconds, 0);
    setStatus(on ? `${on} ${on === 1 ? 'step' : 'steps'} · ${timeText(time)}` : 'No step');
  }
}

function stop() {
  const {step, since} = waiting;
  runner.stop();
  endWaiting();
  page.outcomes.length = step;
  page.outcomes[step] = {complaints: [{sentence: `Stopped after ${timeText(performance.now() - since)}.`}]};
  steps.update(step, page.outcomes[step]);
  finish();
  $('again').hidden = false;
  $('again').focus();
}

// ---- Showing ----

const setStatus = (text) => ($('status').textContent = text);
const say = (text) => ($('spoken').textContent = text);

function complain(sentence) {
  $('notice').textContent = sentence;
  $('notice').hidden = !sentence;
}

function showAll() {
  showView();
  const picture = shownPicture();
  if (!picture) return;
  const fn = page.functions.get(page.state.steps[page.selected - 1]?.call);
  showResults($('found'), picture, resultsOfSelected(), fn, (item) => view.show({emphasised: item}));
}

// The picture after the selected step, or the nearest one before it if it has none.
const shownPicture = () => page.inputOf(page.selected);

const resultsOfSelected = () => page.outcomes[page.selected - 1]?.results ?? [];

// The results of the selected step, and the line that its numbers describe.
function drawnResults(picture) {
  const results = resultsOfSelected();
  const line = lineOf(results, picture);
  return line ? [...results, {kind: 'segments', value: [line]}] : results;
}

const sameSize = (a, b) => a.width === b.width && a.height === b.height;

function showView() {
  const {selected, armed, start} = page;
  if (!start) return;
  const input = selected ? page.inputOf(selected - 1) : start;
  let picture = shownPicture();
  let before = pictureBefore(input);
  // Regions and points belong to the picture that the step gets.
  if (armed && !sameSize(picture, input)) {
    picture = input;
    before = null;
  }
  if (before === picture) before = null;  // a step that did not run has no picture of its own
  const overlay = $('overlay').checked;
  const isShown = (outcome) => outcome?.picture === picture;
  const marks = (overlay || armed) && sameSize(picture, input) ? marksOfSelected(input) : [];
  view.show({
    picture, before, marks,
    beforeLabel: before === start ? 'start' : 'input',
    afterLabel: picture === start ? 'start' : `after step ${page.outcomes.findLastIndex(isShown) + 1}`,
    results: overlay ? drawnResults(input) : [],
    emphasised: null,
    armed: marks.find(({name}) => name === armed?.name) ?? null,
  });
  const place = selected ? `after step ${selected}, ${page.state.steps[selected - 1].call}` : 'at the start';
  $('view').setAttribute('aria-label', `Picture ${place}, ${sizeText(picture)}`);
  $('start-title').setAttribute('aria-current', String(selected === 0));
  $('start').classList.toggle('selected', selected === 0);
  $('add').textContent = selected === page.state.steps.length ? 'Add a step'
    : selected === 0 ? 'Add a step at the start' : `Add a step after step ${selected}`;
}

// The picture that the divider shows beside the one of the selected step, or null if they are equal.
function pictureBefore(input) {
  const choice = $('before').value;
  const passed = page.state.steps.slice(choice === 'start' ? 0 : Math.max(0, page.selected - 1), page.selected);
  const changed = passed.some(({call, off}) => !off && page.functions.get(call).changesPicture);
  return changed ? {start: page.start, input}[choice] ?? null : null;
}

function marksOfSelected(input) {
  const step = page.state.steps[page.selected - 1];
  if (!step || step.off) return [];
  const fn = page.functions.get(step.call);
  const values = {...initialValues(fn, input), ...step.parameters};
  return fn.parameters
    .filter(({kind}) => kind === 'region' || kind === 'point')
    .map(({name, kind, label}) => ({name, kind, label, value: values[name]}))
    .filter(({value}) => Object.values(value).every(Number.isFinite));
}

function marked(name, value, isFinal) {
  const k = page.selected - 1;
  steps.showParameter(k, name, value);
  if (isFinal) page.disarm();
  page.setParameter(k, name, value);
}

// ---- The start ----

// A picture by its name in the state: {picture, source}.
async function pictureNamed(name) {
  if (name === 'own') return {picture: page.own.picture, source: 'It stays on this machine.'};
  if (!decoded.has(name)) decoded.set(name, await decodePicture(new Blob([await unpack(`picture-${name}`)])));
  return {picture: decoded.get(name), source: page.shipped.find((shipped) => shipped.name === name).source};
}

const decoded = new Map();

function setStart({picture, source}) {
  page.start = picture;
  page.outcomes = [];
  runner.setPicture(picture);
  const start = $('start');
  start.querySelector('.note').textContent = `${sizeText(picture)} ${picture.channels === 1 ? 'gray' : 'colour'}`;
  drawThumbnail(start.querySelector('canvas'), picture);
  const {reducedFrom} = picture;
  $('source').textContent = reducedFrom ? `Reduced from ${sizeText(reducedFrom)}. ${source}` : source;
}

// Starts with another picture, and keeps the steps.
async function takePicture(name) {
  complain('');
  const start = await pictureNamed(name);
  setStart(start);
  page.take({...page.state, picture: name});
  fillPictures();
  steps.render();
  showAll();
}

async function takeOwn(picture, name) {
  page.own = {picture, name};
  await takePicture('own');
  say(`${name} is open.`);
}

function fillPictures() {
  const select = $('shipped');
  select.replaceChildren(...page.shipped.map(({name, title}) => h('option', {value: name}, title)),
    ...(page.own ? [h('option', {value: 'own'}, page.own.name)] : []));
  select.value = page.state.picture;
}

// The state that the address holds, or one as near as possible and a sentence.
function stateOfAddress() {
  const functions = [...page.functions.values()];
  let state;
  try {
    state = decode(location.hash.slice(1) || FIRST, functions);
  } catch (error) {
    complain(error.message);
    state = decode(FIRST, functions);
  }
  if (state.picture === 'own' ? page.own : page.shipped.some(({name}) => name === state.picture)) return state;
  complain(state.picture === 'own'
    ? 'This address was made with a picture that it does not hold. Open one of your own, or go on with this one.'
    : `There is no picture "${state.picture}" here.`);
  return {...state, picture: page.shipped[0].name};
}

async function readAddress() {
  complain('');
  forgetAddress();
  const address = location.hash;
  const state = stateOfAddress();
  const start = await pictureNamed(state.picture);
  if (address !== location.hash) return;  // it has changed again meanwhile
  page.lastChange = undefined;
  page.selected = page.start ? Math.min(page.selected, state.steps.length) : state.steps.length;
  page.state = state;
  page.outcomes = [];
  if (page.start !== start.picture) setStart(start);
  fillPictures();
  steps.render();
  showAll();
  run();
}

// ---- Beginning ----

async function begin() {
  const text = async (id) => new TextDecoder().decode(await unpack(id));
  const {functions, pictures} = JSON.parse(await text('catalogue'));
  page.shipped = pictures;
  page.functions = new Map(functions.map((fn) => [fn.name, fn]));
  const module = await WebAssembly.compile(await unpack('module'));
  runner = new Runner(await text('worker'), module, functions, report);
  view = new View($('view'), {
    read: (reading, byKeyboard) => {
      $('reading').textContent = reading;
      if (byKeyboard) say(reading);
    },
    zoomed: (scale) => ($('zoom').textContent = `${numberText(Math.round(scale * 100))} %`),
    marked,
  });
  steps = new StepList($('steps'), page);
  chooser = new Chooser($('chooser'), functions, ({name}) => page.add(name));
  copyAs = new CopyAs($('code'), functions, say);

  $('start-title').addEventListener('click', () => page.select(0));
  $('add').addEventListener('click', () => chooser.open(shownPicture().channels, $('add').textContent));
  $('shipped').addEventListener('change', () => takePicture($('shipped').value));
  $('copy-as').addEventListener('click', () => copyAs.open(page.state, page.start));
  $('copy-link').addEventListener('click', () => {
    settleAddress();
    const rest = page.state.picture === 'own' ? ' It does not hold your picture.' : '';
    copyBy($('copy-link'), location.href, say, `The link is on the clipboard.${rest}`);
  });
  for (const id of ['before', 'overlay']) $(id).addEventListener('change', showView);
  $('zoom-in').addEventListener('click', () => view.zoomTo(view.scale * 1.5));
  $('zoom-out').addEventListener('click', () => view.zoomTo(view.scale / 1.5));
  $('zoom-fit').addEventListener('click', () => view.fit());
  $('zoom-one').addEventListener('click', () => view.zoomTo(1));
  $('save').addEventListener('click', save);
  $('stop').addEventListener('click', stop);
  $('again').addEventListener('click', () => {
    page.outcomes.length = Math.max(0, page.outcomes.findIndex((outcome) => outcome?.complaints));
    run();
  });
  listenForPictures({
    fileButton: $('open'), fileInput: $('file'), cameraButton: $('camera'), cameraDialog: $('camera-dialog'),
    dropZone: document.body,
  }, takeOwn, complain);
  addEventListener('popstate', readAddress);
  addEventListener('keydown', (event) => {
    if (event.key !== 'Escape' || !page.armed) return;
    page.disarm();
    showView();
  });
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', showAll);
  await readAddress();
}

async function save() {
  const blob = await canvasOf(shownPicture()).convertToBlob();
  const link = h('a', {href: URL.createObjectURL(blob), download: `${page.state.picture}-${page.selected}.png`});
  link.click();
  URL.revokeObjectURL(link.href);
}

begin().catch((error) => complain(`The playground could not be started: ${error.message}`));
