// Tracing one contour, the search for starts in a row, and the removal of marks.

#include "contours/trace.h"

#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void restore_row(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] < kLeastRestored ? 0 : 255;
}

NUV_INLINE bool starts(const uint8_t* p, uint8_t background_limit) {
  // No branch, so that compilers turn the loop over a block into vector code.
  return (static_cast<int>(starts_outer(p[0], p[-1], background_limit)) |
          static_cast<int>(starts_inner(p[0], p[-1]))) != 0;
}

NUV_ROW_KERNEL std::ptrdiff_t first_start_in_row(const uint8_t* row, std::ptrdiff_t n,
                                                 uint8_t background_limit) {
  constexpr std::ptrdiff_t kBlock = 64;
  std::ptrdiff_t i = 0;
  for (; i + kBlock <= n; i += kBlock) {
    uint8_t found = 0;
    for (std::ptrdiff_t k = i; k < i + kBlock; ++k) {
      found = static_cast<uint8_t>(found | static_cast<uint8_t>(starts(row + k, background_limit)));
    }
    if (found != 0) break;
  }
  while (i < n && !starts(row + i, background_limit)) ++i;
  return i;
}

}  // namespace

std::ptrdiff_t first_start(const uint8_t* pixels, std::ptrdiff_t n, uint8_t background_limit) {
  return first_start_in_row(pixels, n, background_limit);
}

void restore_binary(GrayImage image, Region region) {
  for_rows(image, region, restore_row);
}

}  // namespace nuv

using namespace nuv;

int32_t NuvTraceContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode, int32_t N,
                        bool isOuter) {
  ChainSink chain(pChainCode, N);
  trace_contour(image_of_any_height<1>(pBinImg, width).at(x, y), width, isOuter,
                [&chain](uint8_t code) { chain(code); });
  return chain.count();
}

void NuvMarkContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, bool isOuter) {
  trace_contour(image_of_any_height<1>(pBinImg, width).at(x, y), width, isOuter, [](uint8_t) {});
}
