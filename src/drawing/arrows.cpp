// Arrows.
//
// Arrows in the four directions share one drawing by coordinates along and across the axis: rows and columns
// of a vertical arrow, columns and rows of a horizontal one. The places that are limited to the image differ,
// so each direction computes its own.

#include <algorithm>
#include <cmath>

#include "core/arithmetic.h"
#include "drawing/pen.h"
#include "drawing/strokes.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

void draw_line(const GrayPen& pen, Point p1, Point p2) {
  NuvGryLine(pen.image.pixels, pen.image.width, pen.image.height, p1.x, p1.y, p2.x, p2.y, pen.colour);
}
void draw_line(const RgbPen& pen, Point p1, Point p2) {
  NuvRGBLine(pen.image.pixels, pen.image.width, pen.image.height, p1.x, p1.y, p2.x, p2.y, pen.red, pen.green,
             pen.blue);
}

Point upright(int32_t along, int32_t across) {
  return {across, along};
}
Point level(int32_t along, int32_t across) {
  return {along, across};
}
using Axis = Point (*)(int32_t along, int32_t across);

// ---- block arrows ----

constexpr int32_t kHead = 10;  // its length, and how far it sticks out on each side

// The sides of the shaft and the size of the image, across the axis.
struct Sides {
  int32_t first, second;
  int32_t image_size;
};

void draw_block_arrow(const GrayPen& pen, Axis at, int32_t tip, int32_t base, int32_t end, Sides sides) {
  const int32_t middle = (sides.first + sides.second) / 2;
  const int32_t wing1 = std::max(sides.first - kHead, 0);
  const int32_t wing2 = std::min(sides.second + kHead, sides.image_size - 1);
  draw_line(pen, at(base, wing1), at(tip, middle));
  draw_line(pen, at(base, wing2), at(tip, middle));
  draw_line(pen, at(base, wing1), at(base, wing2));
  draw_line(pen, at(base, sides.first), at(end, sides.first));
  draw_line(pen, at(base, sides.second), at(end, sides.second));
  draw_line(pen, at(end, sides.first), at(end, sides.second));
}

// ---- simple arrows ----

// tail, tip and base (the place of the wings) lie along the axis, all others across it.
struct SimpleArrow {
  int32_t tail, tip, base;
  int32_t shaft, second_shaft;
  int32_t wing1, wing2;
};

template <class Pen>
void draw_simple_arrow(const Pen& pen, Axis at, const SimpleArrow& a) {
  const Point tip = at(a.tip, a.shaft);
  draw_line(pen, at(a.tail, a.shaft), tip);
  draw_line(pen, tip, at(a.base, a.wing1));
  draw_line(pen, tip, at(a.base, a.wing2));
  draw_line(pen, at(a.tail, a.second_shaft), at(a.tip, a.second_shaft));
  draw_line(pen, tip, at(a.base, a.wing1 + 1));
  draw_line(pen, tip, at(a.base, a.wing2 - 1));
}

template <class Pen>
void draw_upright_arrow(const Pen& pen, int32_t x, int32_t tail, int32_t tip, int32_t base, int32_t wing) {
  const int32_t last = pen.image.width - 1;
  draw_simple_arrow(
      pen, upright,
      {tail, tip, base, x, std::min(x + 1, last), std::max(x - wing, 0), std::min(x + wing, last)});
}

template <class Pen>
void draw_level_arrow(const Pen& pen, int32_t y, int32_t tail, int32_t tip, int32_t base, int32_t wing) {
  const int32_t last = pen.image.height - 1;
  draw_simple_arrow(pen, level, {tail, tip, base, y, y + 1, std::max(y - wing, 0), std::min(y + wing, last)});
}

template <class Pen>
void draw_up_arrow(const Pen& pen, Point p, int32_t len) {
  const auto row = [p](int32_t distance) { return std::max(p.y - distance, 0); };
  draw_upright_arrow(pen, p.x, p.y, row(len), row(len / 2), len / 4);
}

template <class Pen>
void draw_down_arrow(const Pen& pen, Point p, int32_t len) {
  // The rows are limited at the top only. Past the bottom each line is clamped by itself.
  const auto row = [p](int32_t distance) { return std::max(p.y + distance, 0); };
  draw_upright_arrow(pen, p.x, p.y, row(len), row(len / 2), len / 4);
}

template <class Pen>
void draw_left_arrow(const Pen& pen, Point p, int32_t len) {
  const auto column = [p](int32_t distance) { return std::max(p.x - distance, 0); };
  draw_level_arrow(pen, p.y, p.x, column(len), column(len / 2), len / 4);
}

template <class Pen>
void draw_right_arrow(const Pen& pen, Point p, int32_t len) {
  const auto column = [&](int32_t distance) { return std::min(p.x + distance, pen.image.width - 1); };
  draw_level_arrow(pen, p.y, p.x, column(len), column(len / 2), len / 4);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryImgDrawArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  draw_line(pen, {x1, y1}, {x2, y2});
  const double length = std::sqrt((y2 - y1) * (y2 - y1) + (x2 - x1) * (x2 - x1));
  const int32_t half = truncated(length + 1.0) / 5 + 2;
  draw_cross(pen, x2, y2, arms_off_border(pen.image, x2, y2, half));
}

void NuvRGBImgDrawArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t size, int32_t r, int32_t g, int32_t b) {
  // The line has red and blue exchanged, the cross has not.
  draw_line(RgbPen(pRGBImg, width, height, b, g, r), {x1, y1}, {x2, y2});
  const RgbPen pen(pRGBImg, width, height, r, g, b);
  const Region arms = arms_off_border(pen.image, x2, y2, size);
  for (int32_t d : {-1, 0, 1}) draw_cross(pen, x2 + d, y2 + d, arms);
}

void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, int32_t color) {
  draw_block_arrow(GrayPen(pGryImg, width, height, color), upright, y1, std::min(y1 + kHead, y2), y2,
                   {x1, x2, width});
}

void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                      int32_t y2, int32_t color) {
  draw_block_arrow(GrayPen(pGryImg, width, height, color), upright, y2, std::max(y2 - kHead, y1), y1,
                   {x1, x2, width});
}

void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                      int32_t y2, int32_t color) {
  draw_block_arrow(GrayPen(pGryImg, width, height, color), level, x1, std::min(x1 + kHead, x2), x2,
                   {y1, y2, height});
}

void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                       int32_t y2, int32_t color) {
  draw_block_arrow(GrayPen(pGryImg, width, height, color), level, x2, std::max(x2 - kHead, x1), x1,
                   {y1, y2, height});
}

void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                    int32_t color) {
  draw_up_arrow(GrayPen(pGryImg, width, height, color), {x, y}, len);
}

void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                      int32_t color) {
  draw_down_arrow(GrayPen(pGryImg, width, height, color), {x, y}, len);
}

void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                       int32_t color) {
  draw_right_arrow(GrayPen(pGryImg, width, height, color), {x, y}, len);
}

void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                      int32_t color) {
  draw_left_arrow(GrayPen(pGryImg, width, height, color), {x, y}, len);
}

void NuvDrawUpArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                    int32_t r, int32_t g, int32_t b) {
  draw_up_arrow(RgbPen(pRGBImg, width, height, r, g, b), {x, y}, len);
}

void NuvDrawDownArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                      int32_t r, int32_t g, int32_t b) {
  draw_down_arrow(RgbPen(pRGBImg, width, height, r, g, b), {x, y}, len);
}

void NuvDrawLeftArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                      int32_t r, int32_t g, int32_t b) {
  draw_left_arrow(RgbPen(pRGBImg, width, height, r, g, b), {x, y}, len);
}

void NuvDrawRightArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t len,
                       int32_t r, int32_t g, int32_t b) {
  draw_right_arrow(RgbPen(pRGBImg, width, height, r, g, b), {x, y}, len);
}
