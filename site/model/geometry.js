// What results mean on a picture: the positions of a chain, and the line of an equation.

// The codes of a chain: 0 points to the right, 2 up, and so on.
const STEP_X = [1, 1, 0, -1, -1, -1, 0, 1];
const STEP_Y = [0, -1, -1, -1, 0, 1, 1, 1];

/** The pixels of a contour or a region, [x, y], from its start to the end of its last step. */
export function positions({x, y, chain}) {
  return [[x, y], ...chain.map((code) => [x += STEP_X[code], y += STEP_Y[code]])];
}

/**
 * The line that a step has found as numbers: Ax + By + C = 0, y = Kx + B, or x = Ky + B if IsVertical is not 0.
 * Returns its ends at the borders of the picture, {x1, y1, x2, y2}, or undefined if there is none on the picture.
 */
export function lineOf(results, {width, height}) {
  const {IsVertical, K, B, A, C} = Object.fromEntries(results.map((r) => [r.name, r.value]));
  const [a, b, c] = A !== undefined ? [A, B, C] : IsVertical ? [1, -K, -B] : [K, -1, B];
  if (![a, b, c].every(Number.isFinite)) return undefined;
  // Where it meets the four borders, as far as that is on the picture.
  const ends = [[0, -c / b], [width, -(a * width + c) / b], [-c / a, 0], [-(b * height + c) / a, height]]
      .filter(([x, y]) => x >= 0 && x <= width && y >= 0 && y <= height)
      .sort(([x1, y1], [x2, y2]) => x1 - x2 || y1 - y2);
  if (ends.length < 2) return undefined;
  const [[x1, y1], [x2, y2]] = [ends[0], ends[ends.length - 1]];
  return {x1, y1, x2, y2};
}
