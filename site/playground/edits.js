// Changes of a pipeline. Each function takes the list of steps and returns a new one; steps that stay are the same
// objects. Settings that name the picture of an earlier step go on naming it.

export function inserted(steps, at, call, functions) {
  const all = renumbered(steps, functions, (index) => (index >= at ? index + 1 : index));
  return [...all.slice(0, at), {call, parameters: {}}, ...all.slice(at)];
}

export function moved(steps, from, to, functions) {
  const all = [...steps];
  all.splice(to, 0, ...all.splice(from, 1));
  return renumbered(all, functions, (index) => {
    if (index === from) return to;
    if (from < index && index <= to) return index - 1;
    return to <= index && index < from ? index + 1 : index;
  });
}

// What named the picture of the removed step names the one before it.
export function removed(steps, at, functions) {
  return renumbered(steps.filter((_, k) => k !== at), functions, (index) => {
    if (index < at) return index;
    return index === 0 ? 'start' : index - 1;
  });
}

export function toggled(steps, at) {
  return replaced(steps, at, ({off, ...rest}) => (off ? rest : {...rest, off: true}));
}

export function withParameters(steps, at, parameters) {
  return replaced(steps, at, (step) => ({...step, parameters}));
}

// How many steps two pipelines have in common from the beginning.
export function commonStart(a, b) {
  let k = 0;
  while (k < a.length && a[k] === b[k]) ++k;
  return k;
}

const replaced = (steps, at, change) => steps.map((step, k) => (k === at ? change(step) : step));

function renumbered(steps, functions, place) {
  return steps.map((step) => {
    const parameters = {...step.parameters};
    let changed = false;
    for (const {name, kind} of functions.get(step.call).parameters) {
      if (kind !== 'picture' || !Number.isInteger(parameters[name])) continue;
      changed ||= place(parameters[name]) !== parameters[name];
      parameters[name] = place(parameters[name]);
    }
    return changed ? {...step, parameters} : step;
  });
}
