// Order statistics of a histogram. Most are walks over the bins that stop where a running count passes a
// limit.

#include "core/arithmetic.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// A bin after the last one counts as empty.
int32_t count_at(const int32_t* bins, int32_t v) {
  return v < kBins ? bins[v] : 0;
}

// The first value, from first on in steps of step, whose cumulative count exceeds the share ratio of the
// total. If there is none, the value after the last one.
int32_t tail(const int32_t* bins, double ratio, int32_t first, int32_t step) {
  int64_t left = truncated(total(bins) * ratio);
  int32_t v = first;
  for (int32_t steps = 0; steps < kBins; ++steps, v += step) {
    left -= bins[v];
    if (left < 0) return v;
  }
  return v;
}

}  // namespace

int32_t first_from_above(const int32_t* bins, int32_t limit, Reach reach) {
  int32_t sum = 0;
  int32_t v = kBins - 1;
  for (; v >= 0; --v) {
    sum += bins[v];
    if (reach == Reach::kReaches ? sum >= limit : sum > limit) break;
  }
  return v;
}

int32_t median_bin(const int32_t* bins, int32_t n, int32_t first) {
  const int32_t half = truncated(n * 0.5 + 0.5);
  int32_t sum = 0;
  int32_t next = first;  // the bin after the last one summed
  while (next < kBins && sum < half) sum += bins[next++];
  if (next == first) return first;
  const int32_t overshoot = sum - half;
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
  return tail(pHistogram, ratio, 0, 1);
}

int32_t NuvGetMaxValueInHistogram(int32_t* pHistogram, double ratio) {
  return tail(pHistogram, ratio, kBins - 1, -1);
}

int32_t NuvGetPeakInHistogram(int32_t* pHistogram) {
  int32_t count = 0;
  const int32_t first = NuvGetMostInHistogram(pHistogram, &count);
  int32_t behind = first + 1;
  while (behind < kBins && pHistogram[behind] == pHistogram[first]) ++behind;
  return truncated((first + behind) * 0.5 + 0.5);
}
