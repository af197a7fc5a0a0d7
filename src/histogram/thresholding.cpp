// Binarising.
//
// One row kernel compares the pixels of a region with T and writes the result to the same place in the source
// or in another image. The exports differ in the region, in the destination and in the source of T. The
// functions with a ratio share one scan of the histogram and differ as follows:
//
//                          share clamped   T raised                      T returned
//     ByPercent            no              0 to 1, percent below 50      -
//     ByRatio              yes             0 to 1, ratio below 0.5       as applied
//     ByRatio with minT    yes             to minT                       as found
//     ByRatioAndMiniT      yes             to minT                       as applied

#include <algorithm>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void threshold_row(const uint8_t* in, uint8_t* out, std::ptrdiff_t n, uint8_t threshold,
                                  uint8_t low, uint8_t high) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = in[x] >= threshold ? high : low;
}

struct TwoLevels {
  int32_t threshold;
  uint8_t low = 0;
  uint8_t high = 255;

  void apply(const uint8_t* in, uint8_t* out, std::ptrdiff_t n) const {
    if (threshold > 0 && threshold <= 255) {
      threshold_row(in, out, n, static_cast<uint8_t>(threshold), low, high);
    } else {
      fill_bytes(out, threshold <= 0 ? high : low, n);
    }
  }
};

void binarise(GrayImage source, GrayImage result, TwoLevels levels) {
  levels.apply(source.pixels, result.pixels, source.size());
}

void binarise(GrayImage source, GrayImage result, Region region, TwoLevels levels) {
  if (region.empty()) return;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    levels.apply(source.at(region.x1, y), result.at(region.x1, y), region.columns());
  }
}

// The threshold that leaves at most share pixels above it.
int32_t threshold_for_share(const Histogram& bins, int32_t share) {
  return walk_down(bins.data(), share, Reach::kExceeds).value;
}

struct RatioThreshold {
  int32_t found;
  bool few_white;  // fewer than half of the pixels are requested to become white

  // A threshold of 0 would make black pixels white.
  int32_t raised_from_black() const { return few_white && found == 0 ? 1 : found; }
};

RatioThreshold threshold_for_ratio(const Histogram& bins, int32_t pixels, double ratio) {
  if (ratio < 0) ratio = 0;
  if (ratio > 1) ratio = 1;
  return {threshold_for_share(bins, truncated(pixels * ratio)), ratio < 0.5};
}

RatioThreshold threshold_for_ratio(GrayImage image, double ratio) {
  return threshold_for_ratio(histogram_of(image), image.width * image.height, ratio);
}

RatioThreshold threshold_for_ratio(uint8_t* pixels, int32_t width, Region region, double ratio) {
  const Histogram bins = histogram_of(image_of_any_height<1>(pixels, width), region);
  return threshold_for_ratio(bins, region.columns() * region.rows(), ratio);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T) {
  NuvThreshold(pGryImg, width, height, T, pGryImg);
}

void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg) {
  binarise({pGryImg, width, height}, {pResImg, width, height}, {T});
}

void NuvThreshold2V1V2(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t v1, int32_t v2) {
  const GrayImage image{pGryImg, width, height};
  binarise(image, image, {T, low_byte(v1), low_byte(v2)});
}

void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                        int32_t T) {
  NuvThresholdInRect(pGryImg, width, x1, x2, y1, y2, T, pGryImg);
}

void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                        int32_t T, uint8_t* pResImg) {
  binarise(image_of_any_height<1>(pGryImg, width), image_of_any_height<1>(pResImg, width), {x1, x2, y1, y2},
           {T});
}

void NuvThresholdAndShrink(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t step,
                           uint8_t* pResImg, int32_t* pNewWidth, int32_t* pNewHeight) {
  step = std::max(step, 1);
  *pNewWidth = width / step;
  *pNewHeight = height / step;
  if (step == 1) {
    NuvThreshold(pGryImg, width, height, T, pResImg);
    return;
  }
  const GrayImage source{pGryImg, width, height};
  for (int64_t y = 0; y < height; y += step) {
    for (int64_t x = 0; x < width; x += step) {
      const uint8_t pixel = *source.at(static_cast<int32_t>(x), static_cast<int32_t>(y));
      *pResImg++ = pixel >= T ? 255 : 0;
    }
  }
}

void NuvThresholdByPercent(uint8_t* pGryImg, int32_t width, int32_t height, int32_t percent) {
  const int32_t share = width * height * percent / 100;
  const RatioThreshold threshold{threshold_for_share(histogram_of({pGryImg, width, height}), share),
                                 percent < 50};
  NuvThreshold(pGryImg, width, height, threshold.raised_from_black());
}

int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio) {
  return NuvThresholdByRatio(pGryImg, width, height, ratio, pGryImg);
}

int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio, uint8_t* pResImg) {
  const int32_t threshold = threshold_for_ratio({pGryImg, width, height}, ratio).raised_from_black();
  NuvThreshold(pGryImg, width, height, threshold, pResImg);
  return threshold;
}

int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                            double ratio) {
  const int32_t threshold = threshold_for_ratio(pGryImg, width, {x1, x2, y1, y2}, ratio).raised_from_black();
  NuvThresholdInRect(pGryImg, width, x1, x2, y1, y2, threshold);
  return threshold;
}

int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                            double ratio, int32_t minT, uint8_t* pResImg) {
  const int32_t found = threshold_for_ratio(pGryImg, width, {x1, x2, y1, y2}, ratio).found;
  NuvThresholdInRect(pGryImg, width, x1, x2, y1, y2, std::max(found, minT), pResImg);
  return found;
}

int32_t NuvThresholdByRatioAndMiniT(uint8_t* pGryImg, int32_t width, int32_t height, double ratio,
                                    int32_t minT) {
  const int32_t threshold = std::max(threshold_for_ratio({pGryImg, width, height}, ratio).found, minT);
  NuvThreshold(pGryImg, width, height, threshold);
  return threshold;
}
