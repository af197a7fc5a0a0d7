// Box means.
//
// The sums of the columns over the rows of a window slide down with the rows. The sums of windows are formed
// from the column sums by doubling.
//
// The exports differ in two rules: what happens where a window does not fit (the two passes below), and which
// multiplier stands for an area.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/buffer.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/filters.h"

namespace nuv {
namespace {

NUV_INLINE uint8_t mean(uint32_t sum, uint32_t multiplier) {
  return static_cast<uint8_t>(sum * multiplier >> 24);
}

template <class Sum>
NUV_ROW_KERNEL void mean_row(const Sum* sums, uint32_t multiplier, uint8_t* NUV_RESTRICT out,
                             std::ptrdiff_t n) {
  NUV_WASM_PLACES(16)
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = mean(sums[i], multiplier);
}

// ---- sums ----

// A window of 2m + 1 columns by 2n + 1 rows.
struct Window {
  int32_t m;
  int32_t n;

  int64_t area() const { return (2 * static_cast<int64_t>(m) + 1) * (2 * static_cast<int64_t>(n) + 1); }
};

// Writes the means of all windows of 2m + 1 columns that lie in the row. The first one is centred at column m.
template <int Channels, class Sum>
void write_means(WindowSums<Channels, Sum>& sums, Image<Channels> result, int32_t y, int32_t m,
                 uint32_t multiplier) {
  const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(result.width - 2 * m) * Channels;
  mean_row(sums.of_windows(2 * m + 1), multiplier, result.at(m, y), n);
}

// Sums have 16 bits if the sum of a window fits: twice as many are added at once.
template <class Pass>
bool with_sums_for(Window window, Pass pass) {
  return window.area() * 255 <= UINT16_MAX ? pass(uint16_t{}) : pass(uint32_t{});
}

// ---- means at the border ----

uint32_t reciprocal(int64_t area) {
  return static_cast<uint32_t>((1 << 24) / area);
}

// The limited forms accept this area, but they have no reciprocal for it: the multiplier 1 gives a mean of 0.
constexpr int64_t kMaxArea = 16129;

uint32_t reciprocal_below_limit(int64_t area) {
  return area == kMaxArea ? 1 : reciprocal(area);
}

// Writes the means from one end of the row inwards. The window grows by a column on each side from one pixel
// to the next.
template <int Step, class Sum>
void write_growing(const Sum* columns, const uint32_t* multipliers, int32_t count, uint8_t* out) {
  uint32_t sum = columns[0];
  for (int32_t x = 0; x < count; ++x, out += Step) {
    *out = mean(sum, multipliers[x]);
    sum += columns[Step] + columns[2 * Step];
    columns += 2 * Step;
  }
}

// A window that does not fit shrinks equally on both sides and stays centred.
template <int Channels, class Sum>
bool average_shrinking(Image<Channels> source, Image<Channels> result, Window window,
                       uint32_t (*multiplier)(int64_t)) {
  const auto [m, n] = window;
  WindowSums<Channels, Sum> sums(source);
  const Buffer<uint32_t> multipliers = allocate<uint32_t>(int64_t{m} + 1);
  if (!sums.allocated() || !multipliers) return false;
  const int32_t last = source.height - 1;
  sums.add(0);
  for (int32_t y = 0; y <= last; ++y) {
    const int32_t rows = std::min({n, y, last - y});
    if (rows < n || y == n) {
      for (int32_t x = 0; x <= m; ++x) multipliers[x] = multiplier(Window{x, rows}.area());
    }
    uint8_t* out = result.row(y);
    const std::ptrdiff_t last_pixel = static_cast<std::ptrdiff_t>(source.width - 1) * Channels;
    for (int c = 0; c < Channels; ++c) {
      write_growing<Channels>(sums.of_columns() + c, multipliers.get(), m, out + c);
      write_growing<-Channels>(sums.of_columns() + last_pixel + c, multipliers.get(), m,
                               out + last_pixel + c);
    }
    write_means(sums, result, y, m, multipliers[m]);
    if (y < n) {
      sums.add(2 * y + 1);
      sums.add(2 * y + 2);
    } else if (y < last - n) {
      sums.exchange(y + n + 1, y - n);
    } else if (y < last) {
      sums.subtract(y - rows);
      sums.subtract(y - rows + 1);
    }
  }
  return true;
}

template <int Channels>
bool average_shrinking(Image<Channels> source, Image<Channels> result, int32_t M, int32_t N,
                       uint32_t (*multiplier)(int64_t)) {
  if (source.empty()) return true;
  // No centred window reaches farther than half of the image.
  const Window window{std::clamp(M, 0, (source.width - 1) / 2), std::clamp(N, 0, (source.height - 1) / 2)};
  return with_sums_for(window, [=](auto sum) {
    return average_shrinking<Channels, decltype(sum)>(source, result, window, multiplier);
  });
}

// A window that does not fit is replaced by the nearest full window.
template <int Channels, class Sum>
bool average_full_windows(Image<Channels> source, Image<Channels> result, Window window) {
  const auto [m, n] = window;
  WindowSums<Channels, Sum> sums(source);
  if (!sums.allocated()) return false;
  const uint32_t multiplier = reciprocal(window.area());
  for (int32_t y = 0; y <= 2 * n; ++y) sums.add(y);
  for (int32_t y = n;; ++y) {
    write_means(sums, result, y, m, multiplier);
    for (int32_t x = 0; x < m; ++x) {
      std::memcpy(result.at(x, y), result.at(m, y), Channels);
      std::memcpy(result.at(source.width - m + x, y), result.at(source.width - m - 1, y), Channels);
    }
    if (y + n + 1 >= source.height) return true;
    sums.exchange(y + n + 1, y - n);
  }
}

template <int Channels>
void copy_row(Image<Channels> image, int32_t from, int32_t to) {
  if (image.contains(0, from) && image.contains(0, to)) {
    std::memcpy(image.row(to), image.row(from), static_cast<std::size_t>(image.width) * Channels);
  }
}

template <int Channels>
bool average_replicating(Image<Channels> source, Image<Channels> result, Window window) {
  if (source.empty()) return true;
  const auto [m, n] = window;
  const int32_t height = source.height;
  if (m <= (source.width - 1) / 2 && n <= (height - 1) / 2) {
    const bool done = with_sums_for(window, [=](auto sum) {
      return average_full_windows<Channels, decltype(sum)>(source, result, window);
    });
    if (!done) return false;
  }
  const int32_t rows = std::min(n, height);
  for (int32_t i = 0; i < rows; ++i) copy_row(result, n, i);
  for (int32_t i = 0; i < rows; ++i) copy_row(result, height - n - 1, height - n + i);
  return true;
}

// ---- limits ----

constexpr int32_t kMaxWidth = 4096;

bool within_limits(int32_t width, int32_t M, int32_t N) {
  const Window window{std::max(M, 0), std::max(N, 0)};
  return width <= kMaxWidth && window.m < kMaxArea && window.n < kMaxArea && window.area() <= kMaxArea;
}

int32_t absolute(int32_t half_size) {
  return std::abs(std::max(half_size, -INT32_MAX));
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryAverageFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                         uint8_t* pResImg) {
  average_shrinking<1>({pGryImg, width, height}, {pResImg, width, height}, M, N, reciprocal);
}

bool NuvGryAverageFilterFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint8_t* pResImg) {
  return within_limits(width, M, N) &&
         average_shrinking<1>({pGryImg, width, height}, {pResImg, width, height}, M, N,
                              reciprocal_below_limit);
}

bool NuvGryAverageFilterFastNonBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                        uint8_t* pResImg) {
  return width <= kMaxWidth && average_replicating<1>({pGryImg, width, height}, {pResImg, width, height},
                                                      {std::max(M, 0), std::max(N, 0)});
}

void NuvGryAverageFilterByX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, uint8_t* pResImg) {
  average_replicating<1>({pGryImg, width, height}, {pResImg, width, height}, {absolute(M), 0});
}

void NuvGryAverageFilterByY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t N, uint8_t* pResImg) {
  average_replicating<1>({pGryImg, width, height}, {pResImg, width, height}, {0, absolute(N)});
}

void NuvRGBAverageFilter(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                         uint8_t* pResImg) {
  average_shrinking<3>({pRGBImg, width, height}, {pResImg, width, height}, M, N, reciprocal);
}

bool NuvRGBAverageFilterFast(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint8_t* pResImg) {
  return within_limits(width, M, N) &&
         average_shrinking<3>({pRGBImg, width, height}, {pResImg, width, height}, M, N,
                              reciprocal_below_limit);
}

bool NuvRGBAverageFilterFastNonBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                        uint8_t* pResImg) {
  return width <= kMaxWidth && average_replicating<3>({pRGBImg, width, height}, {pResImg, width, height},
                                                      {std::max(M, 0), std::max(N, 0)});
}
