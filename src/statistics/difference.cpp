// The difference of two rows of bytes. Compilers turn this form of the loop into the instruction for sums of
// absolute differences.

#include "statistics/difference.h"

#include <cstdlib>

#include "core/row_kernel.h"

namespace nuv {

NUV_ROW_KERNEL int32_t sum_of_differences(const uint8_t* a, const uint8_t* b, std::ptrdiff_t n) {
  int32_t sum = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) sum += std::abs(a[i] - b[i]);
  return sum;
}

}  // namespace nuv
