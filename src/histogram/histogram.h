// What the analyses of a histogram share.

#ifndef NUV_HISTOGRAM_HISTOGRAM_H
#define NUV_HISTOGRAM_HISTOGRAM_H

#include <cstdint>

#include "core/byte_counter.h"

namespace nuv {

int32_t total(const int32_t* bins);

// How the walks from above compare a running count with the limit that ends them.
enum class Reach { kReaches, kExceeds };

// The first value from 255 down at which the running count reaches or exceeds a limit; -1 if it never does.
int32_t first_from_above(const int32_t* bins, int32_t limit, Reach reach);

// The median of n values that are counted in bins, none of them before the first bin.
int32_t median_bin(const int32_t* bins, int32_t n, int32_t first);

}  // namespace nuv

#endif
