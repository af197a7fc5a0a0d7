// Noise measured by a mask that gives 0 on constant surfaces and on ramps. The mask is separable: it is the
// second difference along the row of the second differences along the columns.

#include <cmath>

#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/noise.h"

namespace nuv {
namespace {

// Writes the energies of n pixels from p on, and returns the sum of their squared responses.
//
// Compilers turn each of the loops into vector code of full width; of one loop for all, clang processes only 8
// pixels at once.
NUV_ROW_KERNEL uint32_t energy_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                   std::ptrdiff_t n) {
  // The energy reaches its cap at this magnitude. The squares of smaller magnitudes fit in 16 bits.
  constexpr int16_t kCapped = 95;
  static_assert(kCapped * kCapped / 36 == 250 && (kCapped - 1) * (kCapped - 1) / 36 < 250);
  constexpr std::ptrdiff_t kSpan = 512;
  int16_t bends[kSpan + 2];  // the second differences of columns
  int16_t steps[kSpan + 1];  // from one to the next
  int16_t responses[kSpan];
  uint32_t sum = 0;
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = n - first < kSpan ? n - first : kSpan;
    const uint8_t* q = p + first - 1;
    for (std::ptrdiff_t x = 0; x < span + 2; ++x) {
      bends[x] = static_cast<int16_t>(q[x - w] - 2 * q[x] + q[x + w]);
    }
    for (std::ptrdiff_t x = 0; x < span + 1; ++x) steps[x] = static_cast<int16_t>(bends[x + 1] - bends[x]);
    for (std::ptrdiff_t x = 0; x < span; ++x) responses[x] = static_cast<int16_t>(steps[x + 1] - steps[x]);
    for (std::ptrdiff_t x = 0; x < span; ++x) sum += static_cast<uint32_t>(responses[x] * responses[x]);
    for (std::ptrdiff_t x = 0; x < span; ++x) {
      const int16_t m = magnitude(responses[x]);
      const auto limited = static_cast<uint16_t>(m < kCapped ? m : kCapped);
      out[first + x] = static_cast<uint8_t>(static_cast<uint16_t>(limited * limited) / 36);
    }
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
