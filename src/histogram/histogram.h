// Sums of a histogram and walks over its bins.

#ifndef NUV_HISTOGRAM_HISTOGRAM_H
#define NUV_HISTOGRAM_HISTOGRAM_H

#include <cstdint>

#include "core/byte_counter.h"

namespace nuv {

// The sum of all bins.
int32_t total(const int32_t* bins);

// The first and the last of n bins that is not 0. If all are 0, the first is n and the last -1.
inline int32_t first_occupied(const int32_t* bins, int32_t n = kBins) {
  int32_t v = 0;
  while (v < n && bins[v] == 0) ++v;
  return v;
}
inline int32_t last_occupied(const int32_t* bins, int32_t n = kBins) {
  int32_t v = n - 1;
  while (v >= 0 && bins[v] == 0) --v;
  return v;
}

// How a walk over the bins compares its running count with the limit that ends it.
enum class Reach { kReaches, kExceeds };

// Where a walk ended: the value, and the running count up to it. If the limit was not met, the value is the
// one after the last: 256 or -1.
template <class Count>
struct WalkEnd {
  int32_t value;
  Count count;
};

// Both functions walk to the first value at which the running count reaches or exceeds the limit, from a
// value upward or from 255 downward. Counts of 32 bits wrap.
template <class Count = int32_t>
WalkEnd<Count> walk_up(const int32_t* bins, int32_t limit, Reach reach, int32_t first = 0) {
  Count count = 0;
  for (int32_t v = first; v < kBins; ++v) {
    count += bins[v];
    if (reach == Reach::kReaches ? count >= limit : count > limit) return {v, count};
  }
  return {kBins, count};
}
template <class Count = int32_t>
WalkEnd<Count> walk_down(const int32_t* bins, int32_t limit, Reach reach) {
  Count count = 0;
  for (int32_t v = kBins - 1; v >= 0; --v) {
    count += bins[v];
    if (reach == Reach::kReaches ? count >= limit : count > limit) return {v, count};
  }
  return {-1, count};
}

// The median, by the rule of NuvGetMedianInHistogram, of n values that are counted in bins. Bins below first
// are empty.
int32_t median_bin(const int32_t* bins, int32_t n, int32_t first);

}  // namespace nuv

#endif
