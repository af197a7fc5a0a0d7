// Functions that several analyses of a histogram use.

#ifndef NUV_HISTOGRAM_HISTOGRAM_H
#define NUV_HISTOGRAM_HISTOGRAM_H

#include <cstdint>

#include "core/byte_counter.h"

namespace nuv {

// The sum of all bins.
int32_t total(const int32_t* bins);

// How a walk from bin 255 downward compares its running count with the limit that ends it.
enum class Reach { kReaches, kExceeds };

// The first value, from 255 downward, at which the running count reaches or exceeds the limit; -1 if none
// does.
int32_t first_from_above(const int32_t* bins, int32_t limit, Reach reach);

// The median, by the rule of NuvGetMedianInHistogram, of n values that are counted in bins. Bins below first
// are empty.
int32_t median_bin(const int32_t* bins, int32_t n, int32_t first);

}  // namespace nuv

#endif
