// Thresholds chosen from a histogram.

#include <algorithm>
#include <array>
#include <cmath>

#include "core/arithmetic.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// The index of the most frequent of n gray values; ties go to the first.
int32_t most_frequent(const std::array<int32_t, kBins>& levels, int32_t n, const int32_t* bins) {
  int32_t best = 0;
  for (int32_t p = 1; p < n; ++p) {
    if (bins[levels[p]] > bins[levels[best]]) best = p;
  }
  return best;
}

// Clusters of the gray values. The sums of a cluster are never cleared between passes. Its centre therefore
// moves less from pass to pass, and that ends the passes.
class Clusters {
 public:
  Clusters(const int32_t* bins, double* centres, int32_t k) : bins_(bins), centres_(centres), k_(k) {}

  // Makes one pass over the gray values. Returns whether a centre has moved by more than eps relative to its new
  // place.
  bool pass(double eps) {
    std::array<double, kBins> before{};
    std::copy_n(centres_, k_, before.begin());
    for (int32_t v = 0; v < kBins; ++v) {
      if (bins_[v] != 0) join(nearest(v), v);
    }
    for (int32_t j = 0; j < k_; ++j) {
      const double moved = centres_[j] == 0 ? before[j] : std::fabs(centres_[j] - before[j]) / centres_[j];
      if (moved > eps) return true;
    }
    return false;
  }

 private:
  int32_t nearest(int32_t v) const {
    int32_t best = 0;
    double least = std::fabs(centres_[0] - v);
    for (int32_t j = 1; j < k_; ++j) {
      const double distance = std::fabs(centres_[j] - v);
      if (distance < least) {
        least = distance;
        best = j;
      }
    }
    return best;
  }

  // Moves the centre at once, so that the next gray value is compared with its new place.
  void join(int32_t j, int32_t v) {
    count_[j] += bins_[v];
    sum_[j] += bins_[v] * v;
    centres_[j] = static_cast<double>(sum_[j]) / count_[j];
  }

  const int32_t* bins_;
  double* centres_;
  int32_t k_;
  std::array<int32_t, kBins> count_{};
  std::array<int32_t, kBins> sum_{};
};

// The limit of passes. Moves shrink with the square of the number of passes, so that centres normally come to
// rest well before it. Sums that wrap, or rounding for an eps below 1e-12, could keep them moving for ever.
int32_t most_passes(double eps) {
  constexpr double kLeast = 100000.0;
  return static_cast<int32_t>(eps < 1e-12 ? kLeast : std::max(kLeast, 100 / std::sqrt(eps)));
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGetOtsuThreshold(int32_t* pHistogram, int32_t nSize) {
  const int32_t lo = first_occupied(pHistogram, nSize);
  if (lo >= nSize) return 0;
  const int32_t hi = last_occupied(pHistogram, nSize);
  if (lo >= hi) return 0;

  // Bin hi is left out of all sums.
  int32_t all = 0;
  int32_t front_sum = 0;
  for (int32_t t = lo; t < hi; ++t) {
    all += pHistogram[t];
    front_sum += t * pHistogram[t];
  }
  int32_t front = all;
  int32_t back = 0;
  int32_t back_sum = 0;
  double best = 0.0;
  int32_t threshold = 0;
  for (int32_t t = lo; t < hi; ++t) {
    if (pHistogram[t] == 0) continue;
    back += pHistogram[t];
    back_sum += t * pHistogram[t];
    front -= pHistogram[t];
    front_sum -= t * pHistogram[t];
    const double d = static_cast<double>(back_sum) / back - static_cast<double>(front_sum) / front;
    const double variance = static_cast<double>(back) / all * (d * d) * (static_cast<double>(front) / all);
    if (variance > best) {  // false for an empty front, where variance is not a number
      best = variance;
      threshold = t;
    }
  }
  return threshold;
}

int32_t NuvGetThresholdByRatio(int32_t* pHistogram, double ratio) {
  return walk_down(pHistogram, truncated(total(pHistogram) * ratio), Reach::kReaches).value;
}

void NuvGetThresholdLimit(int32_t* pHistogram, double k, int32_t* pMinT, int32_t* pMaxT) {
  double avr = 0.0;
  double dev = 0.0;
  NuvGetImageAvrAndDev(pHistogram, &avr, &dev);
  const double low = avr - k * dev;
  const double high = avr + k * dev;
  *pMinT = truncated(low < 0 ? 0 : low);
  *pMaxT = high > 255 ? 255 : truncated(high);
}

int32_t NuvGetDifImgThreshold(int32_t* pHistogram) {
  const int32_t half = truncated(total(pHistogram) * 0.5 + 0.5);
  const auto [value, count] = walk_up(pHistogram, half, Reach::kReaches);
  double median = value;
  if (count > half && value > 0 && value < kBins) {
    median -= static_cast<double>(count - half) / pHistogram[value];
  }
  return truncated(median / 0.67 * 3.0 + 0.5);
}

bool NuvGetDifImgThreshold(int32_t* pHistogram, int32_t /*nIgnored*/, int32_t maxT, int32_t* pThreshold) {
  *pThreshold = 0;
  for (int32_t i = 1; i <= std::min(maxT, 250); ++i) {
    if (pHistogram[i] == 0) continue;
    int32_t left = i - 1;
    while (left > 0 && pHistogram[left] == 0) --left;
    if (left == 0 || pHistogram[i] > pHistogram[left]) continue;
    const int32_t right = i + 1;
    if (pHistogram[right] == 0) continue;  // a valley needs an occupied neighbour on its right
    if (pHistogram[i] <= pHistogram[right]) {
      *pThreshold = i;
      return true;
    }
  }
  return false;
}

bool NuvClusterHistogram(int32_t* pHistogram, int32_t nClusters, double eps, double* pCentres) {
  if (nClusters < 2) return false;
  std::array<int32_t, kBins> levels{};
  int32_t n = 0;
  for (int32_t v = 0; v < kBins; ++v) {
    if (pHistogram[v] != 0) levels[n++] = v;
  }
  if (n == 0) return true;
  const int32_t k = std::min(nClusters, n);
  int32_t seed = most_frequent(levels, n, pHistogram);
  for (int32_t j = 0; j < k; ++j) {
    pCentres[j] = levels[seed];
    seed = (seed + n / k) % n;
  }
  Clusters clusters(pHistogram, pCentres, k);
  const int32_t limit = most_passes(eps);
  for (int32_t pass = 0; pass < limit && clusters.pass(eps); ++pass) {}
  return true;
}
