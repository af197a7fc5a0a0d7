// The picture of the guide to areas: the contours of a drawing, over its pixels.

import {positions} from '../model/geometry.js';

// The drawing is the one that the guide's program holds.
export function drawingOf(guide) {
  const rows = [...guide.matchAll(/^ +"([.#]+)";?$/gm)].map(([, row]) => row);
  const data = Uint8Array.from(rows.join(''), (c) => (c === '#' ? 255 : 0));
  return {width: rows[0].length, height: rows.length, channels: 1, data};
}

export function rimPicture(engine, picture) {
  const {width, height, data} = picture;
  const step = {call: 'NuvGetContours', parameters: {minPerimeter: 0, minArea: 0, mode: 0}};
  const contours = engine.run(step, picture, [picture]).results.find((r) => r.kind === 'contours').value;
  const pixels = [...data].map((value, i) =>
    value && `<rect x="${i % width - 0.5}" y="${Math.floor(i / width) - 0.5}" width="1" height="1"/>`);
  const paths = contours.map((contour) => {
    const points = positions(contour).map((p) => p.join(' ')).join('L');
    return `<path class="${contour.isOuter ? 'outer' : 'hole'}" d="M${points}"/>`;
  });
  const sizes = contours.map((c) => `${c.isOuter ? 'object' : 'hole'} of ${c.area}`).join(', ');
  return `<svg class="rim" viewBox="-0.5 -0.5 ${width} ${height}" role="img"
    aria-label="Pixels of a drawing, and its contours: ${sizes}">
    <defs><marker id="arrow" viewBox="0 0 4 4" refX="2" refY="2" markerWidth="3" markerHeight="3" orient="auto">
    <path d="M0 0L4 2L0 4z"/></marker></defs>
    <g class="pixels">${pixels.filter(Boolean).join('')}</g>${paths.join('')}</svg>`;
}
