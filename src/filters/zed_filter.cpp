// Smoothing of noise with weights that spare edges.

#include <algorithm>

#include "core/lanes.h"
#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/filters.h"

namespace nuv {
namespace {

// What a neighbour adds: its difference up to a magnitude of T; beyond T, a value that falls to 0 at 3T.
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
  NUV_CLANG_PLACES(16)
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

void NuvGryZedFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg) {
  // No difference exceeds 255, and below 0 no neighbour counts.
  const auto t = static_cast<int16_t>(std::clamp(T, -1, 255));
  const GrayImage source{pGryImg, width, height};
  for_rows(source, {pResImg, width, height}, source.interior(),
           [=](const uint8_t* p, uint8_t* out, std::ptrdiff_t n) { zed_row(p, width, t, out, n); });
}
