// Tracing one contour.

#include "contours/trace.h"

#include "frame/point_pass.h"
#include "frame/row_kernel.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void restore_row(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] < 50 ? 0 : 255;
}

}  // namespace

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
