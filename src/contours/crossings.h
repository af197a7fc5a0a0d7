// The crossing rule: a point lies inside or on a chain if a sum over the chain's positions in the row of the
// point is not 0.

#ifndef NUV_CONTOURS_CROSSINGS_H
#define NUV_CONTOURS_CROSSINGS_H

#include <cstdint>

#include "contours/chain.h"
#include "core/neighbours.h"
#include "core/views.h"

namespace nuv {

// What a position adds if it is the point itself or lies at its right. Rows: the code before is 0 to 3, or 4
// to 7. Columns: the code itself.
constexpr int kCrossing[2][8] = {
    {0, 1, 1, 1, 1, 0, 0, 0},
    {-1, 0, 0, 0, 0, -1, -1, -1},
};

// What a position adds besides if it is the point itself, so that the pixels of an outer contour are inside.
// Rows: the code before. Columns: the code itself.
constexpr int kOnPoint[8][8] = {
    {0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 1, 0, 0}, {0, 0, 0, 0, 0, 1, 1, 0}, {0, 0, 0, 0, 0, 1, 1, 1},
    {1, 0, 0, 0, 0, 1, 1, 1}, {1, 1, 0, 0, 0, 1, 1, 1}, {1, 1, 1, 0, 0, 1, 1, 1}, {1, 1, 1, 1, 0, 1, 1, 1},
};

// The sum over the positions from which the steps first to end - 1 go. The first of them is p.
inline int32_t crossings(const Chain& chain, int32_t first, int32_t end, Point p, Point point) {
  int32_t sum = 0;
  for (int32_t i = first; i < end; ++i) {
    const int before = chain.previous(i);
    const int code = direction_of(chain.codes[i]);
    if (p.y == point.y && p.x >= point.x) sum += kCrossing[before / 4][code];
    if (p.y == point.y && p.x == point.x) sum += kOnPoint[before][code];
    take_step(p, chain.codes[i]);
  }
  return sum;
}

}  // namespace nuv

#endif
