// One step of bilinear interpolation: a byte between two bytes.

#ifndef NUV_GEOMETRY_BILINEAR_H
#define NUV_GEOMETRY_BILINEAR_H

#include <cstdint>

#include "core/lanes.h"
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

#if NUV_HAS_LANES && defined(__clang__)
// The same for sixteen pairs of bytes. clang multiplies the promoted integers of a loop in 32 bits, but finds
// the instruction for the upper halves of products in this form. GCC finds it in the loop.
NUV_INLINE void between(const uint8_t* a, const uint8_t* b, const UnsignedShorts16& weights, uint8_t* out) {
  using Products = uint32_t __attribute__((vector_size(64)));
  const auto from = __builtin_convertvector(load16(a), UnsignedShorts16);
  const auto to = __builtin_convertvector(load16(b), UnsignedShorts16);
  const UnsignedShorts16 difference = to - from;
  const auto part = __builtin_convertvector(
      (__builtin_convertvector(difference, Products) * __builtin_convertvector(weights, Products)) >> 16,
      UnsignedShorts16);
  const auto negative = reinterpret_cast<UnsignedShorts16>(to < from);
  store16(out, __builtin_convertvector(from + part - (negative & weights), Bytes16));
}
#endif

}  // namespace nuv

#endif
