// Medians of small windows by networks of comparisons, for whole rows at once.

#ifndef NUV_FILTERS_MEDIAN_NETWORKS_H
#define NUV_FILTERS_MEDIAN_NETWORKS_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// Writes the medians of n windows of 3 by 3. The first one is centred at p; rows are w bytes apart.
void medians_3x3(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);
// Writes the medians of n windows of 5 by 5.
void medians_5x5(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);

}  // namespace nuv

#endif
