// The step of bilinear sampling between two bytes.

#ifndef NUV_GEOMETRY_BILINEAR_H
#define NUV_GEOMETRY_BILINEAR_H

#include <cstdint>

#include "core/row_kernel.h"

namespace nuv {

// (a*(65536 - weight) + b*weight) >> 16, which is a and the part of b - a, rounded down. This takes 16 bits:
// a negative difference stands as 65536 more.
NUV_INLINE uint8_t between(uint8_t a, uint8_t b, uint16_t weight) {
  const auto difference = static_cast<uint16_t>(b - a);
  const auto part = static_cast<uint16_t>((static_cast<uint32_t>(difference) * weight) >> 16);
  return static_cast<uint8_t>(a + part - (b < a ? weight : 0));
}

}  // namespace nuv

#endif
