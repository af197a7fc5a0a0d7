// Lines cut to an image or to a rectangle.
//
// Each of the three image clippers is defined by its method. They differ at corners and at the last column,
// so they share no machine.

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/arithmetic.h"
#include "core/line_walks.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

struct Crossing {
  double x;
  double y;
};

// Calls accept(i) for i = first, first + step, ... last until it holds. Returns whether it did.
template <class Accept>
bool find_from(int32_t first, int32_t last, int32_t step, Accept accept) {
  for (int32_t i = first; i != last + step; i += step) {
    if (accept(i)) return true;
  }
  return false;
}

// Searches an axis of size values from both ends.
template <class Point1, class Point2>
bool find_from_both_ends(int32_t size, Point1 point1, Point2 point2) {
  if (size <= 0) return false;
  const bool found1 = find_from(0, size - 1, 1, point1);
  const bool found2 = find_from(size - 1, 0, -1, point2);
  return found1 && found2;
}

// The points of a Hough line on the borders of an image, in the order in which the borders are tried.
struct BorderPoints {
  int32_t* x;
  int32_t* y;
  int32_t count = 0;

  void add(int32_t px, int32_t py) {
    x[count] = px;
    y[count] = py;
    ++count;
  }
};

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvKBLineImgBoundary(int32_t width, int32_t height, int32_t isVertical, double k, double b, int32_t* pX1,
                          int32_t* pY1, int32_t* pX2, int32_t* pY2) {
  struct Border {
    int32_t is_vertical;
    double b;
  };
  const std::array<Border, 4> borders = {{{0, 0.0}, {0, height - 1.0}, {1, 0.0}, {1, width - 1.0}}};
  std::array<Crossing, 4> found{};
  int32_t n = 0;
  for (const Border& border : borders) {
    Crossing c{};
    if (NuvPointOfIntersection(isVertical, k, b, border.is_vertical, 0.0, border.b, &c.x, &c.y) && c.x >= 0 &&
        c.x < width && c.y >= 0 && c.y < height) {
      found[n++] = c;
    }
  }
  if (n < 2) return false;
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t j = i + 1; j < n; ++j) {
      if (found[i].x > found[j].x) std::swap(found[i], found[j]);
    }
  }
  *pX1 = truncated(found[0].x);
  *pY1 = truncated(found[0].y);
  *pX2 = truncated(found[1].x);
  *pY2 = truncated(found[1].y);
  return true;
}

bool NuvABCLineImgBoundary(int32_t width, int32_t height, double A, double B, double C, int32_t* pX1,
                           int32_t* pY1, int32_t* pX2, int32_t* pY2) {
  if (width < 1 || height < 1) return false;
  const AbcLine line{A, B, C};
  if (!line.by_rows()) {
    const auto accept = [=](int32_t* px, int32_t* py) {
      return [=](int32_t x) {
        const int32_t y = line.row_at(x);
        if (y < 0 || y >= height) return false;
        *px = x;
        *py = y;
        return true;
      };
    };
    return find_from_both_ends(width, accept(pX1, pY1), accept(pX2, pY2));
  }
  const auto accept = [=](int32_t* px, int32_t* py) {
    return [=](int32_t y) {
      // No rounding term here, and the last column is out of range.
      const int32_t x = truncated(-((y * B + C) / A));
      if (x < 0 || x >= width - 1) return false;
      *px = x;
      *py = y;
      return true;
    };
  };
  return find_from_both_ends(height, accept(pX1, pY1), accept(pX2, pY2));
}

bool NuvHoughLineImgBoundary(int32_t width, int32_t height, int32_t Thro, int32_t Theta, int32_t* pX,
                             int32_t* pY) {
  pX[0] = pX[1] = pY[0] = pY[1] = 0;
  if (Theta == 90) {
    pY[0] = pY[1] = Thro;
    pX[1] = width - 1;
    return true;
  }
  if (Theta == 0) {
    pX[0] = pX[1] = Thro;
    pY[1] = height - 1;
    return true;
  }
  const double c = std::cos(radians(Theta));
  const double s = std::sin(radians(Theta));
  BorderPoints points{pX, pY};

  for (int32_t x : {0, width - 1}) {
    const int32_t y = truncated((Thro - x * c) / s);
    if (y >= 0 && y <= height - 1) points.add(x, y);
  }
  if (points.count == 2) return true;

  // A first point is taken from either row. A second point is taken only from a row other than pY[1], which
  // is still 0. The top row therefore never gives a second point, and the bottom row always can in an image
  // of two rows or more.
  const int32_t top = truncated((Thro - 0 * s) / c);
  if (top >= 0 && top < width && (points.count == 0 || pY[1] != 0)) points.add(top, 0);
  const int32_t bottom = truncated((Thro - (height - 1) * s) / c);
  if (bottom >= 0 && bottom < width) {
    if (points.count == 0) {
      points.add(bottom, height - 1);
      return false;
    }
    if (pY[1] != height - 1) points.add(bottom, height - 1);
  }
  return points.count == 2;
}

bool NuvKBLineRectBoundary(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                           int32_t isVertical, double k, double b, int32_t* pX, int32_t* pY) {
  NuvKBLineBeginEndPoint(width, height, x1, x2, y1, y2, isVertical, k, b, &pX[0], &pY[0], &pX[1], &pY[1]);
  return true;
}

void NuvKBLineBeginEndPoint(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                            int32_t isVertical, double k, double b, int32_t* pX1, int32_t* pY1, int32_t* pX2,
                            int32_t* pY2) {
  const auto clamped = [](double value, int32_t size) {
    return std::max(0, std::min(truncated(value + 0.5), std::max(size, 1) - 1));
  };
  const auto point_at = [=](int32_t x, int32_t y, int32_t* px, int32_t* py) {
    *px = clamped(isVertical == 0 ? x : y * k + b, width);
    *py = clamped(isVertical == 0 ? x * k + b : y, height);
  };
  point_at(x1, y1, pX1, pY1);
  point_at(x2, y2, pX2, pY2);
}
