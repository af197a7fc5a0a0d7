// Runs: the maximal stretches of one kind along a line.
//
// A line is a start, a count and a stride, so that rows and columns are the same code.

#ifndef NUV_FRAME_RUNS_H
#define NUV_FRAME_RUNS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/views.h"

namespace nuv {

struct Line {
  uint8_t* start;
  int32_t count;
  std::ptrdiff_t stride;

  uint8_t& operator[](int32_t i) const { return start[i * stride]; }
  void fill(int32_t first, int32_t last, uint8_t value) const {
    for (int32_t i = first; i <= last; ++i) start[i * stride] = value;
  }
};

// Parallel lines of an image: all rows or all columns of a region, which must lie in it.
struct Lines {
  uint8_t* start;
  int32_t count;   // of lines
  int32_t length;  // of each
  std::ptrdiff_t to_next_line;
  std::ptrdiff_t stride;

  Line operator[](int32_t i) const { return {start + i * to_next_line, length, stride}; }
};

inline Lines rows_of(GrayImage image, Region region) {
  if (image.empty() || region.empty()) return {};
  return {image.at(region.x1, region.y1), region.rows(), region.columns(), image.width, 1};
}
inline Lines columns_of(GrayImage image, Region region) {
  if (image.empty() || region.empty()) return {};
  return {image.at(region.x1, region.y1), region.columns(), region.rows(), 1, image.width};
}
inline Lines rows_of(GrayImage image) {
  return rows_of(image, image.whole());
}
inline Lines columns_of(GrayImage image) {
  return columns_of(image, image.whole());
}

// The first place from i on whose pixel is 0, or not 0; the count if there is none. Along a row, eight pixels
// at a time are looked at first.
inline int32_t next_black(Line line, int32_t i) {
  constexpr uint64_t kOnes = 0x0101010101010101;
  constexpr uint64_t kTops = 0x8080808080808080;
  if (line.stride == 1) {
    for (uint64_t eight; i + 8 <= line.count; i += 8) {
      std::memcpy(&eight, line.start + i, 8);
      if (((eight - kOnes) & ~eight & kTops) != 0) break;  // a byte of them is 0
    }
  }
  while (i < line.count && line[i] != 0) ++i;
  return i;
}
inline int32_t next_white(Line line, int32_t i) {
  if (line.stride == 1) {
    for (uint64_t eight; i + 8 <= line.count; i += 8) {
      std::memcpy(&eight, line.start + i, 8);
      if (eight != 0) break;
    }
  }
  while (i < line.count && line[i] == 0) ++i;
  return i;
}

// Each calls action(first, last) for the runs of a line in rising order, both ends inclusive. The action may
// change the pixels of its run.
template <class Action>
void for_white_runs(Line line, Action action) {
  for (int32_t i = next_white(line, 0); i < line.count;) {
    const int32_t end = next_black(line, i);
    action(i, end - 1);
    i = next_white(line, end);
  }
}
template <class Action>
void for_black_runs(Line line, Action action) {
  for (int32_t i = next_black(line, 0); i < line.count;) {
    const int32_t end = next_white(line, i);
    action(i, end - 1);
    i = next_black(line, end);
  }
}
// Of pixels from a threshold up that begin with one from a start value up.
template <class Action>
void for_bright_runs(Line line, int32_t start, int32_t threshold, Action action) {
  for (int32_t i = 0; i < line.count; ++i) {
    if (line[i] < start) continue;
    const int32_t first = i;
    while (i + 1 < line.count && line[i + 1] >= threshold) ++i;
    action(first, i);
  }
}

// A limit of lengths that moves evenly down an image: one value at y = 0, another at y = span. Without a span
// it stays at the first.
inline int32_t limit_at(int32_t y, int32_t span, int32_t at_top, int32_t at_bottom) {
  return (span > 0 ? (at_bottom - at_top) * y / span : 0) + at_top;
}

}  // namespace nuv

#endif
