#include "frame/transposition.h"

#include <algorithm>

#include "frame/lanes.h"
#include "frame/row_kernel.h"

namespace nuv {
namespace {

constexpr std::ptrdiff_t kSide = 16;

#if NUV_HAS_LANES
// Blocks of 16 by 16 bytes from byte (0, y1) on, as many as fit. Up to four lie above each other, so that
// whole cache lines of the result are written.
NUV_ROW_KERNEL void move_blocks(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1,
                                std::ptrdiff_t y2) {
  for (std::ptrdiff_t x = 0; x + kSide <= columns; x += kSide) {
    for (std::ptrdiff_t y = y1; y + kSide <= y2; y += kSide) {
      Bytes16 block[kSide];
#pragma GCC unroll 16
      for (std::ptrdiff_t i = 0; i < kSide; ++i) block[i] = load16(t.from[y + i] + x);
      transpose16(block);
#pragma GCC unroll 16
      for (std::ptrdiff_t i = 0; i < kSide; ++i) store16(t.to[x + i] + y, block[i]);
    }
  }
}
#else
void move_blocks(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1, std::ptrdiff_t y2) {
  t.move<1>(0, columns - columns % kSide, y1, y2 - (y2 - y1) % kSide);
}
#endif

}  // namespace

void Transposition::move_bytes(std::ptrdiff_t columns, std::ptrdiff_t rows) const {
  // In bands of rows, whose part that is in work stays in the first-level cache.
  constexpr std::ptrdiff_t kBand = 64;
  const std::ptrdiff_t in_blocks = columns - columns % kSide;
  for (std::ptrdiff_t y = 0; y < rows; y += kBand) {
    const std::ptrdiff_t end = std::min(y + kBand, rows);
    const std::ptrdiff_t below_blocks = end - (end - y) % kSide;
    move_blocks(*this, columns, y, end);
    move<1>(0, in_blocks, below_blocks, end);
    move<1>(in_blocks, columns, y, end);
  }
}

}  // namespace nuv
