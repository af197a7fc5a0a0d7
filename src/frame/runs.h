// Runs: the maximal stretches of one kind along a line.
//
// A line is a start, a count and a stride, so that rows and columns are the same code.

#ifndef NUV_FRAME_RUNS_H
#define NUV_FRAME_RUNS_H

#include <cstddef>
#include <cstdint>

#include "frame/views.h"

namespace nuv {

struct Line {
  const uint8_t* start;
  int32_t count;
  std::ptrdiff_t stride;

  uint8_t operator[](int32_t i) const { return start[i * stride]; }
};

inline Line row_line(GrayImage image, int32_t y) {
  return {image.row(y), image.width, 1};
}

// Calls action(first, last) for each run of non-zero pixels, both ends inclusive, in rising order.
template <class Action>
void for_white_runs(Line line, Action action) {
  int32_t i = 0;
  while (i < line.count) {
    while (i < line.count && line[i] == 0) ++i;
    if (i == line.count) return;
    const int32_t first = i;
    while (i < line.count && line[i] != 0) ++i;
    action(first, i - 1);
  }
}

}  // namespace nuv

#endif
