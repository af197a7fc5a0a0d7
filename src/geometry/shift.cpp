// Shifts of whole images and of their rows.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/arithmetic.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/geometry.h"

namespace nuv {
namespace {

constexpr int32_t kUnit = 4096;

NUV_ROW_KERNEL void blend_row(const uint8_t* NUV_RESTRICT in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n,
                              int32_t weight) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    out[x] = static_cast<uint8_t>(((kUnit - weight) * in[x] + weight * in[x + 1]) >> 12);
  }
}

// Shifts row y by shift/4096 pixels to the left. Columns below 0 are the pixels before the row in memory.
// Pixels that would be read or written outside the image are left out.
void shift_row(GrayImage source, int32_t y, int32_t shift, bool interpolated, GrayImage result) {
  const int32_t whole = shift >> 12;
  const int32_t weight = interpolated ? shift & (kUnit - 1) : 0;
  const int64_t row = int64_t{y} * source.width;
  const int64_t last_read = source.size() - (weight != 0 ? 2 : 1);
  int64_t x = shift > 0 ? 0 : whole + 2;
  const int64_t end = shift > 0 ? int64_t{source.width} - whole - 1 : source.width;
  while (x < end) {
    // The 32-bit product wraps at column next, where the place reaches 2^19. Before it the places follow each
    // other.
    const int64_t place = (static_cast<int32_t>(x) * kUnit + shift) >> 12;
    const int64_t next = std::min(end, x + (1 << 19) - place);
    const int64_t first = std::max({x, -row, x - (row + place)});
    const int64_t readable_end = std::min(next, x + last_read + 1 - (row + place));
    if (first < readable_end) {
      const uint8_t* in = source.pixels + row + place + (first - x);
      uint8_t* out = result.at(static_cast<int32_t>(first), y);
      const auto n = static_cast<std::ptrdiff_t>(readable_end - first);
      if (weight != 0) {
        blend_row(in, out, n, weight);
      } else {
        std::memcpy(out, in, static_cast<std::size_t>(n));
      }
    }
    x = next;
  }
}

void shift_rows(GrayImage source, double k, bool interpolated, GrayImage result) {
  if (source.empty()) return;
  const int32_t step = truncated(k * kUnit);
  for (int32_t y = 0; y < source.height; ++y) shift_row(source, y, y * step, interpolated, result);
}

// A row of the result that has no row in the source is shifted in place.
template <int Channels>
void shift_image(Image<Channels> source, int32_t dx, int32_t dy, Image<Channels> result) {
  if (source.empty()) return;
  const auto free = static_cast<int32_t>(std::min<int64_t>(std::abs(int64_t{dx}), source.width));
  const int32_t kept = source.width - free;
  const auto bytes = [](int32_t pixels) { return static_cast<std::size_t>(pixels) * Channels; };
  for (int32_t y = 0; y < source.height; ++y) {
    const int64_t from = int64_t{y} - dy;
    const uint8_t* row =
        from >= 0 && from < source.height ? source.row(static_cast<int32_t>(from)) : result.row(y);
    if (dx < 0) {
      std::memmove(result.row(y), row + bytes(free), bytes(kept));
      std::memset(result.at(kept, y), 0, bytes(free));
    } else {
      std::memmove(result.at(free, y), row, bytes(kept));
      std::memset(result.row(y), 0, bytes(free));
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvShiftXPerRowFine(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg) {
  shift_rows({pGryImg, width, height}, k, true, {pResImg, width, height});
}

void NuvShiftXPerRowFast(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg) {
  shift_rows({pGryImg, width, height}, k, false, {pResImg, width, height});
}

void NuvImageShift(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t dx, int32_t dy,
                   uint8_t* pResImg) {
  if (bRGB) {
    shift_image<3>({pImg, width, height}, dx, dy, {pResImg, width, height});
  } else {
    shift_image<1>({pImg, width, height}, dx, dy, {pResImg, width, height});
  }
}
