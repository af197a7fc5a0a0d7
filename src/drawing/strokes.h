// Strokes along one column or one row, cut to the image, and crosses made of two strokes.

#ifndef NUV_DRAWING_STROKES_H
#define NUV_DRAWING_STROKES_H

#include <algorithm>
#include <cstdint>

#include "core/views.h"

namespace nuv {

template <class Pen>
void stroke_column(const Pen& pen, int32_t x, int32_t y1, int32_t y2) {
  if (pen.image.empty() || x < 0 || x >= pen.image.width) return;
  const int32_t last = std::min(y2, pen.image.height - 1);
  for (int32_t y = std::max(y1, 0); y <= last; ++y) pen.put(x, y);
}

template <class Pen>
void stroke_row(const Pen& pen, int32_t y, int32_t x1, int32_t x2) {
  if (pen.image.empty() || y < 0 || y >= pen.image.height) return;
  const int32_t first = std::max(x1, 0);
  const int32_t last = std::min(x2, pen.image.width - 1);
  if (first <= last) pen.put_run(first, y, last - first + 1);
}

// Draws a column over rows arms.y1..arms.y2 and a row over columns arms.x1..arms.x2.
template <class Pen>
void draw_cross(const Pen& pen, int32_t column, int32_t row, Region arms) {
  stroke_column(pen, column, arms.y1, arms.y2);
  stroke_row(pen, row, arms.x1, arms.x2);
}

// The extents of arms of length size around a point, without the two outer lines of the image.
template <int Channels>
Region arms_off_border(Image<Channels> image, int32_t x, int32_t y, int32_t size) {
  return image.interior(2).intersected({x - size, x + size, y - size, y + size});
}

}  // namespace nuv

#endif
