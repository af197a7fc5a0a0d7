// Projections as bars. The plots differ in the entries that set their scale and in where it begins.

#include <algorithm>

#include "core/arithmetic.h"
#include "drawing/pen.h"
#include "drawing/strokes.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

struct Scale {
  int32_t lo;
  int32_t hi;

  // The length of a bar in pixels. The 2 keeps the longest bar off the far side.
  int32_t length(int32_t value, int32_t extent) const {
    return std::max(truncated((value - lo) / ((hi - lo + 2.0) / extent) + 0.5), 0);
  }
};

// The range of entries begin to end - 1. Its lower end is at most the sum of an all-white image, and its
// upper end is at least 0.
Scale range_of(GrayImage image, const int32_t* values, int64_t begin, int64_t end) {
  Scale scale{image.width * image.height * 255, 0};
  for (int64_t i = begin; i < end; ++i) {
    scale.lo = std::min(scale.lo, values[i]);
    scale.hi = std::max(scale.hi, values[i]);
  }
  return scale;
}

Scale from_zero(Scale range) {
  return {0, range.hi};
}

// Draws bars upwards from the last row, never into row 0.
void plot_columns(const GrayPen& pen, const int32_t* values, int32_t begin, int32_t end, Scale scale) {
  const int32_t height = pen.image.height;
  for (int32_t x = begin; x < end; ++x) {
    stroke_column(pen, x, std::max(height - scale.length(values[x], height), 1), height - 1);
  }
}

// Draws bars from column 0 to the right, never into the last column.
void plot_rows(const GrayPen& pen, const int32_t* values, int32_t end, Scale scale) {
  const int32_t width = pen.image.width;
  for (int32_t y = 0; y < end; ++y) {
    stroke_row(pen, y, 0, std::min(scale.length(values[y], width), width - 1) - 1);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t x1, int32_t x2,
                 int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  if (pen.image.empty()) return;
  // All entries of the range set the scale, also those without a column.
  const int32_t begin = std::max(x1, 0);
  const int32_t end = std::min(x2, width - 1) + 1;
  const Scale scale = range_of(pen.image, pPrj, begin, std::max(int64_t{x2} + 1, int64_t{begin}));
  plot_columns(pen, pPrj, begin, end, scale);
}

void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N, int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  // All entries set the scale, also those without a column.
  plot_columns(pen, pPrj, 0, std::min(N, width), range_of(pen.image, pPrj, 0, N));
}

void NuvDrawPrjXMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                      int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  plot_columns(pen, pPrj, 0, std::min(N, width), from_zero(range_of(pen.image, pPrj, 0, N)));
}

void NuvDrawPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N, int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  // Only the entries with a row set the scale.
  const int32_t end = std::min(N, height);
  plot_rows(pen, pPrj, end, range_of(pen.image, pPrj, 0, end));
}

void NuvDrawPrjYMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                      int32_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  const int32_t end = std::min(N, height);
  plot_rows(pen, pPrj, end, from_zero(range_of(pen.image, pPrj, 0, end)));
}
