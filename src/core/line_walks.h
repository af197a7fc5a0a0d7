// Walks along straight lines.
//
// A line that is given by an equation is walked along its major axis, with one pixel per column, or one per
// row if the line is steep. The forms of a line round the other coordinate in different ways, so the walks
// take it as a function. truncated() maps every coordinate that does not exist to one outside the image, and
// pixels outside the image are not visited.
//
// A line between two points is walked connected: each column is filled from the row where the column before
// it ended. If the line is neither horizontal nor vertical, the column of its left end point is not visited.

#ifndef NUV_CORE_LINE_WALKS_H
#define NUV_CORE_LINE_WALKS_H

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/arithmetic.h"
#include "core/views.h"

namespace nuv {

// Visits (x, row_at(x)) for columns first to last, where that pixel lies in an image of the given height.
template <class RowAt, class Visit>
void walk_columns(int32_t first, int32_t last, int32_t height, RowAt row_at, Visit visit) {
  for (int32_t x = first; x <= last; ++x) {
    const int32_t y = row_at(x);
    if (y >= 0 && y < height) visit(x, y);
  }
}

// Visits (column_at(y), y) for rows first to last, where that pixel lies in an image of the given width.
template <class ColumnAt, class Visit>
void walk_rows(int32_t first, int32_t last, int32_t width, ColumnAt column_at, Visit visit) {
  for (int32_t y = first; y <= last; ++y) {
    const int32_t x = column_at(y);
    if (x >= 0 && x < width) visit(x, y);
  }
}

// The line A*x + B*y + C = 0. It is walked by rows if it is steep or at exactly 45 degrees.
struct AbcLine {
  double A;
  double B;
  double C;

  bool by_rows() const { return std::fabs(B) <= std::fabs(A); }
  int32_t column_at(int32_t y) const { return truncated(0.5 - (y * B + C) / A); }
  int32_t row_at(int32_t x) const { return truncated(0.5 - (x * A + C) / B); }
};

// Visits the part of the line whose major coordinate lies in range. Only the image limits the other
// coordinate.
template <class Visit>
void walk_abc_line(int32_t width, int32_t height, Region range, AbcLine line, Visit visit) {
  if (line.by_rows()) {
    walk_rows(
        range.y1, range.y2, width, [=](int32_t y) { return line.column_at(y); }, visit);
  } else {
    walk_columns(
        range.x1, range.x2, height, [=](int32_t x) { return line.row_at(x); }, visit);
  }
}

// Visits the line between two points, in single precision. A vertical or horizontal line has both its ends;
// any other line starts in the column after its left end point.
template <class Visit>
void walk_connected(Point p1, Point p2, Visit visit) {
  if (p1.x == p2.x) {
    for (int32_t y = std::min(p1.y, p2.y); y <= std::max(p1.y, p2.y); ++y) visit(p1.x, y);
    return;
  }
  if (p1.y == p2.y) {
    for (int32_t x = std::min(p1.x, p2.x); x <= std::max(p1.x, p2.x); ++x) visit(x, p1.y);
    return;
  }
  // The slope and the offset come from the points as given: sorting them first would round differently.
  const float k = static_cast<float>(p2.y - p1.y) / static_cast<float>(p2.x - p1.x);
  const float c = static_cast<float>(p2.y) - static_cast<float>(p2.x) * k;
  const Point left = p1.x < p2.x ? p1 : p2;
  const int32_t right = std::max(p1.x, p2.x);
  int32_t previous = left.y;
  for (int32_t x = left.x + 1; x <= right; ++x) {
    const int32_t row = truncated(static_cast<float>(x) * k + c);
    for (int32_t y = std::min(previous, row); y <= std::max(previous, row); ++y) visit(x, y);
    previous = row;
  }
}

}  // namespace nuv

#endif
