// Order statistics of a histogram. Most are walks over the bins that stop where a running count passes a
// limit.

#include <algorithm>

#include "core/arithmetic.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// A bin after the last one counts as empty.
int32_t count_at(const int32_t* bins, int32_t v) {
  return v < kBins ? bins[v] : 0;
}

}  // namespace

int32_t median_bin(const int32_t* bins, int32_t n, int32_t first) {
  const int32_t half = truncated(n * 0.5 + 0.5);
  if (half <= 0) return first;
  const auto [reached, count] = walk_up(bins, half, Reach::kReaches, first);
  const int32_t next = std::min(reached + 1, kBins);
  const int32_t overshoot = count - half;
  return count_at(bins, next) - overshoot < overshoot ? next - 1 : next;
}

}  // namespace nuv

using namespace nuv;

int32_t NuvGetMedianInHistogram(int32_t* pHistogram) {
  return median_bin(pHistogram, total(pHistogram), 0);
}

int32_t NuvGetMostInHistogram(int32_t* pHistogram, int32_t* pMaxCount) {
  int32_t best = 0;
  int32_t most = 0;
  for (int32_t v = 0; v < kBins; ++v) {
    if (pHistogram[v] > most) {
      most = pHistogram[v];
      best = v;
    }
  }
  *pMaxCount = most;
  return best;
}

int32_t NuvGetMinValueInHistogram(int32_t* pHistogram, double ratio) {
  return walk_up<int64_t>(pHistogram, truncated(total(pHistogram) * ratio), Reach::kExceeds).value;
}

int32_t NuvGetMaxValueInHistogram(int32_t* pHistogram, double ratio) {
  return walk_down<int64_t>(pHistogram, truncated(total(pHistogram) * ratio), Reach::kExceeds).value;
}

int32_t NuvGetPeakInHistogram(int32_t* pHistogram) {
  int32_t count = 0;
  const int32_t first = NuvGetMostInHistogram(pHistogram, &count);
  int32_t end = first + 1;
  while (end < kBins && pHistogram[end] == pHistogram[first]) ++end;
  return truncated((first + end) * 0.5 + 0.5);
}
