// Gradient images of fixed windows.
//
// One pass serves all of them: a row kernel writes the interior, and the border is zeroed. The functions
// differ in the kernel, which states the response, how responses combine, and the clamp.

#include <algorithm>
#include <cstring>

#include "core/borders.h"
#include "core/interleaved.h"
#include "core/lanes.h"
#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/sobel.h"
#include "core/views.h"
#include "nuv/colour.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

// ---- responses; p is the pixel, w the row stride ----

NUV_INLINE uint8_t at_most(int16_t v, int16_t limit) {
  return static_cast<uint8_t>(v < limit ? v : limit);
}

// Two pixels before p minus two after it; step leads from one pixel to the next.
NUV_INLINE int16_t prewitt_5(const uint8_t* p, std::ptrdiff_t step) {
  return magnitude(static_cast<int16_t>(p[-2 * step] + p[-step] - p[step] - p[2 * step]));
}

// ---- row kernels: n pixels from p on ----

NUV_LOAD_BOUND_ROW_KERNEL void robert_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                          std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    out[x] = greater(difference(p[1], p[-1]), difference(p[w], p[-w]));
  }
}

// n and w count bytes, and step is the number of bytes in a pixel: 1 in a gray image, 3 in an RGB image.
NUV_ROW_KERNEL void robert_sum_row(const uint8_t* p, std::ptrdiff_t step, std::ptrdiff_t w,
                                   uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    out[x] = at_most(static_cast<int16_t>(difference(p[w], p[-w]) + difference(p[step], p[-step])), 255);
  }
}

NUV_ROW_KERNEL void gate_row(const uint8_t* mask, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t kept = mask[x] != 0 ? 255 : 0;
    out[x] &= kept;
  }
}

NUV_ROW_KERNEL void sobel_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                              std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    out[x] = at_most(static_cast<int16_t>(magnitude(sobel_0(p, w)) + magnitude(sobel_90(p, w))), 255);
  }
}

NUV_ROW_KERNEL void sobel_0_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = at_most(magnitude(sobel_0(p, w)), 255);
}

NUV_ROW_KERNEL void sobel_90_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                 std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = at_most(magnitude(sobel_90(p, w)), 255);
}

// In the Just forms only the stronger direction counts. An edge at exactly 45 degrees gives 0 in both.
NUV_ROW_KERNEL void sobel_0_just_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                     std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const int16_t g0 = magnitude(sobel_0(p, w));
    out[x] = magnitude(sobel_90(p, w)) < g0 ? at_most(g0, 255) : 0;
  }
}

NUV_ROW_KERNEL void sobel_90_just_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                      std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const int16_t g90 = magnitude(sobel_90(p, w));
    out[x] = magnitude(sobel_0(p, w)) < g90 ? at_most(g90, 255) : 0;
  }
}

NUV_ROW_KERNEL void prewitt_90_row(const uint8_t* p, std::ptrdiff_t /*w*/, uint8_t* NUV_RESTRICT out,
                                   std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = at_most(prewitt_5(p, 1), 255);
}

NUV_ROW_KERNEL void prewitt_0_90_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                     std::ptrdiff_t n) {
  NUV_WASM_PLACES(8)
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    out[x] = greater(at_most(prewitt_5(p, 1), 250), at_most(prewitt_5(p, w), 250));
  }
}

// sums[x] = values[x] + ... + values[x + 4] for n places. The lanes are written out because clang does not
// vectorise the plain loop: it carries loaded values over to the next places.
NUV_INLINE void sums_of_five(const int16_t* values, int16_t* NUV_RESTRICT sums, std::ptrdiff_t n) {
  std::ptrdiff_t x = 0;
#if NUV_HAS_LANES
  constexpr std::ptrdiff_t kLanes = 16;
  for (; x + kLanes <= n; x += kLanes) {
    Shorts16 sum;
    load(values + x, sum);
    for (int i = 1; i < 5; ++i) {
      Shorts16 next;
      load(values + x + i, next);
      sum += next;
    }
    store(sums + x, sum);
  }
#endif
  for (; x < n; ++x) {
    int32_t sum = 0;
    for (int i = 0; i < 5; ++i) sum += values[x + i];
    sums[x] = static_cast<int16_t>(sum);
  }
}

// Two rows above minus two rows below, over five columns.
NUV_ROW_KERNEL void prewitt_0_5x5_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                      std::ptrdiff_t n) {
  constexpr std::ptrdiff_t kSpan = 1024;
  int16_t columns[kSpan + 4];  // begins two columns before the span
  int16_t sums[kSpan];
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = std::min(kSpan, n - first);
    const uint8_t* q = p + first - 2;
    for (std::ptrdiff_t x = 0; x < span + 4; ++x, ++q) {
      columns[x] = static_cast<int16_t>(q[-2 * w] + q[-w] - q[w] - q[2 * w]);
    }
    sums_of_five(columns, sums, span);
    for (std::ptrdiff_t x = 0; x < span; ++x) out[first + x] = at_most(magnitude(sums[x]), 250);
  }
}

// ---- passes ----

using RowKernel = void(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);

// Writes the region of the result, which must lie in the interior.
void write_region(GrayImage source, GrayImage result, Region region, RowKernel kernel) {
  for_rows(source, result, region,
           [=](const uint8_t* row, uint8_t* out, std::ptrdiff_t n) { kernel(row, source.width, out, n); });
}

// Writes the interior as one run from its first pixel to its last, so that the kernel starts once per image
// and not once per row. The run crosses the border between two rows; clear_band() zeroes what it wrote there.
// A short head brings the results of the long call to an aligned address.
void write_interior(GrayImage source, GrayImage result, int32_t band, RowKernel kernel) {
  constexpr std::ptrdiff_t kAlignment = 64;
  const Region inner = source.interior(band);
  if (!source.empty() && !inner.empty()) {
    const uint8_t* first = source.at(inner.x1, inner.y1);
    uint8_t* out = result.at(inner.x1, inner.y1);
    const std::ptrdiff_t n = source.at(inner.x2, inner.y2) - first + 1;
    const auto misaligned = static_cast<std::ptrdiff_t>(-reinterpret_cast<uintptr_t>(out) % kAlignment);
    const std::ptrdiff_t head = std::min(misaligned, n);
    kernel(first, source.width, out, head);
    kernel(first + head, source.width, out + head, n - head);
  }
  clear_band(result, band);
}

// Calls write(p, offset, n) for each interior row: p points to its first interior byte in the source, offset
// is the index of that pixel in the image, and n is the number of pixels.
template <class Write>
void for_interior_rows(RgbImage source, Write write) {
  const Region inner = source.interior();
  if (source.empty() || inner.empty()) return;
  for (int32_t y = inner.y1; y <= inner.y2; ++y) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(y) * source.width + inner.x1;
    write(source.pixels + 3 * offset, offset, inner.columns());
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvRobert(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, robert_row);
}

void NuvRobertByMask(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1,
                 [](const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n) {
                   robert_sum_row(p, 1, w, out, n);
                 });
  if (pMskImg != nullptr) gate_row(pMskImg, pResImg, GrayImage{pResImg, width, height}.size());
}

void NuvRobertRGBImage2GryRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg) {
  clear_band({pResImg, width, height}, 1);
  for_interior_rows({pRGBImg, width, height}, [=](const uint8_t* p, std::ptrdiff_t offset, std::ptrdiff_t n) {
    uint8_t sums[3 * kPlaneBlock];
    for (std::ptrdiff_t x = 0; x < n; x += kPlaneBlock) {
      const std::ptrdiff_t span = std::min(kPlaneBlock, n - x);
      robert_sum_row(p + 3 * x, 3, 3 * static_cast<std::ptrdiff_t>(width), sums, 3 * span);
      NuvExtractMaxRGB2GryImg(sums, static_cast<int32_t>(span), 1, pResImg + offset + x);
    }
  });
}

void NuvRobertRGBImage2RGBRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const RgbImage result{pResImg, width, height};
  if (result.empty()) return;
  for_interior_rows({pRGBImg, width, height}, [=](const uint8_t* p, std::ptrdiff_t offset, std::ptrdiff_t n) {
    robert_sum_row(p, 3, 3 * static_cast<std::ptrdiff_t>(width), pResImg + 3 * offset, 3 * n);
  });
  // Clears the border as if the image had one byte per pixel, over parts of the interior.
  set_side_bytes(result, 0);
}

void NuvGryImgSobel(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, sobel_row);
}

void NuvGryImgSobel90Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, sobel_90_just_row);
}

void NuvGryImgSobel0Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, sobel_0_just_row);
}

void NuvGryImgSobel0(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, sobel_0_row);
}

void NuvGryImgSobel90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 1, sobel_90_row);
}

void NuvGradient5x5ByPrewitt0_90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 2, prewitt_0_90_row);
}

void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 2, prewitt_90_row);
}

void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                  int32_t y2, uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  write_region(image, {pResImg, width, height}, image.interior(2).intersected({x1, x2, y1, y2}),
               prewitt_90_row);
}

void NuvGradient0ByPrewitt5x5(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  write_interior({pGryImg, width, height}, {pResImg, width, height}, 2, prewitt_0_5x5_row);
}
