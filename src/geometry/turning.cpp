// Mirror images and quarter turns.
//
// A vertical flip copies rows. A horizontal flip and the half turn reverse bytes, 16 at a time. Both quarter
// turns are a transposition: the clockwise turn reads the source from its last row up, and the anticlockwise
// turn writes the result from its last row up.

#include <algorithm>
#include <cstring>

#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/transposition.h"
#include "core/views.h"
#include "nuv/geometry.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void mirror_row(uint8_t* row, std::ptrdiff_t n) {
  uint8_t* left = row;
  uint8_t* right = row + n;
#if NUV_HAS_LANES
  const bool in_steps = reverses_in_steps();
  for (; right - left >= 32; left += 16, right -= 16) {
    const Bytes16 at_left = load16(left);
    const Bytes16 at_right = load16(right - 16);
    store16(left, reversed(at_right, in_steps));
    store16(right - 16, reversed(at_left, in_steps));
  }
#endif
  std::reverse(left, right);
}

NUV_ROW_KERNEL void copy_reversed(const uint8_t* NUV_RESTRICT from, std::ptrdiff_t n,
                                  uint8_t* NUV_RESTRICT to) {
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES
  const bool in_steps = reverses_in_steps();
  for (; i + 16 <= n; i += 16) store16(to + n - 16 - i, reversed(load16(from + i), in_steps));
#endif
  for (; i < n; ++i) to[n - 1 - i] = from[i];
}

// ---- quarter turns ----

template <int PixelBytes>
void turn_quarter(Image<PixelBytes> image, bool clockwise, Image<PixelBytes> result) {
  if (image.empty()) return;
  const std::ptrdiff_t source_step = static_cast<std::ptrdiff_t>(image.width) * PixelBytes;
  const std::ptrdiff_t result_step = static_cast<std::ptrdiff_t>(result.width) * PixelBytes;
  const Transposition t =
      clockwise ? Transposition{{image.row(image.height - 1), -source_step}, {result.pixels, result_step}}
                : Transposition{{image.pixels, source_step}, {result.row(result.height - 1), -result_step}};
  t.move_all<PixelBytes>(image.width, image.height);
}

void turn_quarter(uint8_t* image, int32_t width, int32_t height, bool rgb, bool clockwise, uint8_t* result) {
  if (rgb) {
    turn_quarter<3>({image, width, height}, clockwise, {result, height, width});
  } else {
    turn_quarter<1>({image, width, height}, clockwise, {result, height, width});
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg) {
  if (GrayImage{pImg, width, height}.empty()) return;
  const std::ptrdiff_t row_bytes = std::ptrdiff_t{width} * channels_of(bRGB);
  for (int32_t y = 0; y < height; ++y) {
    std::memcpy(pResImg + (height - 1 - y) * row_bytes, pImg + y * row_bytes,
                static_cast<std::size_t>(row_bytes));
  }
}

void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB) {
  if (GrayImage{pImg, width, height}.empty()) return;
  const std::ptrdiff_t row_bytes = std::ptrdiff_t{width} * channels_of(bRGB);
  for (int32_t y = 0; y < height / 2; ++y) {
    uint8_t* row = pImg + y * row_bytes;
    std::swap_ranges(row, row + row_bytes, pImg + (height - 1 - y) * row_bytes);
  }
}

void NuvFlipHorizontal(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  for (int32_t y = 0; y < height; ++y) mirror_row(image.row(y), width);
}

void NuvReverseImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  copy_reversed(pGryImg, GrayImage{pGryImg, width, height}.size(), pResImg);
}

void NuvRGB32Rotate90Degree(uint8_t* pImg, int32_t width, int32_t height, bool bCS, uint8_t* pResImg) {
  turn_quarter<4>({pImg, width, height}, bCS, {pResImg, height, width});
}

void NuvImgRotate90DegreeCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg) {
  turn_quarter(pImg, width, height, bRGB, true, pResImg);
}

void NuvImgRotate90DegreeCCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg) {
  turn_quarter(pImg, width, height, bRGB, false, pResImg);
}
