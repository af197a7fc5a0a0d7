// The eight neighbours of a pixel as the bytes of one number. Code that looks for a few of them needs no
// branch for each.

#ifndef NUV_SEGMENTATION_NEIGHBOUR_BYTES_H
#define NUV_SEGMENTATION_NEIGHBOUR_BYTES_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// Byte d, of the weight 256^d, is the neighbour in direction d.
inline uint64_t neighbours_of(const uint8_t* pixel, std::ptrdiff_t width) {
  const uint8_t* above = pixel - width;
  const uint8_t* below = pixel + width;
  const auto four = [](uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return a | b << 8 | c << 16 | d << 24;
  };
  return four(pixel[1], above[1], above[0], above[-1]) |
         static_cast<uint64_t>(four(pixel[-1], below[-1], below[0], below[1])) << 32;
}

// The number of the lowest byte that is not 0. One byte at least must not be.
inline int lowest_byte(uint64_t bytes) {
#if defined(__GNUC__)
  return __builtin_ctzll(bytes) / 8;
#else
  int i = 0;
  while ((bytes >> (8 * i) & 255) == 0) ++i;
  return i;
#endif
}

}  // namespace nuv

#endif
