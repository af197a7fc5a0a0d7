// Sums of bytes. The two bytes of a word are added to a 16-bit sum, sixteen words at once. The sums are added
// up in 32 bits before they can wrap.

#include "core/byte_sums.h"

#include "core/point_pass.h"

#include <algorithm>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

NUV_ROW_KERNEL int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n) {
  int32_t sum = 0;
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES
  using Words = uint16_t __attribute__((vector_size(32)));
  constexpr std::ptrdiff_t kMostSteps = 65535 / (2 * 255);
  while (n - i >= 32) {
    const std::ptrdiff_t whole = (n - i) / 32;
    const std::ptrdiff_t end = i + 32 * (whole < kMostSteps ? whole : kMostSteps);
    Words sums = {};
    for (; i < end; i += 32) {
      Bytes32 lanes;
      load32(bytes + i, lanes);
      const auto pairs = reinterpret_cast<Words>(lanes);
      sums += (pairs & 255) + (pairs >> 8);
    }
    for (int k = 0; k < 16; ++k) sum += sums[k];
  }
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
