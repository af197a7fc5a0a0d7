// Lines drawn into images: the walks of core/line_walks.h with a pen, and the rounding of each form.

#include <algorithm>
#include <cmath>

#include "core/arithmetic.h"
#include "core/line_walks.h"
#include "drawing/pen.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

template <class Pen>
void draw_between(const Pen& pen, Point p1, Point p2) {
  const auto& image = pen.image;
  if (image.empty()) return;
  const auto clamped = [&image](Point p) {
    return Point{std::clamp(p.x, 0, image.width - 1), std::clamp(p.y, 0, image.height - 1)};
  };
  walk_connected(clamped(p1), clamped(p2), [&](int32_t x, int32_t y) {
    // With large coordinates, single precision can round past the last row.
    if (y >= 0 && y < image.height) pen.put(x, y);
  });
}

template <class Pen>
void draw_kb_line(const Pen& pen, int32_t is_vertical, double k, double b) {
  const auto& image = pen.image;
  if (image.empty()) return;
  const auto along = [=](int32_t major) { return truncated(major * k + b + 0.5); };
  const auto put = [&pen](int32_t x, int32_t y) { pen.put(x, y); };
  if (is_vertical == 0) {
    walk_columns(0, image.width - 1, image.height, along, put);
  } else {
    walk_rows(0, image.height - 1, image.width, along, put);
  }
}

// Draws one half of a degree line: from start by step, while the major coordinate stays in first..last. Where
// the minor coordinate lies outside the image, the walk ends if the line leads farther away, and continues if
// it can still enter.
template <class Put>
void draw_ray(int64_t start, int32_t step, int64_t first, int64_t last, double m, double c,
              int32_t minor_size, Put put) {
  const double heading = m * step;
  for (int64_t major = start; major >= first && major <= last; major += step) {
    const int32_t minor = truncated(static_cast<double>(major) * m + c);
    if (minor >= minor_size) {
      if (heading > 0) return;
    } else if (minor < 0) {
      if (heading < 0) return;
    } else {
      put(static_cast<int32_t>(major), minor);
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                int32_t y2, int32_t color) {
  draw_between(GrayPen(pGryImg, width, height, color), {x1, y1}, {x2, y2});
}

void NuvRGBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                int32_t y2, int32_t r, int32_t g, int32_t b) {
  draw_between(RgbPen(pRGBImg, width, height, r, g, b), {x1, y1}, {x2, y2});
}

void NuvDrawDegreeLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0, double degree,
                       int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  const auto put = [&pen](int32_t x, int32_t y) {
    if (pen.image.contains(x, y)) pen.put(x, y);
  };
  const bool by_columns = degree < 45 || degree > 135;
  const double m = std::tan((by_columns ? degree : 90 - degree) / 180 * kPi);
  const auto rays = [m](int64_t from, int32_t through, int32_t major_size, int32_t minor_size, auto draw) {
    const double c = through - static_cast<double>(from) * m;
    // A start far outside the image is moved to its side at once.
    const int64_t last = int64_t{major_size} - 1;
    draw_ray(std::max<int64_t>(from + 1, 0), 1, 0, last, m, c, minor_size, draw);
    draw_ray(std::min(from - 1, last), -1, 1, last, m, c, minor_size, draw);  // never reaches 0
  };
  if (by_columns) {
    rays(x0, y0, width, height, put);
  } else {
    rays(y0, x0, height, width, [put](int32_t y, int32_t x) { put(x, y); });
  }
}

void NuvDrawKBLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t isVertical, double k, double b,
                   int32_t color) {
  draw_kb_line(GrayPen(pGryImg, width, height, color), isVertical, k, b);
}

void NuvDrawKBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t isVertical, double k, double b,
                   int32_t colorR, int32_t colorG, int32_t colorB) {
  draw_kb_line(RgbPen(pRGBImg, width, height, colorR, colorG, colorB), isVertical, k, b);
}

void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B, double C,
                           int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  walk_abc_line(width, height, pen.image.whole(), {A, B, C}, [&](int32_t x, int32_t y) { pen.put(x, y); });
}

void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, double A, double B, double C, int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  const Region range =
      Region{std::min(x1, x2), std::max(x1, x2), std::min(y1, y2), std::max(y1, y2)}.clamped_to(width,
                                                                                                height);
  walk_abc_line(width, height, range, {A, B, C}, [&](int32_t x, int32_t y) { pen.put(x, y); });
}

void NuvDrawABCLineByInc(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B, double C) {
  const GrayImage image{pGryImg, width, height};
  walk_abc_line(width, height, image.whole(), {A, B, C}, [&](int32_t x, int32_t y) {
    uint8_t& pixel = *image.at(x, y);
    if (pixel != 255) ++pixel;
  });
}

void NuvDrawHoughLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t thro, int32_t theta,
                      uint8_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  if (pen.image.empty()) return;
  const double cosine = std::cos(radians(theta));
  const double sine = std::sin(radians(theta));
  const auto put = [&pen](int32_t x, int32_t y) { pen.put(x, y); };
  if (theta >= 45 && theta <= 125) {
    walk_columns(
        0, width - 1, height, [=](int32_t x) { return truncated((thro - x * cosine) / sine); }, put);
  } else {
    walk_rows(
        0, height - 1, width, [=](int32_t y) { return truncated((thro - y * sine) / cosine); }, put);
  }
}
