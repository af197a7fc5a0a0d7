// Results drawn over a picture: points, segments, contours, regions. Paths are in pixels of the picture, where the
// centre of pixel (0, 0) lies at (0.5, 0.5), so that they scale with it.

import {positions} from '../model/geometry.js';

const MOST_COLOURS = 24;
const MANY = 400;  // points from which each is as small as a pixel

// Items of a series get hues that lie far apart.
const hue = (index) => `hsl(${(38 + 137.5 * (index % MOST_COLOURS)) % 360} 95% 60%)`;

const DRAW = {
  points(path, {x, y}, arm) {
    path.moveTo(x + 0.5 - arm, y + 0.5);
    path.lineTo(x + 0.5 + arm, y + 0.5);
    path.moveTo(x + 0.5, y + 0.5 - arm);
    path.lineTo(x + 0.5, y + 0.5 + arm);
  },
  segments(path, {x1, y1, x2, y2}) {
    path.moveTo(x1 + 0.5, y1 + 0.5);
    path.lineTo(x2 + 0.5, y2 + 0.5);
  },
  contours(path, contour) {
    path.moveTo(contour.x + 0.5, contour.y + 0.5);
    for (const [x, y] of positions(contour)) path.lineTo(x + 0.5, y + 0.5);
  },
  rectangle(path, {left, top, right, bottom}) {
    path.rect(left, top, right - left + 1, bottom - top + 1);
  },
};
DRAW.regions = DRAW.contours;

// The items of a result that can be drawn.
export function drawable({kind, value}) {
  if (!DRAW[kind] || value == null) return [];
  return Array.isArray(value) ? value : [value];
}

// Draws what results hold. scale is the number of screen pixels per pixel of the picture; emphasised is an item of a
// result, or null.
export function drawResults(context, results, scale, emphasised) {
  for (const result of results) {
    const items = drawable(result);
    const arm = items.length > MANY ? 0.5 : Math.max(1.5, 5 / scale);
    pathsOf(result, items, arm).forEach((path, i) => stroke(context, path, scale, hue(i), 1.5));
    if (items.includes(emphasised)) {
      const path = new Path2D();
      DRAW[result.kind](path, emphasised, arm);
      stroke(context, path, scale, 'white', 3);
    }
  }
}

const known = new WeakMap();

// One path for each colour. They are made anew only if the arms of points have another length.
function pathsOf(result, items, arm) {
  if (known.get(result)?.arm !== arm) {
    const paths = Array.from({length: Math.min(items.length, MOST_COLOURS)}, () => new Path2D());
    items.forEach((item, i) => DRAW[result.kind](paths[i % MOST_COLOURS], item, arm));
    known.set(result, {arm, paths});
  }
  return known.get(result).paths;
}

// A line with a dark rim, visible on bright and dark pixels.
export function stroke(context, path, scale, colour, width) {
  context.lineJoin = 'round';
  context.strokeStyle = 'rgb(0 0 0 / 55%)';
  context.lineWidth = (width + 1.5) / scale;
  context.stroke(path);
  context.strokeStyle = colour;
  context.lineWidth = width / scale;
  context.stroke(path);
}
