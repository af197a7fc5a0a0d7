// Measurements over rectangles and windows.
//
// Sums of windows slide down the image and are formed along the rows by doubling, so a window costs the same
// at any height. An integral image would need memory for one sum per pixel.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/byte_sums.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"
#include "nuv/statistics.h"
#include "statistics/difference.h"

namespace nuv {
namespace {

// ---- two rectangles ----

int32_t columns_of(const tagRECT& rect) {
  return rect.right - rect.left + 1;
}
int32_t rows_of(const tagRECT& rect) {
  return rect.bottom - rect.top + 1;
}

template <int Channels>
struct Rectangle {
  Image<Channels> image;
  tagRECT rect;

  const uint8_t* at(int32_t column, int32_t row) const {
    return image.at(rect.left + column, rect.top + row);
  }
};

// Compares two rectangles of one size row by row.
template <int Channels>
int32_t mean_difference_of_equals(Rectangle<Channels> a, Rectangle<Channels> b) {
  const ComparedArea area(a.rect, Channels);
  if (area.empty()) return 0;
  int32_t sum = 0;
  for (int32_t row = 0; row < area.rows; ++row) {
    sum += sum_of_differences(a.at(0, row), b.at(0, row), area.row_bytes);
  }
  return area.mean(sum);
}

// Compares each pixel of the walked rectangle with the corresponding pixel of the target.
template <int Channels>
int32_t mean_difference(Rectangle<Channels> walked, Rectangle<Channels> target) {
  const int32_t rows = rows_of(walked.rect);
  const int32_t columns = columns_of(walked.rect);
  if (rows < 1 || columns < 1 || columns_of(target.rect) < 1) return 0;
  const double row_step = static_cast<double>(rows_of(target.rect)) / rows;
  const double column_step = static_cast<double>(columns_of(target.rect)) / columns;
  int32_t sum = 0;
  int32_t count = 0;
  double target_row = 0.0;
  for (int32_t row = 0; row < rows; ++row, target_row += row_step) {
    double target_column = 0.0;
    for (int32_t column = 0; column < columns; ++column, target_column += column_step) {
      const uint8_t* p = walked.at(column, row);
      const uint8_t* q = target.at(truncated(target_column), truncated(target_row));
      for (int c = 0; c < Channels; ++c) sum += std::abs(p[c] - q[c]);
      count += Channels;
    }
  }
  return quotient(sum, count);
}

template <int Channels>
int32_t mean_difference_in(Rectangle<Channels> a, Rectangle<Channels> b) {
  const bool are_equals = columns_of(a.rect) == columns_of(b.rect) && rows_of(a.rect) == rows_of(b.rect);
  if (are_equals) return mean_difference_of_equals(a, b);
  return rows_of(a.rect) <= rows_of(b.rect) ? mean_difference(a, b) : mean_difference(b, a);
}

// ---- blocks and windows ----

// A region widened by a margin on each side, whose ends are then clamped to the image.
Region widened(Region inner, int32_t margin, GrayImage image) {
  const auto within = [](int64_t place, int32_t size) {
    return static_cast<int32_t>(std::clamp<int64_t>(place, 0, size - 1));
  };
  return {within(int64_t{inner.x1} - margin, image.width), within(int64_t{inner.x2} + margin, image.width),
          within(int64_t{inner.y1} - margin, image.height), within(int64_t{inner.y2} + margin, image.height)};
}

int32_t pixels_of(Region region) {
  return region.empty() ? 0 : region.columns() * region.rows();
}

// ---- deviations of windows ----
//
// The standard deviation is defined as a sum over bins in floating point, and only its rounded value counts. The
// exact deviation follows from three sums in integers, which windows share. It rounds to the same value unless
// it lies next to the limit between two values. Only there the bins of the window are filled.

// The standard deviation of the values counted. Empty bins add 0.
double deviation(const WindowBins& window) {
  const int32_t* bins = window.bins();
  double sum = 0.0;
  for (int32_t v = window.least(); v <= window.most(); ++v) sum += static_cast<double>(bins[v]) * v;
  const double mean = sum / window.count();
  double squares = 0.0;
  for (int32_t v = window.least(); v <= window.most(); ++v) squares += (v - mean) * (v - mean) * bins[v];
  return std::sqrt(squares / window.count());
}

WindowBins masked_bins(GrayImage image, GrayImage mask, Region region) {
  WindowBins bins;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    for (int32_t x = region.x1; x <= region.x2; ++x) {
      if (*mask.at(x, y) != 0) bins.add(*image.at(x, y));
    }
  }
  return bins;
}

NUV_ROW_KERNEL void add_masked_row(const uint8_t* pixels, const uint8_t* mask, int32_t* NUV_RESTRICT counts,
                                   int32_t* NUV_RESTRICT values, int32_t* NUV_RESTRICT squares,
                                   std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const int32_t count = mask[x] != 0 ? 1 : 0;
    const int32_t value = pixels[x] & -count;
    counts[x] += count;
    values[x] += value;
    squares[x] += value * value;
  }
}

// The masked pixels in some rows of a strip of columns: sums of any stretch of the columns. The sums of a window
// have 32 bits, which suffice for kMostPixels.
class MaskedStrip {
 public:
  static constexpr int32_t kColumns = 1024;
  static constexpr int64_t kMostPixels = INT32_MAX / (255 * 255);

  // Takes the rows and columns of a region of at most kColumns columns.
  void set(GrayImage image, GrayImage mask, Region region) {
    region_ = region;
    const int32_t n = region.columns();
    for (Sums& sums : sums_) std::fill_n(sums.begin(), n, 0);
    for (int32_t y = region.y1; y <= region.y2; ++y) {
      add_masked_row(image.at(region.x1, y), mask.at(region.x1, y), sums_[0].data(), sums_[1].data(),
                     sums_[2].data(), n);
    }
    for (std::size_t i = 0; i < sums_.size(); ++i) accumulate(sums_[i].data(), n, prefixes_[i].data());
  }

  int32_t count(int32_t x1, int32_t x2) const { return sum(0, x1, x2); }
  // The rounded standard deviation of the columns x1 to x2, or -1 if the exact one is too near to a limit.
  int32_t rounded_deviation(int32_t x1, int32_t x2) const {
    constexpr double kNear = 1e-6;  // greater than the rounding errors of the sum over bins
    const int64_t n = count(x1, x2);
    const int64_t values = sum(1, x1, x2);
    const auto spread = static_cast<double>(n * sum(2, x1, x2) - values * values);
    const double rounded_up = std::sqrt(spread) / static_cast<double>(n) + 0.5;
    const int32_t result = truncated(rounded_up);
    const double beyond = rounded_up - result;
    return beyond < kNear || beyond > 1 - kNear ? -1 : result;
  }

 private:
  using Sums = std::array<int32_t, kColumns + 1>;

  int32_t sum(std::size_t i, int32_t x1, int32_t x2) const {
    return prefixes_[i][x2 + 1 - region_.x1] - prefixes_[i][x1 - region_.x1];
  }

  Region region_{};
  std::array<Sums, 3> sums_;      // counts, values and squares of each column
  std::array<Sums, 3> prefixes_;  // their totals over the columns before each one
};

struct Window {
  int64_t sum = 0;
  Point corner{};
};

template <class Sum>
NUV_ROW_KERNEL Sum largest_of(const Sum* sums, std::ptrdiff_t n) {
  Sum most = sums[0];
  for (std::ptrdiff_t i = 1; i < n; ++i) most = sums[i] > most ? sums[i] : most;
  return most;
}

// The brightest window of M by N pixels; ties go to the first one in raster order. Its sum is 0 if all
// windows are black or if allocation fails. The last place of either axis is not tried, except column 0. Sum
// must be wide enough for the sum of a window.
template <class Sum>
Window brightest_window(GrayImage image, int32_t M, int32_t N) {
  const std::ptrdiff_t places = std::max(image.width - M, 1);
  WindowSums<1, Sum> window_sums(image);
  Window best;
  if (!window_sums.allocated()) return best;
  for (int32_t y = 0; y < N; ++y) window_sums.add(y);
  for (int32_t y = 0; y < image.height - N; ++y) {
    const Sum* sums = window_sums.of_windows(M);
    const Sum most = largest_of(sums, places);
    if (most > best.sum)
      best = {most, {static_cast<int32_t>(std::find(sums, sums + places, most) - sums), y}};
    window_sums.exchange(y + N, y);
  }
  return best;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvImgDifferenceInRect(uint8_t* pImg1, uint8_t* pImg2, bool bRGB, int32_t width, tagRECT rect1,
                               tagRECT rect2) {
  if (bRGB) {
    return mean_difference_in<3>({image_of_any_height<3>(pImg1, width), rect1},
                                 {image_of_any_height<3>(pImg2, width), rect2});
  }
  return mean_difference_in<1>({image_of_any_height<1>(pImg1, width), rect1},
                               {image_of_any_height<1>(pImg2, width), rect2});
}

int32_t NuvCenterBlockMeanDif(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t M) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return 0;
  const Region inner{x1, x2, y1, y2};
  const Region outer = widened(inner, M, image);
  const int32_t inner_pixels = pixels_of(inner);
  const int32_t ring_pixels = pixels_of(outer) - inner_pixels;
  if (inner_pixels == 0 || ring_pixels == 0) return 0;
  const int32_t inner_sum = sum_of_region(image, inner);
  const int32_t ring_sum = sum_of_region(image, outer) - inner_sum;
  return quotient(inner_sum, inner_pixels) - quotient(ring_sum, ring_pixels);
}

void NuvPointsRect(int32_t* pX, int32_t* pY, int32_t N, int32_t* pMinX, int32_t* pMaxX, int32_t* pMinY,
                   int32_t* pMaxY) {
  const int32_t count = std::max(N, 1);
  const auto [min_x, max_x] = std::minmax_element(pX, pX + count);
  const auto [min_y, max_y] = std::minmax_element(pY, pY + count);
  *pMinX = *min_x;
  *pMaxX = *max_x;
  *pMinY = *min_y;
  *pMaxY = *max_y;
}

int32_t NuvGryRectAvr(uint8_t* pGryImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2, int32_t y1,
                      int32_t y2) {
  const Region region{x1, x2, y1, y2};
  return quotient(sum_of_region(image_of_any_height<1>(pGryImg, width), region), pixels_of(region));
}

void NuvGryMinMaxInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                        double ratio, int32_t* pMin, int32_t* pMax) {
  const Region region{x1, x2, y1, y2};
  const Histogram bins = histogram_of(image_of_any_height<1>(pGryImg, width), region);
  const int32_t ignored = truncated(region.columns() * ratio * region.rows());
  *pMin = walk_up(bins.data(), ignored, Reach::kExceeds).value;
  *pMax = std::max(walk_down(bins.data(), ignored, Reach::kExceeds).value, 0);
}

double NuvMaxBrightRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N, int32_t* pX,
                        int32_t* pY) {
  const GrayImage image{pGryImg, width, height};
  *pX = width / 2;
  *pY = height / 2;
  if (M < 1 || N < 1 || M > width || N > height) return 0.0;
  const bool is_small = int64_t{M} * N * 255 <= INT32_MAX;
  const Window best =
      is_small ? brightest_window<int32_t>(image, M, N) : brightest_window<int64_t>(image, M, N);
  if (best.sum == 0) return 0.0;
  *pX = M / 2 + best.corner.x;
  *pY = N / 2 + best.corner.y;
  return static_cast<double>(best.sum) / (static_cast<double>(M) * N);
}

int32_t NuvEstimateImgStdev(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t M,
                            int32_t N) {
  if (M < 1 || N < 1) return 0;
  const int32_t area = M * N;
  const int32_t step_x = std::max(M / 2, 1);
  const int32_t step_y = std::max(N / 2, 1);
  const GrayImage image{pGryImg, width, height};
  const GrayImage mask{pMskImg, width, height};
  Histogram weights{};
  const auto is_covered = [=](int32_t n) { return n != 0 && n * 3 > area; };
  const bool is_small =
      M < MaskedStrip::kColumns && (int64_t{M} + 1) * (int64_t{N} + 1) <= MaskedStrip::kMostPixels;
  MaskedStrip strip;
  for (int64_t y = 0; y < height; y += step_y) {
    const auto y1 = static_cast<int32_t>(y);
    const auto y2 = static_cast<int32_t>(std::min<int64_t>(y + N, height - 1));
    int32_t end_of_strip = 0;
    for (int64_t x = 0; x < width; x += step_x) {
      // A window has one column and one row more than M by N, as far as the image extends.
      const auto x1 = static_cast<int32_t>(x);
      const auto x2 = static_cast<int32_t>(std::min<int64_t>(x + M, width - 1));
      int32_t n = 0;
      int32_t rounded = -1;
      if (is_small) {
        if (x2 >= end_of_strip) {
          end_of_strip = std::min(x1 + MaskedStrip::kColumns, width);
          strip.set(image, mask, {x1, end_of_strip - 1, y1, y2});
        }
        n = strip.count(x1, x2);
        if (!is_covered(n)) continue;
        rounded = strip.rounded_deviation(x1, x2);
      }
      if (rounded < 0) {
        const WindowBins bins = masked_bins(image, mask, {x1, x2, y1, y2});
        n = bins.count();
        if (!is_covered(n)) continue;
        rounded = truncated(deviation(bins) + 0.5);
      }
      weights[rounded] += quotient(n * 4, area);
    }
  }
  return NuvGetMedianInHistogram(weights.data());
}
