// The sum of bytes.

#ifndef NUV_FRAME_BYTE_SUMS_H
#define NUV_FRAME_BYTE_SUMS_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// Wraps at 32 bits.
int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n);

}  // namespace nuv

#endif
