// Noise measured by a mask that sees neither steps nor ramps, and smoothed by a weight that spares edges.

#include <algorithm>
#include <cmath>

#include "frame/point_pass.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/filters.h"

namespace nuv {
namespace {

// The second difference of three pixels of a column.
NUV_INLINE int16_t bend(const uint8_t* p, std::ptrdiff_t w) {
  return static_cast<int16_t>(p[-w] - 2 * p[0] + p[w]);
}

// Writes the energies of n pixels from p on, and returns the sum of their squared responses.
NUV_ROW_KERNEL uint32_t energy_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                   std::ptrdiff_t n) {
  // From this magnitude on the energy is at its cap, and below it 16 bits hold the square.
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

// What a neighbour adds: its difference up to T, and from there less and less of it, down to 0 at 3T.
NUV_INLINE int16_t contribution(uint8_t neighbour, uint8_t centre, int16_t t) {
  const auto d = static_cast<int16_t>(neighbour - centre);
  const int16_t a = magnitude(d);
  const auto fading = static_cast<int16_t>(3 * t - a);
  const auto positive = static_cast<int16_t>(fading > 0 ? fading : 0);
  const int16_t strength = a <= t ? a : positive;
  return static_cast<int16_t>(d < 0 ? -strength : strength);
}

NUV_ROW_KERNEL void zed_row(const uint8_t* p, std::ptrdiff_t w, int16_t t, uint8_t* NUV_RESTRICT out,
                            std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t c = p[0];
    const auto above = static_cast<int16_t>(contribution(p[-w - 1], c, t) + contribution(p[-w], c, t) +
                                            contribution(p[-w + 1], c, t));
    const auto beside = static_cast<int16_t>(contribution(p[-1], c, t) + contribution(p[1], c, t));
    const auto below = static_cast<int16_t>(contribution(p[w - 1], c, t) + contribution(p[w], c, t) +
                                            contribution(p[w + 1], c, t));
    const auto sum = static_cast<int16_t>(above + beside + below);
    out[x] = static_cast<uint8_t>(c + (sum >> 3));
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

double NuvEstimateNoiseDelta(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  uint32_t sum = 0;
  const GrayImage source{pGryImg, width, height};
  for_rows(source, pResImg, source.interior(),
           [&sum, width](const uint8_t* p, uint8_t* out, std::ptrdiff_t n) {
             sum += energy_row(p, width, out, n);
           });
  return std::sqrt(sum / ((width - 2.0) * 36.0 * (height - 2.0)));
}

void NuvGryZedFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg) {
  // No difference is above 255, and below 0 none counts.
  const auto t = static_cast<int16_t>(std::clamp(T, -1, 255));
  const GrayImage source{pGryImg, width, height};
  for_rows(source, pResImg, source.interior(),
           [=](const uint8_t* p, uint8_t* out, std::ptrdiff_t n) { zed_row(p, width, t, out, n); });
}
