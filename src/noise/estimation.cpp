// Noise measured by a mask that gives 0 on constant surfaces and on ramps. The mask is separable: it is the
// second difference along the row of the second differences along the columns.

#include <cmath>

#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/noise.h"

namespace nuv {
namespace {

// The second difference of the pixel p and its neighbours above and below.
NUV_INLINE int16_t bend(const uint8_t* p, std::ptrdiff_t w) {
  return static_cast<int16_t>(p[-w] - 2 * p[0] + p[w]);
}

// Writes the energies of n pixels from p on, and returns the sum of their squared responses.
NUV_ROW_KERNEL uint32_t energy_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                   std::ptrdiff_t n) {
  // The energy reaches its cap at this magnitude. The squares of smaller magnitudes fit in 16 bits.
  constexpr int16_t kCapped = 95;
  static_assert(kCapped * kCapped / 36 == 250 && (kCapped - 1) * (kCapped - 1) / 36 < 250);
  uint32_t sum = 0;
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const auto d = static_cast<int16_t>(bend(p - 1, w) - 2 * bend(p, w) + bend(p + 1, w));
    sum += static_cast<uint32_t>(d * d);
    const int16_t m = magnitude(d);
    const auto limited = static_cast<uint16_t>(m < kCapped ? m : kCapped);
    out[x] = static_cast<uint8_t>(static_cast<uint16_t>(limited * limited) / 36);
  }
  return sum;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

double NuvEstimateNoiseDelta(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  uint32_t sum = 0;
  const GrayImage source{pGryImg, width, height};
  for_rows(source, {pResImg, width, height}, source.interior(),
           [&sum, width](const uint8_t* p, uint8_t* out, std::ptrdiff_t n) {
             sum += energy_row(p, width, out, n);
           });
  return std::sqrt(sum / ((width - 2.0) * 36.0 * (height - 2.0)));
}
