// One step of bilinear interpolation: a byte between two bytes.

#ifndef NUV_GEOMETRY_BILINEAR_H
#define NUV_GEOMETRY_BILINEAR_H

#include <cstdint>

#include "core/row_kernel.h"

namespace nuv {

// (a*(65536 - weight) + b*weight) >> 16. This equals a plus (b - a)*weight / 65536, rounded down, and 16 bits
// are enough for it: a negative difference is stored with 65536 added. This adds weight to the part, and the
// last term subtracts it again.
NUV_INLINE uint8_t between(uint8_t a, uint8_t b, uint16_t weight) {
  const auto difference = static_cast<uint16_t>(b - a);
  const auto part = static_cast<uint16_t>((static_cast<uint32_t>(difference) * weight) >> 16);
  return static_cast<uint8_t>(a + part - (b < a ? weight : 0));
}

}  // namespace nuv

#endif
