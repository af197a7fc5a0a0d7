// Points removed by the number of their neighbours.
//
// The count of neighbours uses a scan that sees its own changes. All neighbours of a pixel are known before the
// scan of its row, except that the left one may change. So a row kernel works out both outcomes for every
// pixel, and a scan of the candidates chooses one of the two.

#include <algorithm>
#include <array>
#include <cstring>

#include "core/arithmetic.h"
#include "core/neighbours.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void delete_isolated_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                        std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t beside = p[-w - 1] | p[-w] | p[-w + 1] | p[-1] | p[1] | p[w - 1] | p[w] | p[w + 1];
    // A load under the condition would prevent vector code.
    const uint8_t pixel = *p;
    out[x] = beside != 0 ? pixel : 0;
  }
}

// ---- points changed by how many neighbours have their value ----

// Flags of a pixel that changes if its left neighbour stays, and if its left neighbour changes.
constexpr uint8_t kIfLeftStays = 1;
constexpr uint8_t kIfLeftChanges = 2;

NUV_INLINE int8_t one_if(bool condition) {
  return condition ? 1 : 0;
}

// Compares counts by the sign of their difference. clang compares bytes that are sums as 32-bit integers.
NUV_INLINE bool is_less(int8_t a, int8_t b) {
  return static_cast<int8_t>(a - b) < 0;
}

// Flags the pixels of the given value that change because more than n, or fewer than n, of their neighbours
// have it.
NUV_INLINE void flag_row(const uint8_t* p, std::ptrdiff_t w, uint8_t value, int8_t n, bool more,
                         uint8_t* NUV_RESTRICT flags, std::ptrdiff_t count) {
  for (std::ptrdiff_t x = 0; x < count; ++x, ++p) {
    const auto above =
        static_cast<int8_t>(one_if(p[-w - 1] == value) + one_if(p[-w] == value) + one_if(p[-w + 1] == value));
    const auto below =
        static_cast<int8_t>(one_if(p[w - 1] == value) + one_if(p[w] == value) + one_if(p[w + 1] == value));
    const auto others = static_cast<int8_t>(above + below + one_if(p[1] == value));
    const auto all = static_cast<int8_t>(others + one_if(p[-1] == value));
    const uint8_t if_left_stays = is_less(more ? n : all, more ? all : n) ? kIfLeftStays : 0;
    const uint8_t if_left_changes = is_less(more ? n : others, more ? others : n) ? kIfLeftChanges : 0;
    const uint8_t has_value = *p == value ? 255 : 0;
    flags[x] = has_value & (if_left_stays | if_left_changes);
  }
}
NUV_LOAD_BOUND_ROW_KERNEL void flag_more_than(const uint8_t* p, std::ptrdiff_t w, uint8_t value, int8_t n,
                                              uint8_t* NUV_RESTRICT flags, std::ptrdiff_t count) {
  flag_row(p, w, value, n, true, flags, count);
}
NUV_LOAD_BOUND_ROW_KERNEL void flag_fewer_than(const uint8_t* p, std::ptrdiff_t w, uint8_t value, int8_t n,
                                               uint8_t* NUV_RESTRICT flags, std::ptrdiff_t count) {
  flag_row(p, w, value, n, false, flags, count);
}
using FlagRow = void(const uint8_t* p, std::ptrdiff_t w, uint8_t value, int8_t n, uint8_t* flags,
                     std::ptrdiff_t count);

// A changed pixel has another value, so it does not count for the pixels after it.
void change_points(GrayImage image, int32_t gry, int8_t n, FlagRow flag) {
  if (image.empty() || gry < 0 || gry > 255) return;
  constexpr int32_t kBlock = 4096;
  std::array<uint8_t, kBlock> flags;
  const auto value = static_cast<uint8_t>(gry);
  const auto turned = static_cast<uint8_t>(255 - value);
  const Region interior = image.interior();
  for (int32_t y = interior.y1; y <= interior.y2; ++y) {
    for (int32_t x = interior.x1; x <= interior.x2; x += kBlock) {
      uint8_t* row = image.at(x, y);
      const int32_t count = std::min(kBlock, interior.x2 + 1 - x);
      // The pixel left of the block already has its new value.
      flag(row, image.width, value, n, flags.data(), count);
      for_white_runs({flags.data(), count, 1}, [&](int32_t first, int32_t last) {
        uint8_t decides = kIfLeftStays;
        for (int32_t i = first; i <= last; ++i) {
          const bool changes = (flags[i] & decides) != 0;
          row[i] = changes ? turned : value;
          decides = changes ? kIfLeftChanges : kIfLeftStays;
        }
      });
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgDeleteIsolatedPoints(uint8_t* pBinImg, int32_t width, int32_t height) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty() || height < 3) return;
  // The rows between the first and the last are one stretch of memory, in which the ends of adjacent rows are
  // neighbours. Everything before and after the image is 0. Only the first and the last pixel of the stretch
  // have neighbours there, so they are tested apart.
  const std::ptrdiff_t w = width;
  uint8_t* first = image.row(1);
  uint8_t* last = image.row(height - 1) - 1;
  const auto is_isolated = [w, &image](const uint8_t* p) {
    const uint8_t* end = image.pixels + image.size();
    for (std::ptrdiff_t offset : neighbour_offsets(w)) {
      const std::ptrdiff_t place = p - image.pixels + offset;
      if (place >= 0 && place < end - image.pixels && image.pixels[place] != 0) return false;
    }
    return true;
  };
  if (is_isolated(first)) *first = 0;

  // A deleted pixel has no white neighbours, so its deletion changes no other result. Blocks may therefore be
  // written back one by one.
  constexpr std::ptrdiff_t kBlock = 4096;
  std::array<uint8_t, kBlock> kept;
  for (uint8_t* p = first + 1; p < last; p += kBlock) {
    const std::ptrdiff_t n = std::min(kBlock, last - p);
    delete_isolated_row(p, w, kept.data(), n);
    std::memcpy(p, kept.data(), static_cast<std::size_t>(n));
  }
  if (is_isolated(last)) *last = 0;
}

void NuvBinImgDeletePointsMoreThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry, int32_t N) {
  // Counts lie between 0 and 8.
  change_points({pBinImg, width, height}, gry, static_cast<int8_t>(std::clamp(N, -1, 8)), flag_more_than);
}

void NuvBinImgDeletePointsLessThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry, int32_t N) {
  change_points({pBinImg, width, height}, gry, static_cast<int8_t>(std::clamp(N, 0, 9)), flag_fewer_than);
}
