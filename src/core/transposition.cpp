#include "core/transposition.h"

#include <algorithm>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {
namespace {

#if NUV_HAS_LANES
// The functions below move whole blocks from pixel (0, y1) on, as many as fit.

// Blocks of 16 by 16 bytes. A band of rows holds up to eight blocks above each other, which fill whole cache
// lines of the result.
NUV_ROW_KERNEL void move_blocks_of_bytes(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1,
                                         std::ptrdiff_t y2) {
  constexpr std::ptrdiff_t kSide = 16;
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

using Pixels4 = uint32_t __attribute__((vector_size(16)));

// Turns four rows of four pixels into columns, in two rounds of zips like those of transpose16().
NUV_INLINE void transpose4(Pixels4 (&rows)[4]) {
#pragma GCC unroll 2
  for (int round = 0; round < 2; ++round) {
    const Pixels4 zipped[] = {__builtin_shufflevector(rows[0], rows[2], 0, 4, 1, 5),
                              __builtin_shufflevector(rows[0], rows[2], 2, 6, 3, 7),
                              __builtin_shufflevector(rows[1], rows[3], 0, 4, 1, 5),
                              __builtin_shufflevector(rows[1], rows[3], 2, 6, 3, 7)};
    for (int i = 0; i < 4; ++i) rows[i] = zipped[i];
  }
}

// Loads or stores four pixels. A pixel of three bytes gets a fourth one, which the store drops. Sixteen bytes
// are read or written in any case.
template <int PixelBytes>
NUV_INLINE Pixels4 load_four(const uint8_t* p) {
  Bytes16 bytes = load16(p);
  if constexpr (PixelBytes == 3) {
    bytes = __builtin_shufflevector(bytes, bytes, 0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
  }
  return reinterpret_cast<Pixels4>(bytes);
}
template <int PixelBytes>
NUV_INLINE void store_four(uint8_t* p, Pixels4 pixels) {
  auto bytes = reinterpret_cast<Bytes16>(pixels);
  if constexpr (PixelBytes == 3) {
    bytes = __builtin_shufflevector(bytes, bytes, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15);
  }
  store16(p, bytes);
}

// Blocks of 4 by 4 pixels. With three bytes per pixel, each row of a block is read and written 4 bytes past
// its end. The pixels of the result that belong there must be written afterwards.
template <int PixelBytes>
NUV_INLINE void move_blocks_of_four(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1,
                                    std::ptrdiff_t y2) {
  for (std::ptrdiff_t x = 0; x + 4 <= columns; x += 4) {
    for (std::ptrdiff_t y = y1; y + 4 <= y2; y += 4) {
      Pixels4 block[4];
      for (int i = 0; i < 4; ++i) block[i] = load_four<PixelBytes>(t.from[y + i] + x * PixelBytes);
      transpose4(block);
      for (int i = 0; i < 4; ++i) store_four<PixelBytes>(t.to[x + i] + y * PixelBytes, block[i]);
    }
  }
}
NUV_ROW_KERNEL void move_blocks_of_rgb(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1,
                                       std::ptrdiff_t y2) {
  move_blocks_of_four<3>(t, columns, y1, y2);
}
NUV_ROW_KERNEL void move_blocks_of_rgb32(const Transposition& t, std::ptrdiff_t columns, std::ptrdiff_t y1,
                                         std::ptrdiff_t y2) {
  move_blocks_of_four<4>(t, columns, y1, y2);
}

template <int PixelBytes>
struct Blocks;
template <>
struct Blocks<1> {
  static constexpr std::ptrdiff_t kSide = 16;
  static constexpr std::ptrdiff_t kPixelsAfter = 0;
  static constexpr auto move = move_blocks_of_bytes;
};
template <>
struct Blocks<3> {
  static constexpr std::ptrdiff_t kSide = 4;
  static constexpr std::ptrdiff_t kPixelsAfter = 2;
  static constexpr auto move = move_blocks_of_rgb;
};
template <>
struct Blocks<4> {
  static constexpr std::ptrdiff_t kSide = 4;
  static constexpr std::ptrdiff_t kPixelsAfter = 0;
  static constexpr auto move = move_blocks_of_rgb32;
};
#endif

}  // namespace

template <int PixelBytes>
void Transposition::move_all(std::ptrdiff_t columns, std::ptrdiff_t rows) const {
  // A band of rows is small enough for the first-level cache, and high enough to fill neighbouring cache lines in
  // each row of the result. Pixels beside and below the blocks of a band are moved one by one after the blocks,
  // because blocks of RGB pixels write past their ends.
  constexpr std::ptrdiff_t kBand = 128;
  for (std::ptrdiff_t y = 0; y < rows; y += kBand) {
    const std::ptrdiff_t end = std::min(y + kBand, rows);
    std::ptrdiff_t in_blocks = 0;
    std::ptrdiff_t below_blocks = y;
#if NUV_HAS_LANES
    using Block = Blocks<PixelBytes>;
    const auto whole = [](std::ptrdiff_t n) { return n < 0 ? 0 : n / Block::kSide * Block::kSide; };
    in_blocks = whole(columns - Block::kPixelsAfter);
    below_blocks = y + whole(std::min(end, rows - Block::kPixelsAfter) - y);
    Block::move(*this, in_blocks, y, below_blocks);
#endif
    move<PixelBytes>(0, in_blocks, below_blocks, end);
    move<PixelBytes>(in_blocks, columns, y, end);
  }
}

template void Transposition::move_all<1>(std::ptrdiff_t columns, std::ptrdiff_t rows) const;
template void Transposition::move_all<3>(std::ptrdiff_t columns, std::ptrdiff_t rows) const;
template void Transposition::move_all<4>(std::ptrdiff_t columns, std::ptrdiff_t rows) const;

}  // namespace nuv
