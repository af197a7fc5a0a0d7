// Fixed factors: doubled images, and images shrunk by samples, by means and by medians of blocks.

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/arithmetic.h"
#include "core/buffer.h"
#include "core/byte_counter.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "histogram/histogram.h"
#include "nuv/geometry.h"

namespace nuv {
namespace {

// ---- doubling ----

NUV_INLINE uint8_t middle(uint8_t a, uint8_t b) {
  return static_cast<uint8_t>((a & b) + ((a ^ b) >> 1));
}

// Writes the first n pixels of a row, each followed by the mean of it and the next pixel, rounded down.
NUV_ROW_KERNEL void double_gray_row(const uint8_t* NUV_RESTRICT in, std::ptrdiff_t n,
                                    uint8_t* NUV_RESTRICT out) {
  std::ptrdiff_t x = 0;
#if NUV_HAS_LANES
  for (; x + 16 <= n; x += 16) {
    const Bytes16 pixels = load16(in + x);
    const Bytes16 next = load16(in + x + 1);
    const Bytes16 middles = (pixels & next) + ((pixels ^ next) >> 1);
    store16(out + 2 * x, zip_low(pixels, middles));
    store16(out + 2 * x + 16, zip_high(pixels, middles));
  }
#endif
  for (; x < n; ++x) {
    out[2 * x] = in[x];
    out[2 * x + 1] = middle(in[x], in[x + 1]);
  }
}
NUV_ROW_KERNEL void double_rgb_row(const uint8_t* NUV_RESTRICT in, std::ptrdiff_t n,
                                   uint8_t* NUV_RESTRICT out) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      out[6 * x + c] = in[3 * x + c];
      out[6 * x + 3 + c] = middle(in[3 * x + c], in[3 * x + 3 + c]);
    }
  }
}

NUV_ROW_KERNEL void middle_row(const uint8_t* above, const uint8_t* below, std::ptrdiff_t n,
                               uint8_t* NUV_RESTRICT out) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = middle(above[x], below[x]);
}

using DoubleRow = void(const uint8_t* in, std::ptrdiff_t n, uint8_t* out);

template <int Channels>
void double_image(Image<Channels> image, DoubleRow double_row, uint8_t* result) {
  if (image.empty()) return;
  const std::ptrdiff_t between = image.width - 1;
  const std::ptrdiff_t row_bytes = 2 * Channels * static_cast<std::ptrdiff_t>(image.width);
  uint8_t* out = result;
  for (int32_t y = 0; y < image.height; ++y, out += 2 * row_bytes) {
    const uint8_t* row = image.row(y);
    double_row(row, between, out);
    for (std::ptrdiff_t x : {2 * between, 2 * between + 1}) {
      std::memcpy(out + x * Channels, row + between * Channels, Channels);
    }
    if (y > 0) middle_row(out - 2 * row_bytes, out, row_bytes, out - row_bytes);
  }
  std::memcpy(out - row_bytes, out - 2 * row_bytes, static_cast<std::size_t>(row_bytes));
}

// ---- samples ----

void extract(GrayImage image, int32_t m, int32_t n, uint8_t* result) {
  if (image.empty() || m < 1 || n < 1) return;
  const int32_t columns = image.width / m;
  const int32_t rows = image.height / n;
  for (int32_t y = 0; y < rows; ++y, result += columns) {
    const uint8_t* row = image.row(y * n);
    for (std::ptrdiff_t x = 0; x < columns; ++x) result[x] = row[x * m];
  }
}

// ---- means ----

// Divides and truncates. A sum that cannot have wrapped is multiplied by the reciprocal. One half is added to
// it first, so that the product is farther from an integer than the rounding error of a double.
NUV_ROW_KERNEL void divide_row(const int32_t* sums, int32_t divisor, std::ptrdiff_t n,
                               uint8_t* NUV_RESTRICT out) {
  if (divisor > INT32_MAX / 255) {
    for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = static_cast<uint8_t>(sums[i] / divisor);
    return;
  }
  const double reciprocal = 1.0 / divisor;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    out[i] = static_cast<uint8_t>(static_cast<int32_t>((sums[i] + 0.5) * reciprocal));
  }
}

// Each row of blocks is summed by columns first, and the column sums of each block are then added up.
template <int Channels>
void shrink_by_mean(Image<Channels> image, int32_t m, int32_t n, uint8_t* result) {
  if (image.empty() || m < 1 || n < 1 || m > image.width) return;
  const std::ptrdiff_t columns = image.width / m;
  const int32_t rows = image.height / n;
  const std::ptrdiff_t used = columns * m * Channels;
  const Buffer<int32_t> buffer = allocate<int32_t>(used + columns * Channels);
  if (!buffer) return;
  int32_t* sums = buffer.get();
  int32_t* totals = m > 1 ? sums + used : sums;
  for (int32_t y = 0; y < rows; ++y, result += columns * Channels) {
    std::fill_n(sums, used, 0);
    for (int32_t r = 0; r < n; ++r) add_row(sums, image.row(y * n + r), used);
    const int32_t* block = sums;
    for (std::ptrdiff_t x = 0; x < columns && m > 1; ++x, block += m * Channels) {
      int32_t total[Channels] = {};
#if defined(__clang__)
// Otherwise clang adds up four vectors at once, and blocks of usual sizes do not have as many pixels.
#pragma clang loop vectorize_width(8) interleave_count(1)
#endif
      for (std::ptrdiff_t i = 0; i < m; ++i) {
        for (int c = 0; c < Channels; ++c) total[c] += block[i * Channels + c];
      }
      for (int c = 0; c < Channels; ++c) totals[x * Channels + c] = total[c];
    }
    divide_row(totals, m * n, columns * Channels, result);
  }
}

// The sum of two bytes, loaded as one word. The byte order of the processor does not matter.
NUV_INLINE uint16_t pair_sum(const uint8_t* p) {
  uint16_t pair;
  std::memcpy(&pair, p, 2);
  return static_cast<uint16_t>((pair & 255) + (pair >> 8));
}

#if NUV_HAS_LANES
// The means of 2x2 blocks, as words. The word low + 256*high minus 255*high is the sum of its two bytes.
template <class Pairs>
NUV_INLINE void means_2x2(const uint8_t* p, std::ptrdiff_t width, Pairs& means) {
  Pairs upper;
  Pairs lower;
  load_words(p, upper);
  load_words(p + width, lower);
  means = (upper + lower - 255 * ((upper >> 8) + (lower >> 8))) >> 2;
}

template <class Pairs, int... J>
NUV_INLINE void store_low_bytes(const Pairs& a, const Pairs& b, uint8_t* out,
                                std::integer_sequence<int, J...> /*places*/) {
  using Lanes = Bytes<sizeof(Pairs)>;
  const Lanes bytes =
      __builtin_shufflevector(reinterpret_cast<Lanes>(a), reinterpret_cast<Lanes>(b), 2 * J...);
  store(out, bytes);
}

// Writes as many means at once as a vector has bytes, and returns their number.
template <class Pairs>
NUV_INLINE std::ptrdiff_t means_2x2_by(const uint8_t* p, std::ptrdiff_t width, std::ptrdiff_t next,
                                       std::ptrdiff_t n, uint8_t* out) {
  constexpr std::ptrdiff_t kStep = sizeof(Pairs);
  std::ptrdiff_t x = 0;
  for (; x + kStep <= n; x += kStep) {
    const uint8_t* q = p + 2 * x;
    __builtin_prefetch(q + next);
    __builtin_prefetch(q + next + width);
    Pairs left;
    Pairs right;
    means_2x2(q, width, left);
    means_2x2(q + kStep, width, right);
    store_low_bytes(left, right, out + x, std::make_integer_sequence<int, kStep>{});
  }
  return x;
}
#endif

// The rows of the blocks below start at the distance next. They are fetched meanwhile, because the work on a row
// is too short to hide the delay of the memory.
NUV_ROW_KERNEL void mean_2x2_row(const uint8_t* NUV_RESTRICT p, std::ptrdiff_t width,
                                 [[maybe_unused]] std::ptrdiff_t next, std::ptrdiff_t n,
                                 uint8_t* NUV_RESTRICT out) {
  std::ptrdiff_t x = 0;
#if NUV_HAS_LANES
  x = has_wide_lanes() ? means_2x2_by<UnsignedShorts16>(p, width, next, n, out)
                       : means_2x2_by<UnsignedShorts8>(p, width, next, n, out);
#endif
  for (; x < n; ++x) {
    const auto sum = static_cast<uint16_t>(pair_sum(p + 2 * x) + pair_sum(p + width + 2 * x));
    out[x] = static_cast<uint8_t>(sum >> 2);
  }
}

NUV_ROW_KERNEL void mean_4x4_row(const uint8_t* NUV_RESTRICT p, std::ptrdiff_t width, std::ptrdiff_t /*next*/,
                                 std::ptrdiff_t n, uint8_t* NUV_RESTRICT out) {
  constexpr std::ptrdiff_t kSpan = 512;
  uint16_t pairs[2 * kSpan];
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = std::min(kSpan, n - first);
    const uint8_t* q = p + 4 * first;
    for (std::ptrdiff_t x = 0; x < 2 * span; ++x) {
      pairs[x] = static_cast<uint16_t>(pair_sum(q + 2 * x) + pair_sum(q + width + 2 * x) +
                                       pair_sum(q + 2 * width + 2 * x) + pair_sum(q + 3 * width + 2 * x));
    }
    for (std::ptrdiff_t x = 0; x < span; ++x) {
      out[first + x] = static_cast<uint8_t>(static_cast<uint16_t>(pairs[2 * x] + pairs[2 * x + 1]) >> 4);
    }
  }
}

using MeanRow = void(const uint8_t* p, std::ptrdiff_t width, std::ptrdiff_t next, std::ptrdiff_t n,
                     uint8_t* out);

void shrink_by_mean(GrayImage image, int32_t side, MeanRow mean_row, uint8_t* result) {
  if (image.empty()) return;
  const int32_t columns = image.width / side;
  const int32_t rows = image.height / side;
  const std::ptrdiff_t block_row = static_cast<std::ptrdiff_t>(side) * image.width;
  for (int32_t y = 0; y < rows; ++y, result += columns) {
    mean_row(image.row(y * side), image.width, y + 1 < rows ? block_row : 0, columns, result);
  }
}

// ---- medians ----

// The size of the cells that a length is cut into. If the division leaves a remainder, the length is divided
// by one cell fewer.
int32_t cell_size(int32_t length, int32_t cells) {
  const int32_t size = length / cells;
  return size * cells < length ? length / (cells - 1) : size;
}

uint8_t median_of(GrayImage image, Region cell, WindowBins& window) {
  if (cell.empty()) return 0;
  window.clear();
  for (int32_t y = cell.y1; y <= cell.y2; ++y) {
    for (int32_t x = cell.x1; x <= cell.x2; ++x) window.add(*image.at(x, y));
  }
  return low_byte(median_bin(window.bins(), window.count(), window.least()));
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvZoomGryImg2x2(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  double_image<1>({pGryImg, width, height}, double_gray_row, pResImg);
}

void NuvZoomRGBImg2x2(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg) {
  double_image<3>({pRGBImg, width, height}, double_rgb_row, pResImg);
}

void NuvShrinkGryImgByExtract(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                              uint8_t* pResImg) {
  extract({pGryImg, width, height}, M, N, pResImg);
}

void NuvShrinkImgByAvr(uint8_t* pImg, bool bRGB, int32_t width, int32_t height, int32_t M, int32_t N,
                       uint8_t* pResImg) {
  if (bRGB) {
    shrink_by_mean<3>({pImg, width, height}, M, N, pResImg);
  } else {
    shrink_by_mean<1>({pImg, width, height}, M, N, pResImg);
  }
}

void NuvShrinkGryImgByMedian(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                             int32_t resWidth, int32_t resHeight) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, resWidth, resHeight};
  if (source.empty() || result.empty()) return;
  const int32_t columns = cell_size(width, resWidth);
  const int32_t rows = cell_size(height, resHeight);
  WindowBins window;
  for (int32_t j = 0; j < resHeight; ++j) {
    for (int32_t i = 0; i < resWidth; ++i) {
      const Point corner{i * columns, j * rows};
      const Region cell{corner.x, std::min(columns, width - corner.x) + corner.x - 1, corner.y,
                        std::min(rows, height - corner.y) + corner.y - 1};
      *result.at(i, j) = median_of(source, cell, window);
    }
  }
}

void NuvShrinkGryImg2x2ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                 int32_t* pResWidth, int32_t* pResHeight) {
  *pResWidth = width / 2;
  *pResHeight = height / 2;
  extract({pGryImg, width, height}, 2, 2, pResImg);
}

void NuvShrinkGryImg2x2ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  shrink_by_mean({pGryImg, width, height}, 2, mean_2x2_row, pResImg);
}

void NuvShrinkGryImg4x4ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                             int32_t* pResWidth, int32_t* pResHeight) {
  *pResWidth = width / 4;
  *pResHeight = height / 4;
  shrink_by_mean({pGryImg, width, height}, 4, mean_4x4_row, pResImg);
}

void NuvShrinkGryImg4x4ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                 int32_t* pResWidth, int32_t* pResHeight) {
  *pResWidth = width / 4;
  *pResHeight = height / 4;
  extract({pGryImg, width, height}, 4, 4, pResImg);
}
