// The difference of two rows of bytes.

#include "statistics/difference.h"

#include <cstdlib>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

// GCC turns the plain loop into the instruction for sums of absolute differences, but clang does not. For clang,
// two 16-bit sums count the words of the differences and their upper bytes. The word low + 256*high minus
// 255*high is the sum of its two bytes.
NUV_ROW_KERNEL int32_t sum_of_differences(const uint8_t* a, const uint8_t* b, std::ptrdiff_t n) {
  int32_t sum = 0;
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES && defined(__clang__)
  constexpr std::ptrdiff_t kMostSteps = 65535 / (2 * 255);
  while (n - i >= 32) {
    const std::ptrdiff_t whole = (n - i) / 32;
    const std::ptrdiff_t end = i + 32 * (whole < kMostSteps ? whole : kMostSteps);
    UnsignedShorts16 words = {};
    UnsignedShorts16 high_bytes = {};
    for (; i < end; i += 32) {
      Bytes32 least;
      Bytes32 most;
      load32(a + i, least);
      load32(b + i, most);
      order(least, most);
      const auto pairs = reinterpret_cast<UnsignedShorts16>(most - least);
      words += pairs;
      high_bytes += pairs >> 8;
    }
    words -= 255 * high_bytes;
    for (int k = 0; k < 16; ++k) sum += words[k];
  }
#endif
  for (; i < n; ++i) sum += std::abs(a[i] - b[i]);
  return sum;
}

}  // namespace nuv
