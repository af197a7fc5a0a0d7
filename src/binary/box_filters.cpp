// Box filters with a threshold on the window's sum.
//
// Column sums slide down the image, and sums of neighbours by doubling turn them into the sums of windows. Sums
// have 16 bits where they fit. There are two rules for the sides of the image: the fast filter computes where
// the whole window fits and repeats the nearest result; the filter with a mask shrinks its window around the
// pixel.

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

template <class Sum>
NUV_ROW_KERNEL void threshold_sums(const Sum* sums, Sum threshold, uint8_t* NUV_RESTRICT out,
                                   std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = sums[x] > threshold ? 255 : 0;
}

// ---- whole windows ----

bool fits(GrayImage image, int32_t m, int32_t n) {
  return !image.empty() && m >= 0 && n >= 0 && m <= (image.width - 1) / 2 && n <= (image.height - 1) / 2;
}

// columns receives the column sums of the last 2 * n rows; it has width entries or is null. If allocation
// fails, nothing is written and the result is false.
template <class Sum>
bool filter_whole_windows(GrayImage image, GrayImage result, int32_t m, int32_t n, Sum threshold,
                          uint32_t* columns) {
  WindowSums<1, Sum> sums(image);
  if (!sums.allocated()) return false;
  const auto width = static_cast<std::size_t>(image.width);
  const int32_t last = image.height - 1 - n;
  const int32_t windows = image.width - 2 * m;
  for (int32_t y = 0; y <= 2 * n; ++y) sums.add(y);
  for (int32_t y = n; y <= last; ++y) {
    if (y > n) sums.exchange(y + n, y - n - 1);
    uint8_t* row = result.row(y);
    threshold_sums(sums.of_windows(2 * m + 1), threshold, row + m, windows);
    std::memset(row, row[m], static_cast<std::size_t>(m));
    std::memset(row + m + windows, row[m + windows - 1], static_cast<std::size_t>(m));
  }
  for (int32_t y = 0; y < n; ++y) {
    std::memcpy(result.row(y), result.row(n), width);
    std::memcpy(result.row(last + 1 + y), result.row(last), width);
  }
  if (columns != nullptr) {
    sums.subtract(last - n);
    std::copy_n(sums.of_columns(), width, columns);
  }
  return true;
}

// Whether 16 bits hold the sum of a window with these half sizes.
bool is_small(int32_t m, int32_t n) {
  return (2 * int64_t{m} + 1) * (2 * int64_t{n} + 1) * 255 <= UINT16_MAX;
}

bool filter_whole_windows(GrayImage image, GrayImage result, int32_t m, int32_t n, uint32_t threshold,
                          uint32_t* columns) {
  if (!is_small(m, n)) return filter_whole_windows<uint32_t>(image, result, m, n, threshold, columns);
  // No sum is above UINT16_MAX, so greater thresholds may be lowered to it.
  const auto small_threshold = static_cast<uint16_t>(std::min<uint32_t>(threshold, UINT16_MAX));
  return filter_whole_windows<uint16_t>(image, result, m, n, small_threshold, columns);
}

// ---- shrinking windows ----

constexpr int32_t kMaxMaskedWidth = 4095;

// The bits of a pixel that a byte of the mask keeps.
struct Complement {
  uint8_t operator()(uint8_t mask) const { return static_cast<uint8_t>(~mask); }
};
struct UpperHalfRemoves {
  uint8_t operator()(uint8_t mask) const { return mask <= 128 ? 255 : 0; }
};

NUV_ROW_KERNEL void apply_complement(const uint8_t* row, const uint8_t* mask, uint8_t* NUV_RESTRICT out,
                                     std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = Complement()(mask[x]) & row[x];
}
NUV_ROW_KERNEL void apply_upper_half(const uint8_t* row, const uint8_t* mask, uint8_t* NUV_RESTRICT out,
                                     std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = UpperHalfRemoves()(mask[x]) & row[x];
}
using ApplyMask = void(const uint8_t* row, const uint8_t* mask, uint8_t* out, std::ptrdiff_t n);

// 255 where the sums of n windows are above a signed threshold of 32 bits.
template <class Sum>
void threshold_sums_signed(const Sum* sums, int32_t threshold, uint8_t* out, std::ptrdiff_t n) {
  constexpr auto kMost = static_cast<uint32_t>(std::numeric_limits<Sum>::max());
  if (threshold < 0) {
    std::memset(out, 255, static_cast<std::size_t>(n));
  } else {
    threshold_sums(sums, static_cast<Sum>(std::min(static_cast<uint32_t>(threshold), kMost)), out, n);
  }
}

// A window reaches equally far up and down, and equally far left and right, but not beyond the image. Sum must
// hold the sum of every window.
template <class Sum>
void remove_mask_and_filter(GrayImage image, GrayImage mask, GrayImage result, int32_t m, int32_t n,
                            int32_t threshold, ApplyMask apply) {
  const int32_t width = image.width;
  const int32_t height = image.height;
  std::array<uint8_t, kMaxMaskedWidth> masked;
  std::array<Sum, kMaxMaskedWidth> columns;
  std::array<Sum, kMaxMaskedWidth> work;
  std::array<Sum, kMaxMaskedWidth> more_work;
  std::fill_n(columns.begin(), width, Sum{0});
  const auto masked_row = [&](int32_t y) {
    apply(image.row(y), mask.row(y), masked.data(), width);
    return masked.data();
  };

  // The column sums hold the rows first to end - 1.
  int32_t first = 0;
  int32_t end = 0;
  for (int32_t y = 0; y < height; ++y) {
    const int32_t reach = std::min({y, n, height - 1 - y});
    while (end <= y + reach) add_row(columns.data(), masked_row(end++), width);
    while (first < y - reach) subtract_row(columns.data(), masked_row(first++), width);

    const int32_t rows = 2 * reach + 1;
    uint8_t* out = result.row(y);
    auto at_left = static_cast<int32_t>(columns[0]);
    auto at_right = static_cast<int32_t>(columns[width - 1]);
    for (int32_t x = 0; x < m; ++x) {
      const int32_t limit = (2 * x + 1) * rows * threshold;
      out[x] = at_left > limit ? 255 : 0;
      out[width - 1 - x] = at_right > limit ? 255 : 0;
      at_left += static_cast<int32_t>(columns[2 * x + 1] + columns[2 * x + 2]);
      at_right += static_cast<int32_t>(columns[width - 2 - 2 * x] + columns[width - 3 - 2 * x]);
    }
    const int32_t span = 2 * m + 1;
    const int32_t windows = width - 2 * m;
    const Sum* sums = neighbour_sums(columns.data(), windows, span, 1, work.data(), more_work.data());
    threshold_sums_signed(sums, span * rows * threshold, out + m, windows);
    // The last column always has the threshold 126.
    out[width - 1] = static_cast<int32_t>(columns[width - 1]) > rows * 126 ? 255 : 0;
  }
}

bool remove_mask_and_filter(GrayImage image, GrayImage mask, GrayImage result, int32_t m, int32_t n,
                            int32_t threshold, ApplyMask apply) {
  if (image.width > kMaxMaskedWidth) return false;
  if (image.empty()) return true;
  m = std::clamp(m, 0, (image.width - 1) / 2);
  n = std::clamp(n, 0, (image.height - 1) / 2);
  if (is_small(m, n)) {
    remove_mask_and_filter<uint16_t>(image, mask, result, m, n, threshold, apply);
  } else {
    remove_mask_and_filter<int32_t>(image, mask, result, m, n, threshold, apply);
  }
  return true;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N, uint32_t* pSum,
                     uint32_t threshold, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (!fits(image, M, N)) return;
  filter_whole_windows(image, {pResImg, width, height}, M, N, threshold, pSum);
}

bool NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                     uint32_t threshold, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (!fits(image, M, N)) return true;
  return filter_whole_windows(image, {pResImg, width, height}, M, N, threshold, nullptr);
}

bool NuvBinImgRemoveMskAndFilter(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t M,
                                 int32_t N, int32_t threshold, uint8_t* pResImg) {
  return remove_mask_and_filter({pBinImg, width, height}, {pMskImg, width, height}, {pResImg, width, height},
                                M, N, threshold, apply_complement);
}

bool NuvBinImgRemoveMskAndFilterUseLUT(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                       int32_t M, int32_t N, int32_t threshold, uint8_t* pResImg) {
  return remove_mask_and_filter({pBinImg, width, height}, {pMskImg, width, height}, {pResImg, width, height},
                                M, N, threshold, apply_upper_half);
}
