// The project's mark: three white letters on a black plate, stored as runs of pixels.

#include "drawing/pen.h"
#include "drawing/strokes.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

constexpr int32_t kLogoWidth = 29;
constexpr int32_t kLogoHeight = 13;

struct Run {
  int32_t row, first, last;
};

// clang-format off
constexpr Run kLetters[] = {
    {2, 2, 3}, {2, 7, 8}, {2, 11, 12}, {2, 16, 17}, {2, 20, 21}, {2, 25, 26},
    {3, 2, 4}, {3, 7, 8}, {3, 11, 12}, {3, 16, 17}, {3, 20, 21}, {3, 25, 26},
    {4, 2, 4}, {4, 7, 8}, {4, 11, 12}, {4, 16, 17}, {4, 20, 21}, {4, 25, 26},
    {5, 2, 5}, {5, 7, 8}, {5, 11, 12}, {5, 16, 17}, {5, 21, 22}, {5, 24, 25},
    {6, 2, 3}, {6, 5, 5}, {6, 7, 8}, {6, 11, 12}, {6, 16, 17}, {6, 21, 22}, {6, 24, 25},
    {7, 2, 3}, {7, 5, 8}, {7, 11, 12}, {7, 16, 17}, {7, 21, 22}, {7, 24, 25},
    {8, 2, 3}, {8, 6, 8}, {8, 11, 12}, {8, 16, 17}, {8, 22, 24},
    {9, 2, 3}, {9, 6, 8}, {9, 11, 17}, {9, 22, 24},
    {10, 2, 3}, {10, 7, 8}, {10, 12, 16}, {10, 23, 23},
};
// clang-format on

template <class Pen>
void draw_logo(const Pen& ink, const Pen& plate, Point at) {
  for (int32_t y = 0; y < kLogoHeight; ++y) stroke_row(plate, at.y + y, at.x, at.x + kLogoWidth - 1);
  for (const Run& run : kLetters) stroke_row(ink, at.y + run.row, at.x + run.first, at.x + run.last);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvSetPrivateLogo(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x, int32_t y) {
  if (bRGB) {
    draw_logo(RgbPen(pImg, width, height, 255, 255, 255), RgbPen(pImg, width, height, 0, 0, 0), {x, y});
  } else {
    draw_logo(GrayPen(pImg, width, height, 255), GrayPen(pImg, width, height, 0), {x, y});
  }
}
