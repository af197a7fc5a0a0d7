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

// Four bytes from p on, the first as the lowest byte or as the highest. Compilers turn each function into one load.
inline uint32_t four_bytes(const uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24;
}
inline uint32_t four_bytes_reversed(const uint8_t* p) {
  return p[3] | p[2] << 8 | p[1] << 16 | static_cast<uint32_t>(p[0]) << 24;
}

// The same number by larger loads. They are slow where one of the bytes has just been written. Also reads the second
// pixel to the right in the row above, and the second to the left in the row below.
inline uint64_t unchanged_neighbours_of(const uint8_t* pixel, std::ptrdiff_t width) {
  constexpr uint64_t kBeside = 255 | uint64_t{255} << 32;
  const uint64_t rows =
      four_bytes_reversed(pixel - width - 1) | static_cast<uint64_t>(four_bytes(pixel + width - 2)) << 32;
  return (rows & ~kBeside) | (pixel[1] | static_cast<uint64_t>(pixel[-1]) << 32);
}

// The number of the lowest byte that is not 0. One byte at least must not be.
inline unsigned lowest_byte(uint64_t bytes) {
#if defined(__GNUC__)
  return static_cast<unsigned>(__builtin_ctzll(bytes)) / 8;
#else
  unsigned i = 0;
  while ((bytes >> (8 * i) & 255) == 0) ++i;
  return i;
#endif
}

// The number of the highest byte that is not 0. One byte at least must not be.
inline unsigned highest_byte(uint64_t bytes) {
#if defined(__GNUC__)
  return 7 - static_cast<unsigned>(__builtin_clzll(bytes)) / 8;
#else
  unsigned i = 7;
  while ((bytes >> (8 * i) & 255) == 0) --i;
  return i;
#endif
}

}  // namespace nuv

#endif
