// Sums of bytes. The two bytes of a word are added to a 16-bit sum, as many words at once as a vector has. The sums are added
// up in 32 bits before they can wrap.

#include "core/byte_sums.h"

#include "core/point_pass.h"

#include <algorithm>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

#if NUV_HAS_LANES
// Adds up whole vectors of bytes from i on, and moves i past them.
template <class Words>
NUV_INLINE int32_t sum_of_bytes_by(const uint8_t* bytes, std::ptrdiff_t& i, std::ptrdiff_t n) {
  constexpr std::ptrdiff_t kStep = sizeof(Words);
  constexpr std::ptrdiff_t kMostSteps = 65535 / (2 * 255);
  int32_t sum = 0;
  while (n - i >= kStep) {
    const std::ptrdiff_t whole = (n - i) / kStep;
    const std::ptrdiff_t end = i + kStep * (whole < kMostSteps ? whole : kMostSteps);
    Words sums = {};
    for (; i < end; i += kStep) {
      Bytes<kStep> lanes;
      load(bytes + i, lanes);
      const auto pairs = reinterpret_cast<Words>(lanes);
      sums += (pairs & 255) + (pairs >> 8);
    }
    for (int k = 0; k < kStep / 2; ++k) sum += sums[k];
  }
  return sum;
}
#endif

NUV_ROW_KERNEL int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n) {
  int32_t sum = 0;
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES
  sum = has_wide_lanes() ? sum_of_bytes_by<UnsignedShorts16>(bytes, i, n)
                         : sum_of_bytes_by<UnsignedShorts8>(bytes, i, n);
#endif
  for (; i < n; ++i) sum += bytes[i];
  return sum;
}

int32_t sum_of_region(GrayImage image, Region region) {
  int32_t sum = 0;
  for_rows(image, region,
           [&sum](const uint8_t* pixels, std::ptrdiff_t n) { sum += sum_of_bytes(pixels, n); });
  return sum;
}

}  // namespace nuv
