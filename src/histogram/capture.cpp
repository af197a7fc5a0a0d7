// Histogram capture. One counter counts the bytes that each function selects.

#include <algorithm>

#include "core/byte_counter.h"
#include "core/views.h"
#include "nuv/histogram.h"

using namespace nuv;

void NuvGetHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pHistogram) {
  std::copy_n(histogram_of({pGryImg, width, height}).begin(), kBins, pHistogram);
}

void NuvGetHistogramInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                           int32_t* pHistogram) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  std::copy_n(histogram_of(image, {x1, x2, y1, y2}).begin(), kBins, pHistogram);
}

void NuvGetHistogramByMasked(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t x1, int32_t x2,
                             int32_t y1, int32_t y2, int32_t* pHistogram) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  const GrayImage mask = image_of_any_height<1>(pMskImg, width);
  ByteCounter counter;
  const Region region{x1, x2, y1, y2};
  if (!region.empty()) {
    for (int32_t y = y1; y <= y2; ++y) {
      counter.add_masked(image.at(x1, y), mask.at(x1, y), region.columns());
    }
  }
  counter.store_to(pHistogram);
}

void NuvGetHistogramByLimited(uint8_t* pGryImg, int32_t width, int32_t y1, int32_t y2, int32_t* pLeft,
                              int32_t* pRight, int32_t* pHistogram) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  ByteCounter counter;
  for (int32_t y = y1; y <= y2; ++y) {
    // The right limit is exclusive, unlike the ends of a region.
    if (pLeft[y] < pRight[y]) counter.add(image.at(pLeft[y], y), pRight[y] - pLeft[y]);
  }
  counter.store_to(pHistogram);
}
