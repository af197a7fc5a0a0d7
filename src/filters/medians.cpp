// Median filters: the choice of the method, and the values at the border.
//
// Windows of 3 by 3 and 5 by 5 that lie in the image use networks of comparisons; all others use histograms.

#include <algorithm>

#include "core/borders.h"
#include "core/buffer.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "filters/median_bins.h"
#include "filters/median_networks.h"
#include "nuv/filters.h"

namespace nuv {
namespace {

using Network = void(const uint8_t* p, std::ptrdiff_t w, uint8_t* out, std::ptrdiff_t n);

Network* network_for(int32_t m, int32_t n) {
  if (m == 1 && n == 1) return medians_3x3;
  if (m == 2 && n == 2) return medians_5x5;
  return nullptr;
}

// Writes the medians of all windows that lie in the image; at least one must. The m pixels at both sides of
// these rows may be written as well, with meaningless values.
bool write_full_windows(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  const int32_t y2 = source.height - 1 - n;
  Network* network = network_for(m, n);
  if (network == nullptr) return write_medians(source, result, m, n, n, y2);
  const uint8_t* first = source.at(m, n);
  const uint8_t* last = source.at(source.width - 1 - m, y2);
  network(first, source.width, result.at(m, n), last - first + 1);
  return true;
}

// Writes the medians of all rows, with windows clipped at top and bottom.
bool write_clipped_windows(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  const int32_t last = source.height - 1;
  if (network_for(m, n) == nullptr || 2 * n > last) return write_medians(source, result, m, n, 0, last);
  return write_full_windows(source, result, m, n) && write_medians(source, result, m, n, 0, n - 1) &&
         write_medians(source, result, m, n, last - n + 1, last);
}

// Calls write(y, sums, rows) for each row, with the sums of count columns over the rows of its window.
// Columns after the last one are the first columns of the next row in memory. If allocation fails, nothing is
// called.
template <class Write>
void for_column_sums(GrayImage source, int32_t n, int32_t first_column, std::ptrdiff_t count, Write write) {
  const Buffer<int32_t> sums = allocate<int32_t>(count);
  if (!sums) return;
  std::fill_n(sums.get(), count, 0);
  int32_t top = 0;
  int32_t next = 0;
  for (int32_t y = 0; y < source.height; ++y) {
    const int32_t bottom = y + std::min(n, source.height - 1 - y);
    while (next <= bottom) add_row(sums.get(), source.at(first_column, next++), count);
    while (top < y - n) subtract_row(sums.get(), source.at(first_column, top++), count);
    write(y, sums.get(), next - top);
  }
}

uint8_t mean(int32_t sum, int32_t columns, int32_t rows) {
  return static_cast<uint8_t>(sum / (static_cast<int64_t>(columns) * rows));
}

// The window is clipped at the left end.
void write_left_means(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  for_column_sums(source, n, 0, 2 * static_cast<std::ptrdiff_t>(m),
                  [=](int32_t y, const int32_t* columns, int32_t rows) {
                    int32_t sum = 0;
                    for (int32_t i = 0; i < m; ++i) sum += columns[i];
                    for (int32_t x = 0; x < m; ++x) {
                      sum += columns[x + m];
                      *result.at(x, y) = mean(sum, x + m + 1, rows);
                    }
                  });
}

// The window is not clipped at the right end. The last column of medians is overwritten.
void write_right_means(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  const int32_t first = source.width - 2 * m - 1;
  for_column_sums(source, n, first, 3 * static_cast<std::ptrdiff_t>(m) + 1,
                  [=](int32_t y, const int32_t* columns, int32_t rows) {
                    int32_t sum = 0;
                    for (int32_t i = 0; i < 2 * m; ++i) sum += columns[i];
                    for (int32_t i = 0; i <= m; ++i) {
                      sum += columns[i + 2 * m];
                      *result.at(first + m + i, y) = mean(sum, 2 * m + 1, rows);
                      sum -= columns[i];
                    }
                  });
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryImgMedianBoundary0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                              uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  const int32_t m = std::max(M, 1);
  const int32_t n = std::max(N, 1);
  const bool any = !source.empty() && m <= (width - 1) / 2 && n <= (height - 1) / 2;
  if (!any || !write_full_windows(source, result, m, n)) {
    clear_rows(result, 0, height - 1);
    return;
  }
  clear_rows(result, 0, n - 1);
  clear_rows(result, height - n, height - 1);
  for (int32_t y = n; y < height - n; ++y) {
    clear_columns(result, y, 0, m - 1);
    clear_columns(result, y, width - m, width - 1);
  }
}

void NuvGryFastMedianFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                            uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  const int32_t m = std::max(M, 0);
  if (source.empty() || m > (width - 1) / 2) return;
  // A window that is clipped at both ends is the same for every larger n.
  const int32_t n = std::clamp(N, 0, height - 1);
  if (!write_clipped_windows(source, result, m, n)) return;
  write_left_means(source, result, m, n);
  write_right_means(source, result, m, n);
}
