// Pictures of the reference: PNG files, and results drawn over a picture as SVG.

import pngjs from 'pngjs';
import {lineOf, positions} from '../model/geometry.js';

// A picture of half the size: means of 2 by 2 pixels.
function halved({width, height, channels, data}) {
  const [columns, rows] = [width >> 1, height >> 1];
  const pixels = Uint8Array.from({length: columns * rows * channels}, (_, i) => {
    const [x, y] = [Math.floor(i / channels) % columns, Math.floor(i / channels / columns)];
    const at = (2 * y * width + 2 * x) * channels + i % channels;
    const below = at + width * channels;
    return (data[at] + data[at + channels] + data[below] + data[below + channels] + 2) >> 2;
  });
  return {width: columns, height: rows, channels, data: pixels};
}

// A picture as small as the pages show it.
const MOST_COLUMNS = 400;
export function reduced(picture) {
  return picture.width > MOST_COLUMNS && picture.height > 1 ? reduced(halved(picture)) : picture;
}

// The bytes of a PNG file. A colour picture without colours is written as a gray one.
export function png({width, height, channels, data}) {
  const gray = channels === 1 || data.every((value, i) => value === data[i - i % 3]);
  const bytes = Buffer.alloc(width * height * (gray ? 1 : 3));
  if (gray) for (let i = 0; i < bytes.length; ++i) bytes[i] = data[i * channels];
  else for (let i = 0; i < bytes.length; ++i) bytes[i] = data[i + 2 - 2 * (i % 3)];
  const colorType = gray ? 0 : 2;
  const picture = Object.assign(new pngjs.PNG({width, height}), {data: bytes});
  return pngjs.PNG.sync.write(picture, {colorType, inputColorType: colorType, inputHasAlpha: false, deflateLevel: 9});
}

const path = (points) => `<path d="M${points.map((p) => p.join(' ')).join('L')}"/>`;
const SHAPES = {
  points: ({x, y}) => `<circle cx="${x}" cy="${y}" r="3"/>`,
  segments: ({x1, y1, x2, y2}) => path([[x1, y1], [x2, y2]]),
  contours: (contour) => path(positions(contour)),
  regions: (region) => path(positions(region)),
  rectangle: ({left, top, right, bottom}) =>
    `<rect x="${left}" y="${top}" width="${right - left}" height="${bottom - top}"/>`,
};
const MOST_SHAPES = 10000;
const MANY_POINTS = 100;

function shapesOf({kind, value}) {
  if (!(kind in SHAPES) || !value) return [];
  const list = [value].flat().slice(0, MOST_SHAPES);
  if (kind !== 'points' || list.length < MANY_POINTS) return list.map(SHAPES[kind]);
  return [`<path d="${list.map(({x, y}) => `M${x} ${y}h0`).join('')}"/>`];
}

// What results draw over a picture of this size, as an SVG element; an empty text if they draw nothing.
export function overlay(results, {width, height}, role) {
  const line = lineOf(results, {width, height});
  const shapes = [...results.flatMap(shapesOf), ...(line ? [SHAPES.segments(line)] : [])];
  if (shapes.length === 0) return '';
  // Shapes run through the middle of pixels.
  return `<svg class="${role}" viewBox="-0.5 -0.5 ${width} ${height}" aria-hidden="true">${shapes.join('')}</svg>`;
}

// A histogram or a profile as bars.
export function bars(values) {
  const [least, most] = [values.reduce((a, b) => Math.min(a, b)), values.reduce((a, b) => Math.max(a, b))];
  const [bottom, top] = [Math.min(0, least), Math.max(0, most) || 1];
  const lines = values.map((v, i) => v && `M${i} 0V${-v}`).filter(Boolean);
  return `<svg class="bars" viewBox="-0.5 ${-top} ${values.length} ${top - bottom}" preserveAspectRatio="none"
    role="img" aria-label="${values.length} values from ${least} to ${most}"><path d="${lines.join('')}"/></svg>`;
}
