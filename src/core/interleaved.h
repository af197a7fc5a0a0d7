// Interleaved bytes split into planes and joined again.
//
// Compilers do not turn arithmetic on interleaved bytes into vector code. A pass over RGB pixels therefore
// works on short planes: a block of pixels is split into three arrays that stay in the first-level cache, and
// the row kernel of the pass processes plain bytes.

#ifndef NUV_CORE_INTERLEAVED_H
#define NUV_CORE_INTERLEAVED_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace nuv {

// Pixels of three bytes.
void split_planes(const uint8_t* pixels, uint8_t* plane0, uint8_t* plane1, uint8_t* plane2,
                  std::ptrdiff_t count);
void join_planes(const uint8_t* plane0, const uint8_t* plane1, const uint8_t* plane2, uint8_t* pixels,
                 std::ptrdiff_t count);

// Copies byte number place of each pixel, writes a plane over it, or combines it with a plane by a bitwise or.
// place is 0, 1 or 2.
void take_plane(const uint8_t* pixels, int place, uint8_t* plane, std::ptrdiff_t count);
void replace_plane(const uint8_t* plane, int place, uint8_t* pixels, std::ptrdiff_t count);
void or_plane(const uint8_t* plane, int place, uint8_t* pixels, std::ptrdiff_t count);

// Pairs of bytes.
void split_pairs(const uint8_t* pairs, uint8_t* plane0, uint8_t* plane1, std::ptrdiff_t count);
void second_of_pairs(const uint8_t* pairs, uint8_t* plane1, std::ptrdiff_t count);
void join_pairs(const uint8_t* plane0, const uint8_t* plane1, uint8_t* pairs, std::ptrdiff_t count);

constexpr std::ptrdiff_t kPlaneBlock = 2048;

struct PlaneBlock {
  alignas(64) uint8_t b0[kPlaneBlock];
  alignas(64) uint8_t b1[kPlaneBlock];
  alignas(64) uint8_t b2[kPlaneBlock];
};

// Calls kernel(planes, block_results, n) for each block of a row of count pixels. A pixel has one byte in
// results; block_results is the place of the block's first pixel there.
template <class Kernel>
void map_pixels(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* results, Kernel kernel) {
  PlaneBlock planes;
  for (std::ptrdiff_t done = 0; done < count; done += kPlaneBlock) {
    const std::ptrdiff_t n = std::min(kPlaneBlock, count - done);
    split_planes(pixels + 3 * done, planes.b0, planes.b1, planes.b2, n);
    kernel(planes, results + done, n);
  }
}

}  // namespace nuv

#endif
