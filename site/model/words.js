// What programs in all languages share: names of variables, and how results are printed.

// The name of the picture that a function of a room makes.
const MADE_BY = {
  'Image arithmetic': 'combined', 'Binary images': 'cleaned', 'Contours': 'outlined', 'Drawing': 'drawn',
  'Edges': 'edges', 'Filters': 'filtered', 'Geometry': 'moved', 'Histograms': 'shaped', 'Lines': 'marked',
  'Noise': 'noisy', 'Binarising': 'binary', 'Pasting': 'pasted', 'Changes of size': 'resized',
  'Flips and turns': 'turned', 'Turned rectangles': 'turned', 'Gradient images': 'gradient', 'Regions': 'region',
};

/** The name of the picture that a step makes. */
export function pictureName(fn, channels) {
  const room = [...fn.rooms].reverse().find((title) => title in MADE_BY);
  return room ? MADE_BY[room] : channels === 3 ? 'colour' : 'gray';
}

/** A name for what a function returns: its own name without what all functions share. */
export const resultName = (fn) => lower(fn.cppName.replace(/^Nuv(Get)?(\d+[DP]?(?=[A-Z]))?/, '').replace(/_.*$/, ''));

/** Whether a function returns how many results it found. */
export const isCounted = (fn) => fn.results.some((r) => r.counted || r.from === 'after');

/** XOfRow becomes xOfRow, RLX rlx, and BinImg binImg. */
export const lower = (name) => name.replace(/^[A-Z]+(?![a-z])|^[A-Z]/, (start) => start.toLowerCase());

/** Gives each name once: name, name2, name3 ... */
export class Names {
  constructor(reserved) {
    this.taken = new Set(reserved);
  }

  take(name) {
    let unique = name;
    for (let i = 2; this.taken.has(unique); ++i) unique = `${name}${i}`;
    this.taken.add(unique);
    return unique;
  }
}

/** Whether one of the steps from a place on names a picture by its number. */
export function readLater(steps, number, from) {
  const reads = ({fn, parameters}) => fn.parameters.some((p) => p.kind === 'picture' && parameters[p.name] === number);
  return steps.slice(from).some(reads);
}

/** Members of a list's records that programs print. */
export const PRINTED = {
  contours: ['area', 'perimeter', 'x', 'y'],
  regions: ['area', 'perimeter', 'gry', 'x0', 'y0'],
  TAVI_LINE_SEGMENT: ['x1', 'y1', 'x2', 'y2'],
  RLX: ['x1', 'y', 'x2', 'y'],
  RLY: ['x', 'y1', 'x', 'y2'],
};

/** How programs print a result of a few numbers, which are texts of formats here. */
export function singleFormat({kind, name}, texts) {
  if (kind === 'rectangle' || kind === 'segments') return `${texts[0]} ${texts[1]} to ${texts[2]} ${texts[3]}`;
  return [kind === 'points' ? 'at' : name, ...texts].join(' ');
}

/** The numbers of a result as programs print them, in order. */
export function printedNumbers({kind, value}) {
  switch (kind) {
    case 'picture': return [];
    case 'text': return [];
    case 'number': return [value];
    case 'rectangle': return [value.left, value.top, value.right, value.bottom];
    case 'contours': return value.flatMap(({area, perimeter, x, y}) => [area, perimeter, x, y]);
    case 'regions': return value.flatMap(({area, perimeter, gry, x, y}) => [area, perimeter, gry, x, y]);
    case 'segments': return value.flatMap(({x1, y1, x2, y2}) => [x1, y1, x2, y2]);
    case 'points': return value.flatMap(({x, y}) => [x, y]);
    default: return value;
  }
}

const COLUMNS = 100;

/**
 * A line of source, broken where it is too long: after a comma, or within a text, which then goes on in a second one.
 * @param mark    of comments
 * @param prefix  of texts that go on, such as the f of Python
 */
export function wrapped(line, mark, prefix = '', indent = ' '.repeat(line.indexOf('(') + 1)) {
  if (line.length <= COLUMNS) return [line];
  const start = line.search(/\S/);
  if (line.startsWith(mark, start)) {
    const cut = line.lastIndexOf(' ', COLUMNS);
    return [line.slice(0, cut), ...wrapped(`${' '.repeat(start)}${mark} ${line.slice(cut + 1)}`, mark, prefix)];
  }
  let outside = -1;
  let inside = -1;
  let isText = false;
  let depth = 0;
  for (let i = 0; i < COLUMNS - 1; ++i) {
    if (line[i] === '"' && line[i - 1] !== '\\') isText = !isText;
    if (isText && prefix) depth += (line[i] === '{') - (line[i] === '}');
    if (!line.startsWith(', ', i)) continue;
    if (!isText) outside = i;
    else if (depth === 0) inside = i;
  }
  const cut = outside > indent.length ? outside : inside;
  if (cut < 0) return [line];
  const [end, opening] = cut === outside ? ['', ''] : [' "', `${prefix}"`];
  const rest = `${indent}${opening}${line.slice(cut + 2)}`;
  return [`${line.slice(0, cut + 1)}${end}`, ...wrapped(rest, mark, prefix, indent)];
}
