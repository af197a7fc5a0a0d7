// The Sobel responses of the pixel at p, with rows w bytes apart.

#ifndef NUV_CORE_SOBEL_H
#define NUV_CORE_SOBEL_H

#include <cstddef>
#include <cstdint>

#include "core/row_kernel.h"

namespace nuv {

// Strong at a horizontal edge.
NUV_INLINE int16_t sobel_0(const uint8_t* p, std::ptrdiff_t w) {
  const uint8_t* above = p - w;
  const uint8_t* below = p + w;
  return static_cast<int16_t>(above[-1] + 2 * above[0] + above[1] - below[-1] - 2 * below[0] - below[1]);
}

// Strong at a vertical edge.
NUV_INLINE int16_t sobel_90(const uint8_t* p, std::ptrdiff_t w) {
  const uint8_t* above = p - w;
  const uint8_t* below = p + w;
  return static_cast<int16_t>(above[-1] + 2 * p[-1] + below[-1] - above[1] - 2 * p[1] - below[1]);
}

}  // namespace nuv

#endif
