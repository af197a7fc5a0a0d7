// Controls for the settings of a step.

import {h} from './elements.js';

// A control for a parameter: {element, show(value), complain(sentence)}.
//   context.id       prefix of the ids of its elements
//   context.limits   {least, most, step}, where they are known
//   context.pictures [{value, label}] that a parameter of kind "picture" may name
//   context.arm      arms or disarms drawing on the picture; regions and points only
//   context.change   takes the new value
export function makeControl(parameter, value, context) {
  const id = `${context.id}-${parameter.name}`;
  const body = KINDS[parameter.kind](parameter, value, {...context, id});
  const complaint = h('p', {class: 'complaint', id: `${id}-complaint`, hidden: true});
  const help = parameter.help && h('p', {class: 'help', id: `${id}-help`}, parameter.help);
  const described = [help && help.id, complaint.id].filter(Boolean).join(' ');
  for (const input of body.inputs) input.setAttribute('aria-describedby', described);
  const title = body.grouped
    ? h('div', {class: 'name', id: `${id}-name`}, parameter.label)
    : h('label', {class: 'name', for: body.inputs[0].id}, parameter.label);
  if (body.grouped) {
    body.element.setAttribute('role', 'group');
    body.element.setAttribute('aria-labelledby', `${id}-name`);
  }
  return {
    element: h('div', {class: `setting ${parameter.kind}`, title: parameter.help},
      title, body.element, complaint, help),
    show: body.show,
    complain(sentence) {
      complaint.textContent = sentence ?? '';
      complaint.hidden = !sentence;
      for (const input of body.inputs) input.setAttribute('aria-invalid', Boolean(sentence));
    },
  };
}

// A box for one number. change is called with NaN if it holds none.
function numberBox(id, value, {least, most, step}, change) {
  const box = h('input', {type: 'number', id, min: least, max: most, step: step ?? 'any'});
  box.value = value;
  box.addEventListener('input', () => change(box.valueAsNumber));
  return box;
}

const WIDE = 2000;

// A slider. In a wide range it moves finely at the lower end: its value is the square of its place.
function makeSlider(label, value, {least, most, step}, change) {
  const wide = most - least > WIDE;
  const element = h('input', {type: 'range', 'aria-label': `${label}, slider`, ...(wide
    ? {min: 0, max: 1, step: 1 / 512} : {min: least, max: most, step: step ?? (most - least) / 200})});
  const show = (shown) => {
    element.value = wide ? Math.sqrt((shown - least) / (most - least)) : shown;
    element.setAttribute('aria-valuetext', shown);
  };
  show(value);
  element.addEventListener('input', () => {
    const place = element.valueAsNumber;
    const chosen = wide ? least + place * place * (most - least) : place;
    const rounded = step ? least + Math.round((chosen - least) / step) * step : Number(chosen.toPrecision(4));
    element.setAttribute('aria-valuetext', rounded);
    change(rounded);
  });
  return {element, show};
}

function number({label, kind}, value, {id, limits, change}) {
  const {least, most} = limits;
  const step = limits.step ?? (kind === 'integer' ? 1 : undefined);
  const box = numberBox(id, value, {least, most, step}, (entered) => {
    slider?.show(entered);
    change(entered);
  });
  const choose = (chosen) => {
    box.value = chosen;
    change(chosen);
  };
  const ranges = Number.isFinite(least) && Number.isFinite(most);
  const slider = ranges ? makeSlider(label, value, {least, most, step}, choose) : null;
  return {
    element: h('div', {class: 'number'}, slider?.element, box),
    inputs: slider ? [box, slider.element] : [box],
    show(shown) {
      box.value = shown;
      slider?.show(shown);
    },
  };
}

// Several number boxes for the fields of a record, and a button that arms drawing on the picture.
const record = (fields) => (parameter, value, {id, limits, change, arm}) => {
  let current = {...value};
  const boxes = fields.map((field) => numberBox(`${id}-${field}`, value[field], {...limits, step: 1}, (entered) => {
    current = {...current, [field]: entered};
    change(current);
  }));
  const draw = h('button', {type: 'button', class: 'draw', 'aria-pressed': 'false', onclick: () => arm(draw)},
    parameter.kind === 'region' ? 'Draw' : 'Place',
    h('span', {class: 'hidden'}, ` ${parameter.label} on the picture`));
  return {
    grouped: true,
    element: h('div', {class: 'record'}, boxes.map((box, i) => h('label', {}, h('span', {}, fields[i]), box)), draw),
    inputs: boxes,
    show(shown) {
      current = {...shown};
      boxes.forEach((box, i) => (box.value = shown[fields[i]]));
    },
  };
};

function simple(input, show) {
  return {element: input, inputs: [input], show};
}

const byteText = (byte) => (byte & 255).toString(16).padStart(2, '0');
const hex = ({red, green, blue}) => `#${[red, green, blue].map(byteText).join('')}`;

const KINDS = {
  integer: number,
  real: number,
  switch(_, value, {id, change}) {
    const input = h('input', {type: 'checkbox', role: 'switch', id, onchange: () => change(input.checked)});
    input.checked = value;
    return simple(input, (shown) => (input.checked = shown));
  },
  option({options}, value, {id, change}) {
    const select = h('select', {id, onchange: () => change(options[select.selectedIndex].value)},
      options.map(({label}) => h('option', {}, label)));
    const show = (shown) => (select.selectedIndex = options.findIndex((option) => option.value === shown));
    show(value);
    return simple(select, show);
  },
  picture(_, value, {id, pictures, change}) {
    return KINDS.option({options: pictures}, value, {id, change});
  },
  colour(_, value, {id, change}) {
    const input = h('input', {type: 'color', id});
    input.value = hex(value);
    input.addEventListener('input', () => {
      const [red, green, blue] = [1, 3, 5].map((at) => parseInt(input.value.slice(at, at + 2), 16));
      change({red, green, blue});
    });
    return simple(input, (shown) => (input.value = hex(shown)));
  },
  text(_, value, {id, change}) {
    const input = h('input', {type: 'text', id, oninput: () => change(input.value)});
    input.value = value;
    return simple(input, (shown) => (input.value = shown));
  },
  list(_, value, {id, change}) {
    const read = () => input.value.split(/[\s,;]+/).filter(Boolean).map(Number);
    const input = h('input', {type: 'text', id, inputmode: 'decimal', oninput: () => change(read())});
    const show = (shown) => (input.value = [shown].flat().join(', '));
    show(value);
    return simple(input, show);
  },
  region: record(['left', 'top', 'right', 'bottom']),
  point: record(['x', 'y']),
};
