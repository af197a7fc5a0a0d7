// Smooths, orders and searches histograms, and measures the contrast between two modes.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "core/arithmetic.h"
#include "core/window_sums.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// ---- Gaussian smoothing ----

constexpr int32_t kKernelScale = 1024;

// The centre and one side of a Gaussian, up to the first value below the cutoff.
struct HalfKernel {
  std::array<int32_t, kBins> weights{};
  int32_t size = 1;

  HalfKernel(double sigma, double cutoff) {
    weights[0] = kKernelScale;
    for (int32_t i = 1; i < kBins; ++i) {
      const double g = std::exp(-i * i / (2 * sigma * sigma));
      if (g < cutoff) break;
      weights[i] = truncated(g * kKernelScale + 0.5);
      size = i + 1;
    }
  }

  int32_t centre_and_one_side() const { return std::accumulate(weights.begin(), weights.begin() + size, 0); }
};

// A stretch of bins. Positions count from its first bin.
struct BinStretch {
  const int32_t* bins;
  int32_t length;
};

// The divisor holds the weights of the centre and one side only, so these bins are amplified.
int32_t smoothed_in_the_middle(const BinStretch& h, int32_t t, const HalfKernel& kernel, int32_t divisor) {
  int32_t sum = kernel.weights[0] * h.bins[t];
  for (int32_t k = 1; k < kernel.size; ++k) sum += kernel.weights[k] * (h.bins[t - k] + h.bins[t + k]);
  return sum / divisor;
}

// The divisor holds the weights of those bins that lie in the stretch.
int32_t smoothed_near_an_end(const BinStretch& h, int32_t t, const HalfKernel& kernel) {
  int32_t sum = kernel.weights[0] * h.bins[t];
  int32_t weight = kernel.weights[0];
  for (int32_t k = 1; k < kernel.size; ++k) {
    if (t + k < h.length) {
      sum += kernel.weights[k] * h.bins[t + k];
      weight += kernel.weights[k];
    }
    if (t - k >= 0) {
      sum += kernel.weights[k] * h.bins[t - k];
      weight += kernel.weights[k];
    }
  }
  return sum / weight;
}

// ---- peaks and valleys ----

// Makes one scan over the slopes. A slope of the given sign is a rise. When a fall or the end of the data
// follows a rise, a mark is placed at the last rise, or half way from there to the last flat if that comes
// after it. Before the first flat, the flat counts as at the end of the data. A mark that is placed ahead of
// the scan is read as a slope when the scan reaches it.
void mark_turns(int32_t* marks, int32_t n, int32_t sign, int32_t mark) {
  int32_t flat = n;
  int32_t rise = n;
  bool rising = false;
  const auto close = [&] {
    if (rising) marks[flat > rise ? (rise + flat) / 2 : rise] = mark;
    rising = false;
  };
  for (int32_t i = 0; i < n; ++i) {
    if (marks[i] == 0) {
      flat = i;
    } else if ((marks[i] > 0) == (sign > 0)) {
      rising = true;
      rise = i;
    } else {
      close();
    }
  }
  close();
}

constexpr int32_t kPeak = 100;

// The greatest bin among those for which accept() is true; ties go to the first. -1 if none of them is
// positive.
template <class Accept>
int32_t greatest_bin(const int32_t* bins, Accept accept) {
  int32_t best = -1;
  int32_t most = 0;
  for (int32_t i = 0; i < kBins; ++i) {
    if (accept(i) && bins[i] > most) {
      most = bins[i];
      best = i;
    }
  }
  return best;
}

// ---- contrast ----

// The means of windows. Half a window at each end keeps its counts. The entry at 255 - half belongs to
// neither part and is 0. From a window of 257 bins on, all entries keep their counts.
Histogram windowed_means(const int32_t* bins, int32_t window) {
  const int32_t half = window / 2;
  Histogram means{};
  for (int32_t i = 0; i < kBins; ++i) {
    if (i < half || i >= kBins - half) means[i] = bins[i];
  }
  for (int32_t i = 0; i < kBins - window; ++i) {
    means[half + i] = std::accumulate(bins + i, bins + i + window, 0) / window;
  }
  return means;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvHistogramGaussianSmooth(int32_t* pHistogram, int32_t /*nIgnored*/, double sigma, double cutoff,
                                   int32_t* pResHistogram) {
  const int32_t first = first_occupied(pHistogram);
  const int32_t last = last_occupied(pHistogram);
  std::copy_n(pHistogram, kBins, pResHistogram);
  if (first == kBins) return 0;

  const HalfKernel kernel(sigma, cutoff);
  const int32_t n = kernel.size;
  const int32_t low = std::max(first - n, 0);
  const int32_t high = std::min(last + n, kBins - 1);
  const BinStretch h{pHistogram + low, high - low + 1};
  const int32_t divisor = kernel.centre_and_one_side();
  int32_t* result = pResHistogram + low;
  for (int32_t t = n; t < h.length - n; ++t) result[t] = smoothed_in_the_middle(h, t, kernel, divisor);
  for (int32_t t = 0; t < n; ++t) result[t] = smoothed_near_an_end(h, t, kernel);
  for (int32_t t = h.length - n; t < h.length; ++t) result[t] = smoothed_near_an_end(h, t, kernel);
  return last - first;
}

void NuvHistogramAverageSmooth(int32_t* pHistogram, int32_t M, int32_t* pResHistogram) {
  int32_t prefix[kBins + 1];
  accumulate(pHistogram, kBins, prefix);
  const int32_t reach = std::clamp(M, -1, kBins);
  for (int32_t j = 0; j < kBins; ++j) {
    const int32_t begin = std::max(j - reach, 0);
    const int32_t end = std::min(j + reach, kBins - 1) + 1;
    const int32_t sum = begin < end ? prefix[end] - prefix[begin] : 0;
    pResHistogram[j] = sum == 0 ? 0 : sum / (end - begin);
  }
}

void NuvSetPeakTo100ValleyTo_100(int32_t* pData, int32_t N, int32_t* pMarks) {
  if (N < 1) return;
  int32_t previous = pData[N < 2 ? 0 : 1];  // element 0 is compared with element 1
  for (int32_t i = 0; i < N; ++i) {
    pMarks[i] = pData[i] > previous ? 1 : pData[i] == previous ? 0 : -1;
    previous = pData[i];
  }
  mark_turns(pMarks, N, 1, kPeak);
  mark_turns(pMarks, N, -1, -kPeak);
}

void NuvFindTwoPeaks(int32_t* pHistogram, int32_t minDist, int32_t* pPeak1, int32_t* pPeak2) {
  Histogram marks;
  NuvSetPeakTo100ValleyTo_100(pHistogram, kBins, marks.data());
  const int32_t first = greatest_bin(pHistogram, [&](int32_t i) { return marks[i] == kPeak; });
  if (first >= 0) *pPeak1 = first;
  *pPeak2 = *pPeak1;
  const int64_t from = *pPeak1;
  const int32_t second =
      greatest_bin(pHistogram, [&](int32_t i) { return marks[i] == kPeak && std::abs(i - from) >= minDist; });
  if (second >= 0) *pPeak2 = second;
}

int32_t NuvHistogramOrder(int32_t* pHistogram, int32_t* pOrder) {
  Histogram counts;
  std::copy_n(pHistogram, kBins, counts.begin());
  std::iota(pOrder, pOrder + kBins, 0);
  // An exchange sort, because the required order of equal counts is the one that it leaves.
  for (int32_t i = 0; i < kBins; ++i) {
    for (int32_t j = i + 1; j < kBins; ++j) {
      if (counts[i] < counts[j]) {
        std::swap(counts[i], counts[j]);
        std::swap(pOrder[i], pOrder[j]);
      }
    }
  }
  return static_cast<int32_t>(std::count_if(counts.begin(), counts.end(), [](int32_t c) { return c != 0; }));
}

bool NuvIsHighContrastImg(int32_t* pHistogram, int32_t T, int32_t M, int32_t minDist, double ratio,
                          int32_t* pLeftPeak, int32_t* pRightPeak, double* pContrast) {
  *pContrast = 0;
  *pLeftPeak = 0;
  *pRightPeak = 0;
  const int32_t window = std::max(M, 0) / 2 * 2 + 1;
  const Histogram means = windowed_means(pHistogram, window);

  // One peak on each side of T. Both scans start at T, so that ties go to the bin nearest to it.
  int32_t left = kBins - window;
  int32_t most = 0;
  for (int32_t i = std::min(T, kBins - 1); i >= 1; --i) {
    if (means[i] > most) {
      most = means[i];
      left = i;
    }
  }
  int32_t right = kBins - window;
  most = 0;
  for (int32_t i = std::max(T, 0); i < kBins; ++i) {
    if (means[i] > most) {
      most = means[i];
      right = i;
    }
  }
  *pLeftPeak = left;
  *pRightPeak = right;
  if (right - left < minDist) return false;

  // A missing peak is at a negative bin if the window is longer than the histogram.
  const auto height = [&means](int32_t bin) { return bin < 0 ? 0 : means[bin]; };
  double area = 0.0;
  for (int32_t i = std::max(left, 0); i <= right; ++i) area += means[i];
  const double trapezoid = (height(left) + height(right)) * 0.5 * (right - left + 1);
  *pContrast = (trapezoid - area) / area;
  return ratio <= *pContrast;
}
