// The largest outer contour of a region, by area or by perimeter.

#include <algorithm>

#include "contours/trace.h"
#include "core/outline.h"
#include "core/views.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

struct Size {
  int32_t area;
  int32_t perimeter;
};

int32_t largest_contour(GrayImage image, uint8_t* codes, Region region, int32_t y_step,
                        int32_t Size::*compared, tagRECT* rect, int32_t* centre_x, int32_t* centre_y) {
  *rect = {0, 0, 0, 0};
  if (image.empty()) return 0;
  // Callers pass the limits of the type to mean the whole image, so a step past them must not wrap.
  const auto one_before = [](int32_t end) { return end > 0 ? end - 1 : 0; };
  const auto one_after = [](int32_t end, int32_t size) { return end < size - 1 ? end + 1 : size - 1; };
  const int32_t left = one_before(region.x1);
  const int32_t right = one_after(region.x2, image.width);
  const int32_t top = one_before(region.y1);
  const int32_t bottom = one_after(region.y2, image.height);
  // The clear border that the tracer needs.
  walk_outline(image, ordered_within(image, {left, right, top, bottom}),
               [=](int32_t x, int32_t y) { *image.at(x, y) = 0; });

  int32_t best = 0;
  tagRECT box{0, 0, 0, 0};
  const auto measure = [&](ContourStart start) {
    const int32_t n = NuvTraceContour(image.pixels, image.width, start.x, start.y, codes,
                                      image.width * image.height, start.is_outer);
    if (!start.is_outer || n < 1) return;
    Size size{};
    NuvRealAreaAndPerimeter(codes, n, &size.area, &size.perimeter);
    if (size.*compared <= best) return;
    best = size.*compared;
    NuvContourRect(start.x, start.y, codes, n, &box.left, &box.right, &box.top, &box.bottom);
    NuvContourCenter(start.x, start.y, codes, n, centre_x, centre_y);
  };
  for (int64_t y = static_cast<int64_t>(top) + 1; y < bottom; y += std::max(y_step, 1)) {
    scan_row_for_contours(image, static_cast<int32_t>(y), left + 1, right - 1, measure);
  }
  restore_binary(image, region.clamped_to(image.width, image.height));
  *rect = box;
  return best;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t Nuv255RectWithMaxArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                              int32_t x1, int32_t x2, int32_t y1, int32_t y2, int32_t yStep, tagRECT* pRect,
                              int32_t* pX, int32_t* pY) {
  return largest_contour({pBinImg, width, height}, pChainCode, {x1, x2, y1, y2}, yStep, &Size::area, pRect,
                         pX, pY);
}

int32_t Nuv255RectWithMaxPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                   int32_t x1, int32_t x2, int32_t y1, int32_t y2, int32_t yStep,
                                   tagRECT* pRect, int32_t* pX, int32_t* pY) {
  return largest_contour({pBinImg, width, height}, pChainCode, {x1, x2, y1, y2}, yStep, &Size::perimeter,
                         pRect, pX, pY);
}
