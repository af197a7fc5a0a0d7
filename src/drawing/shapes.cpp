// Polygons, ellipses and rectangles.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "core/arithmetic.h"
#include "core/outline.h"
#include "drawing/pen.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

template <class Pen>
void draw_rectangle(const Pen& pen, Region r) {
  const auto& image = pen.image;
  if (image.empty()) return;
  walk_outline(image, ordered_within(image, r), [&pen](int32_t x, int32_t y) { pen.put(x, y); });
}

template <class Pen>
void fill_rectangle(const Pen& pen, Region r) {
  const Region inside = r.clamped_to(pen.image.width, pen.image.height);
  if (inside.empty()) return;
  pen.put_run(inside.x1, inside.y1, inside.columns());
  // The other rows are copies of the first.
  const uint8_t* first = pen.image.at(inside.x1, inside.y1);
  const auto bytes = static_cast<std::size_t>(pen.image.at(inside.x2 + 1, inside.y1) - first);
  for (int32_t y = inside.y1 + 1; y <= inside.y2; ++y) std::memcpy(pen.image.at(inside.x1, y), first, bytes);
}

// ---- ellipses ----

// The upper half of an ellipse, as rows by the distance of a column from the centre.
class EllipseArc {
 public:
  EllipseArc(int32_t rx, int32_t ry) : half_axis_(rx), flattening_(ry / half_axis_) {}

  // The row at step columns from the centre, whose row is cy.
  int32_t row_at(int32_t cy, int32_t step) const {
    const double from_centre = step;
    const double d = std::sqrt(half_axis_ * half_axis_ - from_centre * from_centre);
    return truncated(cy - d * flattening_);
  }

 private:
  double half_axis_;
  double flattening_;
};

// Returns whether an ellipse and one pixel around it lie in the image, and the image is so small that single
// precision represents all its coordinates.
bool is_whole_ellipse(GrayImage image, int64_t cx, int64_t cy, int64_t rx, int64_t ry) {
  const int64_t dy = std::abs(ry);
  return rx > 0 && image.size() <= 1 << 24 && cx - rx > 0 && cx + rx < image.width - 1 && cy - dy > 0 &&
         cy + dy < image.height - 1;
}

// Draws the lines of a whole ellipse without walking each. A line of the polyline leads from one column to
// the next and fills the right one of the two from row to row; a level line also has its left end. The four
// lines of a step are mirror images, so their rows are computed once.
void draw_whole_ellipse(const GrayPen& pen, int32_t cx, int32_t cy, int32_t rx, int32_t ry) {
  const EllipseArc arc(rx, ry);
  const auto put_mirrored = [&pen, cy](int32_t left, int32_t right, int32_t y) {
    pen.put(left, y);
    pen.put(right, y);
    pen.put(left, 2 * cy - y);
    pen.put(right, 2 * cy - y);
  };
  put_mirrored(cx - rx, cx + rx, cy);
  int32_t previous = cy;
  for (int32_t step = 1 - rx; step <= 0; ++step) {
    const int32_t row = arc.row_at(cy, step);
    for (int32_t y = std::min(previous, row); y <= std::max(previous, row); ++y) {
      put_mirrored(cx + step, cx - step + 1, y);
    }
    if (row == previous) put_mirrored(cx + step, cx - step, row);
    previous = row;
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvDrawPolygon(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY, int32_t N,
                    int32_t dx, int32_t dy, int32_t color) {
  if (N < 2) return;
  if (N == 2) {
    // The second end moves by dx in both coordinates.
    NuvGryLine(pGryImg, width, height, pX[0] + dx, pY[0] + dy, pX[1] + dx, pY[1] + dx, color);
    return;
  }
  for (int32_t i = 0; i < N; ++i) {
    const int32_t next = i + 1 < N ? i + 1 : 0;
    NuvGryLine(pGryImg, width, height, pX[i] + dx, pY[i] + dy, pX[next] + dx, pY[next] + dy, color);
  }
}

void NuvDrawCircle(uint8_t* pGryImg, int32_t width, int32_t height, int32_t cx, int32_t cy, int32_t rx,
                   int32_t ry, int32_t color) {
  if (rx < 0) return;
  const GrayPen pen(pGryImg, width, height, color);
  if (is_whole_ellipse(pen.image, cx, cy, rx, ry)) {
    draw_whole_ellipse(pen, cx, cy, rx, ry);
    return;
  }
  const auto line = [=](int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    NuvGryLine(pGryImg, width, height, x1, y1, x2, y2, color);
  };
  const EllipseArc arc(rx, ry);
  int32_t px = cx - rx;
  int32_t py = cy;
  // Past the sides of the image all lines are clamped into its outermost columns, so steps there can be
  // skipped. The next step is the nearest one whose vertex, at cx + step or cx - step, lies in the image or
  // beside it, or else the centre.
  const auto next = [=](int32_t step) {
    int64_t nearest = 0;
    for (int64_t begin : {-1 - int64_t{cx}, int64_t{cx} - width}) {
      const int64_t candidate = std::max(int64_t{step} + 1, begin);
      if (candidate <= begin + width + 1) nearest = std::min(nearest, candidate);
    }
    return static_cast<int32_t>(nearest);
  };
  for (int32_t step = -rx;; step = next(step)) {
    const int32_t x = cx + step;
    const int32_t y = arc.row_at(cy, step);
    line(px, py, x, y);
    line(px, 2 * cy - py, x, 2 * cy - y);
    line(2 * cx - px, 2 * cy - py, 2 * cx - x, 2 * cy - y);
    line(2 * cx - px, py, 2 * cx - x, y);
    px = x;
    py = y;
    if (step == 0) return;
  }
}

void NuvDrawGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, int32_t color) {
  draw_rectangle(GrayPen(pGryImg, width, height, color), {x1, x2, y1, y2});
}

void NuvDrawRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, int32_t r, int32_t g, int32_t b) {
  draw_rectangle(RgbPen(pRGBImg, width, height, r, g, b), {x1, x2, y1, y2});
}

void NuvDrawRect(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x1, int32_t x2, int32_t y1,
                 int32_t y2, int32_t r, int32_t g, int32_t b, int32_t gry) {
  if (bRGB) {
    NuvDrawRGBRect(pImg, width, height, x1, x2, y1, y2, r, g, b);
  } else {
    NuvDrawGryRect(pImg, width, height, x1, x2, y1, y2, gry);
  }
}

void NuvChangeColorOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, int32_t oldColor, int32_t newColor) {
  const GrayPen pen(pGryImg, width, height, newColor);
  const Region outline = Region{x1, x2, y1, y2}.clamped_to(width, height);
  walk_outline(pen.image, outline, [&](int32_t x, int32_t y) {
    if (*pen.image.at(x, y) == oldColor) pen.put(x, y);
  });
}

void NuvFillGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, int32_t color) {
  fill_rectangle(GrayPen(pGryImg, width, height, color), {x1, x2, y1, y2});
}

void NuvFillRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, int32_t r, int32_t g, int32_t b) {
  fill_rectangle(RgbPen(pRGBImg, width, height, r, g, b), {x1, x2, y1, y2});
}
