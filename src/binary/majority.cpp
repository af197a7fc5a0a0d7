// Majority filters: a pixel becomes what most of its window is.
//
// Filters of 3x3 pixels count or add up the neighbours in bytes or 16 bits, row by row. The filter with a
// growing window keeps column sums, to which rows are added and from which rows are subtracted. Their prefix
// sums give the windows of any width.

#include <algorithm>
#include <array>
#include <cstring>

#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "core/neighbours.h"
#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

// ---- 3x3 ----

NUV_INLINE uint8_t reaches(uint8_t pixel, uint8_t threshold) {
  return pixel >= threshold ? 1 : 0;
}
// How many of the eight neighbours reach the threshold t; w is the distance from row to row.
NUV_INLINE uint8_t count_around(const uint8_t* p, std::ptrdiff_t w, uint8_t t) {
  const auto up = static_cast<uint8_t>(reaches(p[-w - 1], t) + reaches(p[-w], t) + reaches(p[-w + 1], t));
  const auto down = static_cast<uint8_t>(reaches(p[w - 1], t) + reaches(p[w], t) + reaches(p[w + 1], t));
  return static_cast<uint8_t>(up + down + reaches(p[-1], t) + reaches(p[1], t));
}

NUV_LOAD_BOUND_ROW_KERNEL void majority_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                            std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = count_around(p, w, 1) >= 5 ? 255 : 0;
}

void write_majority(GrayImage image, GrayImage result, Region region) {
  for_rows(image, result, region, [=](const uint8_t* row, uint8_t* out, std::ptrdiff_t n) {
    majority_row(row, image.width, out, n);
  });
}

NUV_LOAD_BOUND_ROW_KERNEL void threshold_and_majority_row(const uint8_t* p, std::ptrdiff_t w, uint8_t t,
                                                          uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t majority = count_around(p, w, t) >= 4 ? 255 : 0;
    const uint8_t reached = *p >= t ? 255 : 0;
    out[x] = majority & reached;
  }
}

// ---- 3x3, few white pixels ----

// The sum of four white neighbours is above this.
constexpr int32_t kFourWhite = 1019;

NUV_INLINE uint16_t sum_around(const uint8_t* p, std::ptrdiff_t w) {
  return static_cast<uint16_t>(p[-w - 1] + p[-w] + p[-w + 1] + p[-1] + p[1] + p[w - 1] + p[w] + p[w + 1]);
}

NUV_LOAD_BOUND_ROW_KERNEL void four_white_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                              std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = sum_around(p, w) > kFourWhite ? 255 : 0;
}

// Whether an interior pixel is considered: a white pixel must lie in the region, and a black one must have a
// white neighbour there.
bool is_considered(GrayImage image, Region region, int32_t x, int32_t y) {
  if (*image.at(x, y) != 0) return region.contains(x, y);
  for (std::size_t d = 0; d < 8; ++d) {
    const int32_t nx = x + kDx[d];
    const int32_t ny = y + kDy[d];
    if (region.contains(nx, ny) && *image.at(nx, ny) != 0) return true;
  }
  return false;
}

// ---- windows that grow down the image ----

// Column sums over rows first to last, which may move up or down.
class MovingRows : public ColumnSums {
 public:
  using ColumnSums::ColumnSums;

  void move_to(int32_t first, int32_t last) {
    if (first > last_ || last < first_) {
      clear();
      first_ = first;
      last_ = first - 1;
    }
    while (last_ < last) add(++last_);
    while (first_ > first) add(--first_);
    while (last_ > last) subtract(last_--);
    while (first_ < first) subtract(first_++);
  }

 private:
  int32_t first_ = 0;
  int32_t last_ = -1;
};

// The half size at row y of a window that has the given one at the top and ratio times that at the bottom.
int32_t half_size(int32_t y, int32_t height, int32_t half, double ratio) {
  return truncated(((y * (ratio - 1.0)) / height + 1.0) * half + 0.5);
}

NUV_ROW_KERNEL void threshold_windows(const int32_t* prefix, std::ptrdiff_t span, int32_t threshold,
                                      uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  const int32_t* ends = prefix + span;
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = ends[x] - prefix[x] > threshold ? 255 : 0;
}

// In the first m columns, thresholds the sum of the 2 * m + 1 pixels of the row that begin with the pixel; in
// the last m + 1 columns, of those that end with it. Stretches are cut at the ends of the row.
void majority_at_sides(const uint8_t* row, int32_t width, int32_t m, uint8_t* out) {
  const int32_t half_row = m * 254 + 127;
  const int32_t span = 2 * m + 1;
  int32_t sum = 0;
  for (int32_t x = 0; x < std::min(span, width); ++x) sum += row[x];
  for (int32_t x = 0; x < m; ++x) {
    out[x] = sum > half_row ? 255 : 0;
    sum -= row[x];
    if (x + span < width) sum += row[x + span];
  }
  sum = 0;
  for (int32_t x = std::max(width - span, 0); x < width; ++x) sum += row[x];
  for (int32_t x = width - 1; x >= width - m - 1; --x) {
    out[x] = sum > half_row ? 255 : 0;
    sum -= row[x];
    if (x - span >= 0) sum += row[x - span];
  }
}

// The rows of the window at row y: n above and n below. Where these do not fit, the window has 2 * n + 1 rows
// that begin or end with row y, cut at the end of the image.
Region window_rows(int32_t y, int32_t n, int32_t height) {
  if (y < n) return {0, 0, y, std::min(y + 2 * n, height - 1)};
  if (y + n <= height - 1) return {0, 0, y - n, y + n};
  return {0, 0, std::max(y - 2 * n, 0), y};
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  clear_sides(result);
  write_majority(image, result, image.interior());
}

void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  write_majority(image, {pResImg, width, height}, image.interior().intersected({x1, x2, y1, y2}));
}

void NuvBinImgMedFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N, double ratioX,
                        double ratioY, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  if (image.empty()) return;
  MovingRows sums(image);
  if (!sums.allocated()) return;
  for (int32_t y = 0; y < height; ++y) {
    int32_t m = half_size(y, height, M, ratioX);
    int32_t n = half_size(y, height, N, ratioY);
    if ((m < 1 && n < 1) || m > (width - 1) / 2) continue;
    m = std::max(m, 0);
    n = std::clamp(n, 0, height);

    const Region window = window_rows(y, n, height);
    sums.move_to(window.y1, window.y2);
    const int32_t* prefix = sums.prefix();
    const int32_t half_white = window.rows() * (2 * m + 1) * 127;
    threshold_windows(prefix, 2 * m + 1, half_white, result.at(m, y), width - 2 * m - 1);
    majority_at_sides(image.row(y), width, m, result.row(y));
  }
}

void NuvBinImgLittleWhitePixelsMed3x3Filter(uint8_t* pBinImg, int32_t width, int32_t height,
                                            uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  fill_bytes(pResImg, 0, image.size());
  const Region considered = image.interior(2);
  if (image.empty() || considered.empty()) return;
  // A pixel with such a sum has a white neighbour. If the pixel and all its neighbours lie in the region, it is
  // considered. So only the pixels on both sides of the region's border are tested.
  const Region interior = image.interior();
  const Region untested = image.interior(3);
  for_rows(image, result, interior,
           [=](const uint8_t* row, uint8_t* out, std::ptrdiff_t n) { four_white_row(row, width, out, n); });
  for (int32_t y = interior.y1; y <= interior.y2; ++y) {
    for (int32_t x = interior.x1; x <= interior.x2; ++x) {
      if (untested.contains(x, y)) x = untested.x2 + 1;
      uint8_t& value = *result.at(x, y);
      if (value != 0 && !is_considered(image, considered, x, y)) value = 0;
    }
  }
}

int32_t NuvThresholdAndMedFilter3x3(uint8_t* pGryImg, int32_t width, int32_t height, int32_t threshold,
                                    uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  if (image.empty()) return 0;
  clear_sides(result);
  for (int32_t y = 1; y < height - 1 && width > 2; ++y) {
    uint8_t* out = result.at(1, y);
    if (threshold > 255) {
      std::memset(out, 0, static_cast<std::size_t>(width - 2));
    } else {
      threshold_and_majority_row(image.at(1, y), width, static_cast<uint8_t>(std::max(threshold, 0)), out,
                                 width - 2);
    }
  }
  return NuvPixelsInGryImg(pResImg, width, height, 255);
}
