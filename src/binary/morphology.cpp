// Growing black, growing white.
//
// All forms ask the same of each pixel: does a neighbour grow? A first kernel flags the pixels of a row that
// grow; a second one reads the flags of three rows and changes the pixels beside a flag. The pass between
// them goes down strips that fit the stack. A member is its two kernels and the pixels that it visits.
//
// Whole images take a shorter way to the same result: a plain minimum or maximum of 3x3 pixels is right but
// for exceptions that can be seen in passing, and these are put right one by one.

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/point_pass.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

// ---- kernels: rows are read from one pixel before to one behind ----

NUV_INLINE uint8_t least_neighbour(const uint8_t* above, const uint8_t* row, const uint8_t* below) {
  const uint8_t up = lesser(lesser(above[-1], above[0]), above[1]);
  const uint8_t down = lesser(lesser(below[-1], below[0]), below[1]);
  return lesser(lesser(up, down), lesser(row[-1], row[1]));
}

NUV_LOAD_BOUND_ROW_KERNEL void flag_black_beside_black(const uint8_t* above, const uint8_t* row,
                                                       const uint8_t* below, uint8_t* NUV_RESTRICT flags,
                                                       std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++above, ++row, ++below) {
    flags[x] = greater(*row, least_neighbour(above, row, below)) == 0 ? 255 : 0;
  }
}
NUV_LOAD_BOUND_ROW_KERNEL void flag_white_beside_black(const uint8_t* above, const uint8_t* row,
                                                       const uint8_t* below, uint8_t* NUV_RESTRICT flags,
                                                       std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++above, ++row, ++below) {
    const uint8_t beside_black = least_neighbour(above, row, below) == 0 ? 255 : 0;
    flags[x] = *row != 0 ? beside_black : 0;
  }
}
NUV_ROW_KERNEL void flag_black(const uint8_t* /*above*/, const uint8_t* row, const uint8_t* /*below*/,
                               uint8_t* NUV_RESTRICT flags, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) flags[x] = row[x] == 0 ? 255 : 0;
}
NUV_ROW_KERNEL void flag_255(const uint8_t* /*above*/, const uint8_t* row, const uint8_t* /*below*/,
                             uint8_t* NUV_RESTRICT flags, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) flags[x] = row[x] == 255 ? 255 : 0;
}
using FlagRow = void(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* flags,
                     std::ptrdiff_t n);

// 255 where any of the eight neighbours is flagged.
NUV_INLINE uint8_t any_flag(const uint8_t* above, const uint8_t* row, const uint8_t* below) {
  return static_cast<uint8_t>(above[-1] | above[0] | above[1] | row[-1] | row[1] | below[-1] | below[0] |
                              below[1]);
}

NUV_LOAD_BOUND_ROW_KERNEL void blacken(const uint8_t* above, const uint8_t* row, const uint8_t* below,
                                       uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++above, ++row, ++below) {
    pixels[x] = static_cast<uint8_t>(pixels[x] & ~any_flag(above, row, below));
  }
}
NUV_LOAD_BOUND_ROW_KERNEL void whiten(const uint8_t* above, const uint8_t* row, const uint8_t* below,
                                      uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++above, ++row, ++below) {
    pixels[x] = static_cast<uint8_t>(pixels[x] | any_flag(above, row, below));
  }
}

constexpr uint8_t kMark = 200;

NUV_INLINE void mark_value(uint8_t value, const uint8_t* above, const uint8_t* row, const uint8_t* below,
                           uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++above, ++row, ++below) {
    const uint8_t marked = any_flag(above, row, below) != 0 ? kMark : value;
    pixels[x] = pixels[x] == value ? marked : pixels[x];
  }
}
NUV_LOAD_BOUND_ROW_KERNEL void mark_255(const uint8_t* above, const uint8_t* row, const uint8_t* below,
                                        uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t n) {
  mark_value(255, above, row, below, pixels, n);
}
NUV_LOAD_BOUND_ROW_KERNEL void mark_black(const uint8_t* above, const uint8_t* row, const uint8_t* below,
                                          uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t n) {
  mark_value(0, above, row, below, pixels, n);
}
using ChangeRow = void(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* pixels,
                       std::ptrdiff_t n);

NUV_ROW_KERNEL void replace_mark(uint8_t* pixels, std::ptrdiff_t n, uint8_t color) {
  for (std::ptrdiff_t x = 0; x < n; ++x) pixels[x] = pixels[x] == kMark ? color : pixels[x];
}

// ---- the pass ----

constexpr std::ptrdiff_t kStrip = 4096;
// A strip, with a place before and behind it. Rows that lie a multiple of 4096 bytes apart are in each
// other's way in caches, so they lie farther.
using StripRow = std::array<uint8_t, kStrip + 448>;

// What becomes of the result's rows before they are changed.
enum class Rows { kCopied, kLeft };

// Flags the visited pixels, which lie in the image and not on its upper, left or right side, and changes
// their neighbours in the result. Result and source may be the same image if the change makes and takes no
// flags.
void grow(GrayImage source, uint8_t* result, Region visited, Rows rows, FlagRow flag, ChangeRow change) {
  if (visited.empty()) return;
  const Region grown = Region{visited.x1 - 1, visited.x2 + 1, visited.y1 - 1, visited.y2 + 1}.clamped_to(
      source.width, source.height);
  StripRow flags[3] = {};
  std::array<uint8_t, kStrip + 4> absent;  // below the last row, and beside it, nothing is black
  absent.fill(255);

  for (std::ptrdiff_t strip = grown.x1; strip <= grown.x2; strip += kStrip) {
    const std::ptrdiff_t n = std::min(kStrip, grown.x2 + 1 - strip);
    // Place 0 of the flags is column strip - 1. Those outside the visited columns stay 0.
    const std::ptrdiff_t first = std::max<std::ptrdiff_t>(strip - 1, visited.x1);
    const std::ptrdiff_t last = std::min<std::ptrdiff_t>(strip + n, visited.x2);
    const auto flags_of = [&](int32_t y) -> StripRow& { return flags[(y + 3) % 3]; };
    const auto flag_row = [&](int32_t y) {
      StripRow& row_flags = flags_of(y);
      std::fill_n(row_flags.begin(), n + 2, uint8_t{0});
      if (y < visited.y1 || y > visited.y2) return;
      const uint8_t* row = source.row(y) + first;
      const uint8_t* below = y + 1 < source.height ? row + source.width : absent.data() + 1;
      flag(row - source.width, row, below, row_flags.data() + (first - strip + 1), last - first + 1);
    };
    flag_row(grown.y1 - 1);
    flag_row(grown.y1);
    for (int32_t y = grown.y1; y <= grown.y2; ++y) {
      flag_row(y + 1);
      const uint8_t* from = source.row(y) + strip;
      uint8_t* to = result + (from - source.pixels);
      if (rows == Rows::kCopied) std::memcpy(to, from, static_cast<std::size_t>(n));
      change(flags_of(y - 1).data() + 1, flags_of(y).data() + 1, flags_of(y + 1).data() + 1, to, n);
    }
  }
}

// Only the copy is confined to the region: the column at its right and the row below it are visited too.
void grow_region(GrayImage source, uint8_t* result, Region region, FlagRow flag, ChangeRow change) {
  if (source.empty()) return;
  region = region.clamped_to(source.width, source.height);
  for_rows(source, result, region, [](const uint8_t* from, uint8_t* to, std::ptrdiff_t n) {
    std::memcpy(to, from, static_cast<std::size_t>(n));
  });
  // The limit of the rows comes from the width, as that of the columns does.
  const int32_t limit = source.width - 2;
  const Region visited{std::max(region.x1, 1), std::min(region.x2 + 1, limit), std::max(region.y1, 1),
                       std::min({region.y2 + 1, limit, source.height - 1})};
  grow(source, result, visited, Rows::kLeft, flag, change);
}

void grow_to_color(GrayImage image, uint8_t color, FlagRow flag, ChangeRow mark) {
  grow(image, image.pixels, image.interior(), Rows::kLeft, flag, mark);
  replace_mark(image.pixels, image.size(), color);
}

// ---- whole images ----
//
// Three pixels of a row are taken together first, and then the rows. Black pixels grow but for the lone ones,
// so those are taken out before a minimum of 3x3. White of 255 needs no such care: a pixel without a black
// neighbour has nothing to grow into. The sides of the image grow in neither.
//
// Kernels load few bytes at odd places, and take whole rows, which are handier for vectors than interiors; what
// they compute at the sides is written over.

NUV_ROW_KERNEL void least_of_rows(const uint8_t* above, const uint8_t* row, const uint8_t* below,
                                  uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = lesser(lesser(above[x], below[x]), row[x]);
}
// 0 where the row is black and a neighbour too; least is that of the three rows.
NUV_LOAD_BOUND_ROW_KERNEL void without_lone_black(const uint8_t* above, const uint8_t* row,
                                                  const uint8_t* below, const uint8_t* least,
                                                  uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++least) {
    out[x] = greater(row[x], lesser(lesser(above[x], below[x]), lesser(least[-1], least[1])));
  }
}
NUV_LOAD_BOUND_ROW_KERNEL void blacken_by_least(const uint8_t* least, const uint8_t* source,
                                                uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++least) {
    const uint8_t kept = lesser(lesser(least[-1], least[0]), least[1]) != 0 ? 255 : 0;
    out[x] = source[x] & kept;
  }
}

NUV_LOAD_BOUND_ROW_KERNEL void greatest_of_three(const uint8_t* row, uint8_t* NUV_RESTRICT out,
                                                 std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++row) out[x] = greater(greater(row[-1], row[0]), row[1]);
}
// Returns 0 if the source is 0 and 255 alone.
NUV_ROW_KERNEL uint8_t whiten_by_threes(const uint8_t* above, const uint8_t* threes, const uint8_t* below,
                                        const uint8_t* source, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  uint8_t gray = 0;
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    out[x] = above[x] | threes[x] | below[x] | source[x];
    gray |= static_cast<uint8_t>(source[x] + 1) & 0xFE;
  }
  return gray;
}

void grow_black(GrayImage source, uint8_t* result) {
  const std::ptrdiff_t width = source.width;
  const int32_t last = source.height - 1;
  StripRow least;       // of three rows, with a place before and behind
  StripRow growing[3];  // 0 where a pixel grows
  const auto take_growing = [&](int32_t y) {
    uint8_t* out = growing[y % 3].data();
    if (y < 1 || y >= last) {
      std::memset(out, 255, static_cast<std::size_t>(width));
      return;
    }
    const uint8_t* row = source.row(y);
    least_of_rows(row - width, row, row + width, least.data() + 1, width);
    without_lone_black(row - width, row, row + width, least.data() + 1, out, width);
    out[0] = out[width - 1] = 255;
  };
  take_growing(0);
  growing[2].fill(255);
  for (int32_t y = 0; y <= last; ++y) {
    take_growing(y + 1);
    least[0] = least[static_cast<std::size_t>(width) + 1] = 255;
    least_of_rows(growing[(y + 2) % 3].data(), growing[y % 3].data(), growing[(y + 1) % 3].data(),
                  least.data() + 1, width);
    const uint8_t* row = source.row(y);
    blacken_by_least(least.data() + 1, row, result + (row - source.pixels), width);
  }
}

// False, with a result of no use, if the image holds other values than 0 and 255.
bool grow_white_of_two_values(GrayImage source, uint8_t* result) {
  const std::ptrdiff_t width = source.width;
  StripRow threes[3];
  const auto take_threes = [&](int32_t y) {
    uint8_t* out = threes[y % 3].data();
    if (y < 1 || y > source.height - 2) {
      std::memset(out, 0, static_cast<std::size_t>(width));
      return;
    }
    const uint8_t* row = source.row(y);
    greatest_of_three(row, out, width);
    const auto growing = [=](std::ptrdiff_t x) { return x < 1 || x > width - 2 ? uint8_t{0} : row[x]; };
    for (std::ptrdiff_t x : {std::ptrdiff_t{0}, std::ptrdiff_t{1}, width - 2, width - 1}) {
      out[x] = greater(greater(growing(x - 1), growing(x)), growing(x + 1));
    }
  };
  uint8_t gray = 0;
  take_threes(0);
  std::memset(threes[2].data(), 0, static_cast<std::size_t>(width));
  for (int32_t y = 0; y < source.height && gray == 0; ++y) {
    take_threes(y + 1);
    const uint8_t* row = source.row(y);
    gray = whiten_by_threes(threes[(y + 2) % 3].data(), threes[y % 3].data(), threes[(y + 1) % 3].data(), row,
                            result + (row - source.pixels), width);
  }
  return gray == 0;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.interior().empty()) {
    std::memcpy(pResImg, pBinImg, static_cast<std::size_t>(image.size()));
  } else if (width <= kStrip) {
    grow_black(image, pResImg);
  } else {
    grow(image, pResImg, image.interior(), Rows::kCopied, flag_black_beside_black, blacken);
  }
}

void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  grow_region({pBinImg, width, height}, pResImg, {x1, x2, y1, y2}, flag_black_beside_black, blacken);
}

void NuvBinImgMinFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color) {
  grow_to_color({pBinImg, width, height}, color, flag_black, mark_255);
}

void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.interior().empty()) {
    std::memcpy(pResImg, pBinImg, static_cast<std::size_t>(image.size()));
  } else if (width > kStrip || !grow_white_of_two_values(image, pResImg)) {
    grow(image, pResImg, image.interior(), Rows::kCopied, flag_white_beside_black, whiten);
  }
}

void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  grow_region({pBinImg, width, height}, pResImg, {x1, x2, y1, y2}, flag_white_beside_black, whiten);
}

void NuvBinImgMaxFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color) {
  grow_to_color({pBinImg, width, height}, color, flag_255, mark_black);
}
