// Sums of bytes.

#ifndef NUV_CORE_BYTE_SUMS_H
#define NUV_CORE_BYTE_SUMS_H

#include <cstddef>
#include <cstdint>

#include "core/views.h"

namespace nuv {

// The sum of n bytes. It wraps at 32 bits.
int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n);

// The sum of the pixels of a region, which must lie in the image. It wraps at 32 bits.
int32_t sum_of_region(GrayImage image, Region region);

}  // namespace nuv

#endif
