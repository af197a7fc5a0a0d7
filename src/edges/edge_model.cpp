// The histogram of the gray values at the two sides of edges.

#include <algorithm>
#include <cstdlib>

#include "core/byte_counter.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/edges.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

constexpr uint8_t kEdge = 200;

// Samples one row. marks is its row of the result: 200 or above on edges, increased by 1 per sample.
class RowSampler {
 public:
  RowSampler(const uint8_t* pixels, uint8_t* marks, int32_t width, int64_t window, int32_t threshold,
             int32_t* bins)
      : pixels_(pixels), marks_(marks), width_(width), window_(window), threshold_(threshold), bins_(bins) {}

  // Samples around a run of edge pixels, both ends inclusive.
  void sample(int32_t start, int32_t end) {
    if (pixels_[start] - pixels_[end] >= threshold_) {
      sample_in_pairs(start, end);
    } else {
      sample_around((start + end) / 2);
    }
  }

 private:
  void take(int64_t x) {
    ++bins_[pixels_[x]];
    ++marks_[x];
  }

  // A falling run: samples pairs outwards, beginning a window apart, while the two pixels differ by the
  // threshold or more.
  void sample_in_pairs(int32_t start, int32_t end) {
    const int64_t outwards = (start - end + window_ - 1) / 2;
    const int64_t left = start - outwards;
    const int64_t right = end + outwards;
    const int64_t limit = std::min(left, width_ - right - 1);
    for (int64_t k = 0; k < limit; ++k) {
      if (std::abs(pixels_[left - k] - pixels_[right + k]) < threshold_) return;
      take(left - k);
      take(right + k);
    }
  }

  // Any other run: samples on each side the first pixel, a window away or more, that differs from the middle
  // by more than the threshold.
  void sample_around(int32_t middle) {
    const auto differs = [this, middle](int64_t x) {
      return std::abs(pixels_[x] - pixels_[middle]) > threshold_;
    };
    for (int64_t x = middle - window_; x >= 1; --x) {
      if (!differs(x)) continue;
      take(middle);
      take(x);
      break;
    }
    for (int64_t x = middle + window_; x < width_; ++x) {
      if (!differs(x)) continue;
      take(middle);
      take(x);
      break;
    }
  }

  const uint8_t* pixels_;
  uint8_t* marks_;
  int32_t width_;
  int64_t window_;
  int32_t threshold_;
  int32_t* bins_;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvEdgeModelHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t T,
                           int32_t* pHistogram, uint8_t* pResImg) {
  Histogram ranges;
  const int32_t half = std::max(M, 0);
  NuvEdgeTripeDetection(pGryImg, width, height, half, 1, pResImg, ranges.data());
  NuvThreshold2V1V2(pResImg, width, height, T, 0, kEdge);

  Histogram bins{};
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  for (int32_t y = 0; y < height && !source.empty(); ++y) {
    uint8_t* marks = result.row(y);
    RowSampler sampler(source.row(y), marks, width, 2 * int64_t{half} + 1, T, bins.data());
    // Each run is found in the marks as the samples of earlier runs leave them.
    for_bright_runs({marks, width, 1}, kEdge, kEdge,
                    [&sampler](int32_t start, int32_t end) { sampler.sample(start, end); });
  }
  std::copy(bins.begin(), bins.end(), pHistogram);
}
