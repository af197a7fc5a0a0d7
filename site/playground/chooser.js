// The dialog that finds a function: a field to search in, and a list grouped by room.

import {h} from './elements.js';
import {synonymsFor} from '../model/synonyms.js';

const TAKES = {gray: 'gray', colour: 'colour', either: 'gray or colour', none: 'no picture'};

function searchedText({name, brief, rooms}) {
  const text = `${name} ${brief} ${rooms.join(' ')}`;
  return `${text} ${synonymsFor(text)}`.toLowerCase();
}

export class Chooser {
  // choose is called with the chosen function.
  constructor(dialog, functions, choose) {
    this.dialog = dialog;
    this.choose = choose;
    this.field = dialog.querySelector('input');
    this.rooms = dialog.querySelector('select');
    this.list = dialog.querySelector('[role=listbox]');
    this.count = dialog.querySelector('[role=status]');
    this.options = functions.map((fn, i) => ({
      fn,
      room: fn.rooms.join(' · '),
      searched: searchedText(fn),
      element: h('div', {role: 'option', id: `function-${i}`, 'aria-selected': 'false', onclick: () => this.take(fn)},
        h('span', {class: 'call'}, fn.name),
        h('span', {class: 'takes'}, TAKES[fn.takes]),
        h('span', {class: 'brief'}, fn.brief)),
    }));
    for (const room of new Set(functions.map((fn) => fn.rooms[0]))) this.rooms.append(h('option', {value: room}, room));
    this.field.addEventListener('input', () => this.filter());
    this.rooms.addEventListener('change', () => this.filter());
    this.field.addEventListener('keydown', (event) => this.key(event));
  }

  // channels of the picture that the function would get: functions that take the other kind are dimmed.
  open(channels, title) {
    const unfit = channels === 1 ? 'colour' : 'gray';
    for (const {fn, element} of this.options) element.classList.toggle('unfit', fn.takes === unfit);
    this.dialog.querySelector('h2').textContent = title;
    this.field.value = '';
    this.rooms.value = '';
    this.filter();
    this.dialog.showModal();
    this.field.focus();
  }

  // Shows the functions of the chosen room in which all words of the query occur.
  filter() {
    const query = this.field.value.trim().toLowerCase();
    const terms = query.split(/\s+/).filter(Boolean);
    const room = this.rooms.value;
    this.shown = this.options.filter(({fn, searched}) => (
      (!room || fn.rooms[0] === room) && terms.every((term) => searched.includes(term))));
    const groups = new Map();
    for (const option of this.shown) {
      if (!groups.has(option.room)) groups.set(option.room, []);
      groups.get(option.room).push(option.element);
    }
    let number = 0;
    this.list.replaceChildren(...[...groups].map(([title, elements]) => {
      const id = `room-${++number}`;
      return h('div', {role: 'group', 'aria-labelledby': id},
        h('div', {class: 'room', id, role: 'presentation'}, title), elements);
    }));
    const {length} = this.shown;
    const found = length === 1 ? '1 function' : `${length} functions`;
    this.count.textContent = length ? found : 'No function has these words.';
    this.mark(this.likeliest(query));
  }

  // The place of the shortest name that begins with the query, with or without "Nuv", or else of the first function.
  likeliest(query) {
    let best = this.shown.length ? 0 : -1;
    if (!query) return best;
    let length = Infinity;
    this.shown.forEach(({fn}, i) => {
      const name = fn.name.toLowerCase();
      if (!name.startsWith(query) && !name.startsWith(`nuv${query}`) || name.length >= length) return;
      best = i;
      length = name.length;
    });
    return best;
  }

  mark(index) {
    for (const {element} of this.options) element.setAttribute('aria-selected', 'false');
    this.current = index;
    const element = this.shown[index]?.element;
    if (!element) return this.field.removeAttribute('aria-activedescendant');
    element.setAttribute('aria-selected', 'true');
    element.scrollIntoView({block: 'nearest'});
    this.field.setAttribute('aria-activedescendant', element.id);
  }

  key(event) {
    const last = this.shown.length - 1;
    const by = {ArrowDown: 1, ArrowUp: -1, PageDown: 10, PageUp: -10}[event.key];
    if (by && last >= 0) this.mark(Math.min(Math.max(this.current + by, 0), last));
    else if (event.key === 'Enter' && this.shown[this.current]) this.take(this.shown[this.current].fn);
    else return;
    event.preventDefault();
  }

  take(fn) {
    this.dialog.close();
    this.choose(fn);
  }
}
