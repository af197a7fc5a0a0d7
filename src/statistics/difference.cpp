// The difference of two rows of bytes.

#include "statistics/difference.h"

#include <cstdlib>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

#if NUV_HAS_LANES && defined(__clang__)
// Adds up the differences of whole vectors from i on, and moves i past them. Two 16-bit sums count the words of the
// differences and their upper bytes. The word low + 256*high minus 255*high is the sum of its two bytes.
template <class Words>
NUV_INLINE int32_t sum_of_differences_by(const uint8_t* a, const uint8_t* b, std::ptrdiff_t& i,
                                         std::ptrdiff_t n) {
  constexpr std::ptrdiff_t kStep = sizeof(Words);
  constexpr std::ptrdiff_t kMostSteps = 65535 / (2 * 255);
  int32_t sum = 0;
  while (n - i >= kStep) {
    const std::ptrdiff_t whole = (n - i) / kStep;
    const std::ptrdiff_t end = i + kStep * (whole < kMostSteps ? whole : kMostSteps);
    Words words = {};
    Words high_bytes = {};
    for (; i < end; i += kStep) {
      Bytes<kStep> least;
      Bytes<kStep> most;
      load(a + i, least);
      load(b + i, most);
      order(least, most);
      const auto pairs = reinterpret_cast<Words>(most - least);
      words += pairs;
      high_bytes += pairs >> 8;
    }
    words -= 255 * high_bytes;
    for (int k = 0; k < kStep / 2; ++k) sum += words[k];
  }
  return sum;
}
#endif

// GCC turns the plain loop into the instruction for sums of absolute differences, but clang does not.
NUV_ROW_KERNEL int32_t sum_of_differences(const uint8_t* a, const uint8_t* b, std::ptrdiff_t n) {
  int32_t sum = 0;
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES && defined(__clang__)
  sum = sum_of_differences_by<UnsignedShorts16>(a, b, i, n);
  sum += sum_of_differences_by<UnsignedShorts8>(a, b, i, n);
#endif
  for (; i < n; ++i) sum += std::abs(a[i] - b[i]);
  return sum;
}

}  // namespace nuv
