// 3x3 morphology: growing black and growing white.
//
// All forms change the pixels that have a growing neighbour. Eight rows are packed into one, a byte for eight
// pixels of a column, so that one operation on bytes serves eight pixels. First the pixels that grow are found
// in the packed rows, then their neighbours, and then the rows are changed where a neighbour lies. A table
// defines the forms: it states which pixels grow and how their neighbours change.

#include <algorithm>
#include <array>
#include <cstring>

#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

// ---- kernels on packed rows; the lowest bit is the uppermost pixel ----

constexpr int32_t kPacked = 8;
using RowsToPack = std::array<const uint8_t*, kPacked>;

NUV_INLINE uint8_t bit_if(bool set, int bit) {
  return static_cast<uint8_t>(set ? 1 << bit : 0);
}

// Sets the bits of the pixels that have the given value.
NUV_ROW_KERNEL void pack(const RowsToPack& rows, uint8_t value, uint8_t* NUV_RESTRICT packed,
                         std::ptrdiff_t n) {
  const uint8_t *a = rows[0], *b = rows[1], *c = rows[2], *d = rows[3];
  const uint8_t *e = rows[4], *f = rows[5], *g = rows[6], *h = rows[7];
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    packed[x] =
        static_cast<uint8_t>(bit_if(a[x] == value, 0) | bit_if(b[x] == value, 1) | bit_if(c[x] == value, 2) |
                             bit_if(d[x] == value, 3) | bit_if(e[x] == value, 4) | bit_if(f[x] == value, 5) |
                             bit_if(g[x] == value, 6) | bit_if(h[x] == value, 7));
  }
}

// Sets the bits of the pixels with a set pixel above or below. The packed rows before and after supply the
// pixels above the first and below the last bit.
NUV_ROW_KERNEL void beside_in_column(const uint8_t* before, const uint8_t* block, const uint8_t* after,
                                     uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    out[x] = static_cast<uint8_t>(before[x] >> 7 | block[x] << 1 | block[x] >> 1 | after[x] << 7);
  }
}
// Sets the bits of the pixels with a set neighbour. column is the result of the kernel above. Both inputs are
// read from one place before the first to one place after the last.
NUV_ROW_KERNEL void beside(const uint8_t* column, const uint8_t* block, uint8_t* NUV_RESTRICT out,
                           std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++column, ++block) {
    out[x] = static_cast<uint8_t>(column[-1] | block[-1] | column[0] | column[1] | block[1]);
  }
}
NUV_ROW_KERNEL void keep_set(const uint8_t* block, uint8_t flipped, uint8_t kept, uint8_t* NUV_RESTRICT bits,
                             std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x)
    bits[x] = static_cast<uint8_t>(bits[x] & (block[x] ^ flipped) & kept);
}

// ---- kernels that change rows where a bit is set ----

NUV_ROW_KERNEL void blacken(const uint8_t* bits, uint8_t bit, const uint8_t* from, uint8_t* NUV_RESTRICT to,
                            std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t kept = (bits[x] & bit) != 0 ? 0 : 255;
    to[x] = from[x] & kept;
  }
}
NUV_ROW_KERNEL void whiten(const uint8_t* bits, uint8_t bit, const uint8_t* from, uint8_t* NUV_RESTRICT to,
                           std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t white = (bits[x] & bit) != 0 ? 255 : 0;
    to[x] = from[x] | white;
  }
}

constexpr uint8_t kMark = 200;

NUV_INLINE void mark_value(uint8_t value, const uint8_t* bits, uint8_t bit, const uint8_t* from,
                           uint8_t* NUV_RESTRICT to, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t beside = (bits[x] & bit) != 0 ? 255 : 0;
    const uint8_t marked = from[x] == value ? beside : 0;
    to[x] = static_cast<uint8_t>((from[x] & ~marked) | (kMark & marked));
  }
}
NUV_ROW_KERNEL void mark_255(const uint8_t* bits, uint8_t bit, const uint8_t* from, uint8_t* NUV_RESTRICT to,
                             std::ptrdiff_t n) {
  mark_value(255, bits, bit, from, to, n);
}
NUV_ROW_KERNEL void mark_black(const uint8_t* bits, uint8_t bit, const uint8_t* from,
                               uint8_t* NUV_RESTRICT to, std::ptrdiff_t n) {
  mark_value(0, bits, bit, from, to, n);
}
using ChangeRow = void(const uint8_t* bits, uint8_t bit, const uint8_t* from, uint8_t* to, std::ptrdiff_t n);

NUV_ROW_KERNEL void replace_mark(uint8_t* pixels, std::ptrdiff_t n, uint8_t colour) {
  for (std::ptrdiff_t x = 0; x < n; ++x) pixels[x] = pixels[x] == kMark ? colour : pixels[x];
}

// ---- the forms ----

struct Growth {
  uint8_t value;
  uint8_t flipped;    // 0 if pixels of the value grow, 255 if all other pixels do
  bool only_beside;   // whether a pixel needs a neighbour of the value to grow
  ChangeRow* change;  // applied to the neighbours of growing pixels
};
constexpr Growth kBlackBesideBlack{0, 0, true, blacken};
constexpr Growth kWhiteBesideBlack{0, 255, true, whiten};
constexpr Growth kBlackMarks255{0, 0, false, mark_255};
constexpr Growth k255MarksBlack{255, 0, false, mark_black};

// ---- the pass ----

constexpr std::ptrdiff_t kStrip = 4096;
// Kernels on packed rows always work on multiples of this many places, so they need no scalar remainder.
constexpr std::ptrdiff_t kStep = 64;
// A strip, with two places before it and room for whole steps after it. Rows a multiple of 4096 bytes apart
// share cache sets; the padding prevents that.
using StripRow = std::array<uint8_t, kStrip + 448>;

constexpr std::ptrdiff_t in_steps(std::ptrdiff_t n) {
  return (n + kStep - 1) / kStep * kStep;
}

// The packed rows of three consecutive blocks of rows.
class Blocks {
 public:
  void clear() { rows_ = {}; }
  uint8_t* of(int32_t block) { return rows_[static_cast<std::size_t>(block + 3) % 3].data(); }

  // Sets the bits of the pixels with a set neighbour, in n places from the given one on. Writes whole steps.
  void find_beside(int32_t block, std::ptrdiff_t place, std::ptrdiff_t n, uint8_t* out) {
    StripRow column;
    beside_in_column(of(block - 1) + place - 1, of(block) + place - 1, of(block + 1) + place - 1,
                     column.data(), in_steps(n) + kStep);
    beside(column.data() + 1, of(block) + place, out, in_steps(n));
  }

 private:
  std::array<StripRow, 3> rows_;
};

// The rows that are changed: rows of the source, which are written to the result, or rows of the result.
enum class Rows { kOfSource, kOfResult };

// Changes the neighbours of the visited pixels that grow. Visited pixels must lie in the image, but not in its
// first row or its first or last column. Result and source may be the same image, because rows are packed two
// blocks before they are changed.
void grow(GrayImage source, GrayImage result, Region visited, Rows rows, const Growth& growth) {
  if (visited.empty()) return;
  const Region grown = Region{visited.x1 - 1, visited.x2 + 1, visited.y1 - 1, visited.y2 + 1}.clamped_to(
      source.width, source.height);
  const int32_t blocks = (grown.rows() - 1) / kPacked + 1;
  const auto row_of = [=](std::ptrdiff_t block, int32_t bit) { return grown.y1 + block * kPacked + bit; };
  const auto pixel = [](GrayImage image, std::ptrdiff_t x, std::ptrdiff_t y) {
    return image.pixels + y * image.width + x;
  };
  StripRow absent;  // stands for rows below the last one; no pixel has the value
  absent.fill(growth.value ^ 255);
  Blocks matching;
  Blocks growing;
  StripRow changed;
  StripRow held;

  for (std::ptrdiff_t strip = grown.x1; strip <= grown.x2; strip += kStrip) {
    const std::ptrdiff_t n = std::min(kStrip, grown.x2 + 1 - strip);
    // The strip begins at place 2 of the packed rows. The visited columns in the strip and next to it are count
    // columns from column first on, which is at the given place.
    const std::ptrdiff_t first = std::max<std::ptrdiff_t>(strip - 1, visited.x1);
    const std::ptrdiff_t place = first - strip + 2;
    const std::ptrdiff_t count = std::min<std::ptrdiff_t>(strip + n, visited.x2) - first + 1;
    matching.clear();
    growing.clear();
    const auto pack_rows = [&](int32_t block) {
      RowsToPack to_pack;
      for (int32_t bit = 0; bit < kPacked; ++bit) {
        const std::ptrdiff_t y = row_of(block, bit);
        to_pack[bit] = y <= grown.y2 ? pixel(source, first - 1, y) : absent.data();
      }
      pack(to_pack, growth.value, matching.of(block) + place - 1, count + 2);
    };
    const auto find_growing = [&](int32_t block) {
      uint8_t visited_rows = 0;
      for (int32_t bit = 0; bit < kPacked; ++bit) {
        const std::ptrdiff_t y = row_of(block, bit);
        visited_rows |= bit_if(y >= visited.y1 && y <= visited.y2, bit);
      }
      uint8_t* out = growing.of(block) + place;
      if (growth.only_beside) {
        matching.find_beside(block, place, count, out);
      } else {
        std::fill_n(out, count, uint8_t{255});
      }
      keep_set(matching.of(block) + place, growth.flipped, visited_rows, out, in_steps(count));
      out[count] = out[count + 1] = 0;
    };
    const auto change_rows = [&](int32_t block) {
      growing.find_beside(block, 2, n, changed.data());
      for (int32_t bit = 0; bit < kPacked && row_of(block, bit) <= grown.y2; ++bit) {
        const uint8_t* from = pixel(source, strip, row_of(block, bit));
        uint8_t* to = pixel(result, strip, row_of(block, bit));
        if (rows == Rows::kOfResult) {
          std::memcpy(held.data(), to, static_cast<std::size_t>(n));
          from = held.data();
        }
        growth.change(changed.data(), bit_if(true, bit), from, to, n);
      }
    };
    for (int32_t block = 0; block < blocks + 2; ++block) {
      pack_rows(block);
      if (block >= 1) find_growing(block - 1);
      if (block >= 2) change_rows(block - 2);
    }
  }
}

// Only the copy is confined to the region. The column right of it and the row below it are visited, too.
void grow_region(GrayImage source, GrayImage result, Region region, const Growth& growth) {
  if (source.empty()) return;
  region = region.clamped_to(source.width, source.height);
  for_rows(source, result, region, [](const uint8_t* from, uint8_t* to, std::ptrdiff_t n) {
    std::memcpy(to, from, static_cast<std::size_t>(n));
  });
  // The width limits the rows as well as the columns.
  const int32_t limit = source.width - 2;
  const Region visited = Region{region.x1, region.x2 + 1, region.y1, region.y2 + 1}.intersected(
      {1, limit, 1, std::min(limit, source.height - 1)});
  grow(source, result, visited, Rows::kOfResult, growth);
}

void grow_to_colour(GrayImage image, uint8_t colour, const Growth& growth) {
  grow(image, image, image.interior(), Rows::kOfResult, growth);
  replace_mark(image.pixels, image.size(), colour);
}

void grow_whole(GrayImage source, GrayImage result, const Growth& growth) {
  if (source.interior().empty()) {
    copy_bytes(result.pixels, source.pixels, source.size());
  } else {
    grow(source, result, source.interior(), Rows::kOfSource, growth);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  grow_whole({pBinImg, width, height}, {pResImg, width, height}, kBlackBesideBlack);
}

void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  grow_region({pBinImg, width, height}, {pResImg, width, height}, {x1, x2, y1, y2}, kBlackBesideBlack);
}

void NuvBinImgMinFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color) {
  grow_to_colour({pBinImg, width, height}, color, kBlackMarks255);
}

void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  grow_whole({pBinImg, width, height}, {pResImg, width, height}, kWhiteBesideBlack);
}

void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  grow_region({pBinImg, width, height}, {pResImg, width, height}, {x1, x2, y1, y2}, kWhiteBesideBlack);
}

void NuvBinImgMaxFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color) {
  grow_to_colour({pBinImg, width, height}, color, k255MarksBlack);
}
