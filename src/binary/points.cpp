// Points removed for the company that they keep, or do not keep.

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/arithmetic.h"
#include "frame/neighbours.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void keep_accompanied(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                     std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t beside = p[-w - 1] | p[-w] | p[-w + 1] | p[-1] | p[1] | p[w - 1] | p[w] | p[w + 1];
    // A load under the condition would keep the loop from becoming vector code.
    const uint8_t pixel = *p;
    out[x] = beside != 0 ? pixel : 0;
  }
}

// Changes the interior pixels of value gry whose number of neighbours of that value is too great or too small
// for the test. A changed pixel is no neighbour to those behind it.
template <class Test>
void change_points(GrayImage image, int32_t gry, Test is_changed) {
  if (image.empty()) return;
  const std::array<std::ptrdiff_t, 8> offsets = neighbour_offsets(image.width);
  for (int32_t y = 1; y < image.height - 1; ++y) {
    for (int32_t x = 1; x < image.width - 1; ++x) {
      uint8_t* p = image.at(x, y);
      if (*p != gry) continue;
      const auto equal = std::count_if(offsets.begin(), offsets.end(),
                                       [=](std::ptrdiff_t offset) { return p[offset] == gry; });
      if (is_changed(equal)) *p = low_byte(255 - gry);
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgDeleteIsolatedPoints(uint8_t* pBinImg, int32_t width, int32_t height) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty() || height < 3) return;
  // The rows between the first and the last are one run, so the pixels of the first and the last column meet
  // those of the neighbouring row. Before the image and behind it everything is 0: the run's own first and
  // last pixel look there, and get a row of their own.
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

  // A deleted pixel has no neighbours, so nobody misses it: blocks may see what was deleted before them.
  constexpr std::ptrdiff_t kBlock = 4096;
  std::array<uint8_t, kBlock> kept;
  for (uint8_t* p = first + 1; p < last; p += kBlock) {
    const std::ptrdiff_t n = std::min(kBlock, last - p);
    keep_accompanied(p, w, kept.data(), n);
    std::memcpy(p, kept.data(), static_cast<std::size_t>(n));
  }
  if (is_isolated(last)) *last = 0;
}

void NuvBinImgDeletePointsMoreThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry, int32_t N) {
  change_points({pBinImg, width, height}, gry, [=](std::ptrdiff_t count) { return count > N; });
}

void NuvBinImgDeletePointsLessThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry, int32_t N) {
  change_points({pBinImg, width, height}, gry, [=](std::ptrdiff_t count) { return count < N; });
}
