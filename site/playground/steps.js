// The list of steps: each with its picture, its time and, if it is selected, its settings.

import {h, icon, iconButton, ICONS, sizeText, timeText} from './elements.js';
import {makeControl} from './controls.js';
import {canvasOf} from './picture.js';
import {initialValues, limits} from '../model/catalogue.js';
import {encode} from '../model/pipeline.js';

const SERIES = ['points', 'segments', 'contours', 'regions'];

export class StepList {
  // model answers questions, and its methods change the state:
  //   functions (by name), state, outcomes, selected, inputOf(step)
  //   select(index), open(state), add(call, at), move(step, to), remove(step), toggle(step), reset(step),
  //   setParameter(step, name, value), arm(parameter, button)
  constructor(list, model) {
    this.list = list;
    this.model = model;
    this.cards = [];
    this.dragged = null;
  }

  // Builds all cards anew; the focus stays on the control that had it, where there still is one.
  render(focusKey = document.activeElement?.dataset.key) {
    const {state} = this.model;
    this.cards = state.steps.map((step, k) => this.card(step, k));
    this.list.replaceChildren(...this.cards.map(({element}) => element));
    this.cards.forEach((_, k) => this.update(k, this.model.outcomes[k]));
    if (focusKey) this.list.querySelector(`[data-key="${CSS.escape(focusKey)}"]`)?.focus();
  }

  card(step, k) {
    const {model} = this;
    const selected = model.selected === k + 1;
    const last = model.state.steps.length - 1;
    const thumbnail = h('canvas', {class: 'thumbnail', width: 112, height: 84});
    const note = h('span', {class: 'note'});
    const settings = h('div', {class: 'settings', id: `settings-${k}`, hidden: !selected});
    const title = h('button', {
      type: 'button', class: 'title', 'data-key': `title-${k}`, 'aria-expanded': String(selected),
      'aria-controls': `settings-${k}`, onclick: () => model.select(k + 1),
    }, thumbnail, h('span', {class: 'call'}, step.call), note);
    const button = (name, label, action, disabled) =>
      iconButton(ICONS[name], `${label} ${step.call}`, action, {'data-key': `${name}-${k}`, disabled});
    const toggle = h('input', {
      type: 'checkbox', role: 'switch', 'data-key': `toggle-${k}`, 'aria-label': `${step.call} is on`,
      title: 'Switch this step on or off', onchange: () => model.toggle(k),
    });
    toggle.checked = !step.off;
    const element = h('li', {class: `step${selected ? ' selected' : ''}${step.off ? ' off' : ''}`},
      h('div', {class: 'head', draggable: 'true'}, title, h('div', {class: 'buttons'},
        button('up', 'Move up', () => model.move(k, k - 1), k === 0),
        button('down', 'Move down', () => model.move(k, k + 1), k === last),
        button('remove', 'Remove', () => model.remove(k)),
        toggle)),
      settings);
    element.addEventListener('keydown', (event) => {
      const by = {ArrowUp: -1, ArrowDown: 1}[event.key];
      if (!event.altKey || !by) return;
      event.preventDefault();
      model.move(k, k + by);
    });
    this.makeMovable(element, k);
    const card = {element, thumbnail, note, settings, controls: new Map(), general: null, convert: null, size: null};
    if (selected) this.fill(card, k);
    return card;
  }

  // The head of a card can be dragged to the place of another one.
  makeMovable(element, k) {
    element.addEventListener('dragstart', (event) => {
      this.dragged = k;
      event.dataTransfer.setData('text/plain', this.model.state.steps[k].call);
    });
    element.addEventListener('dragend', () => (this.dragged = null));
    element.addEventListener('dragover', (event) => {
      if (this.dragged == null) return;
      event.preventDefault();
      element.classList.add('over');
    });
    element.addEventListener('dragleave', () => element.classList.remove('over'));
    element.addEventListener('drop', (event) => {
      if (this.dragged == null) return;
      event.preventDefault();
      element.classList.remove('over');
      this.model.move(this.dragged, k);
    });
  }

  // The settings of a step, for the picture that it gets.
  fill(card, k) {
    const {model} = this;
    const step = model.state.steps[k];
    const fn = model.functions.get(step.call);
    const input = model.inputOf(k);
    card.controls.clear();
    card.general = h('p', {class: 'complaint', hidden: true});
    const converter = fn.takes === 'gray' ? 'NuvRGB2Gry' : 'NuvGry2RGBImg';
    card.convert = h('button', {type: 'button', class: 'convert', hidden: true, onclick: () => model.add(converter, k)},
      `Insert ${converter}`);
    card.size = sizeText(input) + input.channels;
    const values = {...initialValues(fn, input), ...step.parameters};
    const earlier = model.state.steps.slice(0, k);
    const pictures = [
      {value: 'start', label: 'the start'},
      ...earlier.map(({call}, i) => ({value: i, label: `after ${i + 1}: ${call}`})),
    ];
    for (const parameter of fn.parameters) {
      card.controls.set(parameter.name, makeControl(parameter, values[parameter.name], {
        id: `step-${k}`,
        limits: limits(parameter, input),
        pictures,
        arm: (button) => model.arm(parameter, button),
        change: (value) => model.setParameter(k, parameter.name, value),
      }));
    }
    const reference = h('a', {href: `function.html#${fn.link}`, target: '_blank', rel: 'noopener'}, 'Reference');
    const openExample = (event) => {
      event.preventDefault();
      model.open(fn.example);
    };
    const example = h('a', {href: `#${encode(fn.example)}`, onclick: openExample}, 'Example');
    const reset = h('button', {type: 'button', class: 'quiet', onclick: () => model.reset(k)}, 'Reset settings');
    reset.hidden = Object.keys(step.parameters).length === 0;
    card.settings.replaceChildren(
      h('p', {class: 'brief'}, fn.brief, ' ', reference, ' ', example), card.general, card.convert,
      ...[...card.controls.values()].map((control) => control.element), reset);
  }

  // Shows what a run has found out about a step.
  update(k, outcome) {
    const card = this.cards[k];
    if (!card) return;
    const {model} = this;
    const complaints = outcome?.complaints ?? [];
    const input = model.inputOf(k);
    if (model.selected === k + 1 && card.size !== sizeText(input) + input.channels) this.fill(card, k);
    card.element.classList.toggle('failed', complaints.length > 0);
    card.element.classList.toggle('waiting', !outcome);
    card.note.textContent = noteOf(model.state.steps[k], outcome);
    card.note.title = complaints.length ? card.note.textContent : '';  // sentences may be cut off
    if (outcome?.picture) drawThumbnail(card.thumbnail, outcome.picture);
    else card.thumbnail.getContext('2d').clearRect(0, 0, card.thumbnail.width, card.thumbnail.height);
    if (!card.general) return;
    for (const [name, control] of card.controls) {
      control.complain(complaints.filter((c) => c.parameter === name).map((c) => c.sentence).join(' '));
    }
    const others = complaints.filter((c) => !card.controls.has(c.parameter)).map((c) => c.sentence).join(' ');
    card.general.textContent = others;
    card.general.hidden = !others;
    const unfit = {gray: 3, colour: 1}[model.functions.get(model.state.steps[k].call).takes];
    card.convert.hidden = !complaints.length || input.channels !== unfit;
  }

  focus(k) {
    this.cards[k]?.element.querySelector('.title').focus();
  }

  showParameter(k, name, value) {
    this.cards[k]?.controls.get(name)?.show(value);
  }
}

// What stands under the name of a step: why it did not run, or its time and the first series that it has found.
function noteOf(step, outcome) {
  if (step.off) return 'off';
  if (!outcome) return '';
  if (outcome.complaints) return outcome.complaints[0].sentence;
  const time = timeText(outcome.milliseconds);
  const series = outcome.results.find(({kind, value}) => SERIES.includes(kind) && Array.isArray(value));
  if (!series) return time;
  const {length} = series.value;
  return `${time} · ${length} ${length === 1 ? series.kind.slice(0, -1) : series.kind}`;
}

export function drawThumbnail(canvas, picture) {
  const context = canvas.getContext('2d');
  const scale = Math.min(canvas.width / picture.width, canvas.height / picture.height);
  const [width, height] = [picture.width * scale, picture.height * scale];
  context.clearRect(0, 0, canvas.width, canvas.height);
  context.imageSmoothingQuality = 'high';
  context.drawImage(canvasOf(picture), (canvas.width - width) / 2, (canvas.height - height) / 2, width, height);
}
