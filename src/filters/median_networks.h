// Medians of small windows by networks of comparisons, for whole rows at once.

#ifndef NUV_FILTERS_MEDIAN_NETWORKS_H
#define NUV_FILTERS_MEDIAN_NETWORKS_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// The medians of n windows of 3 by 3, the first one centred at p; rows are w apart.
void medians_3x3(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);
// The same of 5 by 5.
void medians_5x5(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);

}  // namespace nuv

#endif
