// Majority filters: a pixel becomes what most of its window is.

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/arithmetic.h"
#include "frame/borders.h"
#include "frame/buffer.h"
#include "frame/neighbours.h"
#include "frame/point_pass.h"
#include "frame/row_kernel.h"
#include "frame/runs.h"
#include "frame/views.h"
#include "frame/window_sums.h"
#include "nuv/binary.h"
#include "nuv/frame.h"

namespace nuv {
namespace {

// ---- 3x3 ----

NUV_INLINE uint8_t reaches(uint8_t pixel, uint8_t threshold) {
  return pixel >= threshold ? 1 : 0;
}
// How many of the eight neighbours do; w is the distance of the rows.
NUV_INLINE uint8_t count_around(const uint8_t* p, std::ptrdiff_t w, uint8_t t) {
  const auto up = static_cast<uint8_t>(reaches(p[-w - 1], t) + reaches(p[-w], t) + reaches(p[-w + 1], t));
  const auto down = static_cast<uint8_t>(reaches(p[w - 1], t) + reaches(p[w], t) + reaches(p[w + 1], t));
  return static_cast<uint8_t>(up + down + reaches(p[-1], t) + reaches(p[1], t));
}

NUV_LOAD_BOUND_ROW_KERNEL void majority_row(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                            std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) out[x] = count_around(p, w, 1) >= 5 ? 255 : 0;
}

void write_majority(GrayImage image, Region region, uint8_t* result) {
  for_rows(image, result, region, [=](const uint8_t* row, uint8_t* out, std::ptrdiff_t n) {
    majority_row(row, image.width, out, n);
  });
}

NUV_LOAD_BOUND_ROW_KERNEL void threshold_and_majority_row(const uint8_t* p, std::ptrdiff_t w, uint8_t t,
                                                          uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t in_company = count_around(p, w, t) >= 4 ? 255 : 0;
    out[x] = *p >= t ? in_company : 0;
  }
}

// ---- 3x3, few white pixels ----

// The sum is above the first with four white neighbours or more, and reaches the second with all eight.
constexpr int32_t kFourWhite = 1019;
constexpr int32_t kEightWhite = 2040;

// ---- windows that grow down the image ----

// Over rows first to last, which may move either way.
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

// Half a window at row y of one that has that half size at the top and ratio times as much at the bottom.
int32_t half_size(int32_t y, int32_t height, int32_t half, double ratio) {
  return truncated(((y * (ratio - 1.0)) / height + 1.0) * half + 0.5);
}

// As many rows below as above, or 2 * n + 1 from the row to one side where the image ends at the other.
Region window_rows(int32_t y, int32_t n, int32_t height) {
  if (y < n) return {0, 0, y, std::min(y + 2 * n, height - 1)};
  if (y + n <= height - 1) return {0, 0, y - n, y + n};
  return {0, 0, std::max(y - 2 * n, 0), y};
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  clear_sides({pResImg, width, height});
  const GrayImage image{pBinImg, width, height};
  write_majority(image, image.interior(), pResImg);
}

void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const Region inner = image.interior();
  write_majority(
      image, {std::max(x1, inner.x1), std::min(x2, inner.x2), std::max(y1, inner.y1), std::min(y2, inner.y2)},
      pResImg);
}

void NuvBinImgMedFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N, double ratioX,
                        double ratioY, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return;
  MovingRows sums(image);
  if (!sums.allocated()) return;
  for (int32_t y = 0; y < height; ++y) {
    int32_t m = half_size(y, height, M, ratioX);
    int32_t n = half_size(y, height, N, ratioY);
    if ((m < 1 && n < 1) || m > (width - 1) / 2) continue;
    m = std::max(m, 0);
    n = std::clamp(n, 0, height);
    uint8_t* out = pResImg + (image.row(y) - pBinImg);

    const Region window = window_rows(y, n, height);
    sums.move_to(window.y1, window.y2);
    const int32_t* prefix = sums.prefix();
    const int32_t half_white = window.rows() * (2 * m + 1) * 127;
    for (int32_t x = m; x <= width - m - 2; ++x) {
      out[x] = prefix[x + m + 1] - prefix[x - m] > half_white ? 255 : 0;
    }

    // At the sides the row alone, and a window that begins or ends with the pixel.
    const int32_t* row = sums.prefix_of_row(y);
    const int32_t half_row = m * 254 + 127;
    for (int32_t x = 0; x < m; ++x) {
      out[x] = row[std::min(x + 2 * m + 1, width)] - row[x] > half_row ? 255 : 0;
    }
    for (int32_t x = width - m - 1; x < width; ++x) {
      out[x] = row[x + 1] - row[std::max(x - 2 * m, 0)] > half_row ? 255 : 0;
    }
  }
}

void NuvBinImgLittleWhitePixelsMed3x3Filter(uint8_t* pBinImg, int32_t width, int32_t height,
                                            uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const std::array<std::ptrdiff_t, 8> offsets = neighbour_offsets(width);
  const auto sum_around = [&offsets](const uint8_t* p) {
    int32_t sum = 0;
    for (std::ptrdiff_t offset : offsets) sum += p[offset];
    return sum;
  };
  std::memset(pResImg, 0, static_cast<std::size_t>(image.size()));
  const Region inner{2, width - 3, 2, height - 3};
  if (image.empty() || inner.empty()) return;
  for (int32_t y = inner.y1; y <= inner.y2; ++y) {
    for_white_runs({image.at(inner.x1, y), inner.columns(), 1}, [&](int32_t first, int32_t last) {
      for (int32_t x = inner.x1 + first; x <= inner.x1 + last; ++x) {
        const uint8_t* p = image.at(x, y);
        uint8_t* out = pResImg + (p - pBinImg);
        const int32_t sum = sum_around(p);
        if (sum > kFourWhite) *out = 255;
        if (sum >= kEightWhite) continue;
        for (std::ptrdiff_t offset : offsets) {
          if (p[offset] == 0 && sum_around(p + offset) > kFourWhite) out[offset] = 255;
        }
      }
    });
  }
}

int32_t NuvThresholdAndMedFilter3x3(uint8_t* pGryImg, int32_t width, int32_t height, int32_t threshold,
                                    uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return 0;
  clear_sides({pResImg, width, height});
  for (int32_t y = 1; y < height - 1 && width > 2; ++y) {
    const uint8_t* row = image.at(1, y);
    uint8_t* out = pResImg + (row - pGryImg);
    if (threshold > 255) {
      std::memset(out, 0, static_cast<std::size_t>(width - 2));
    } else {
      threshold_and_majority_row(row, width, static_cast<uint8_t>(std::max(threshold, 0)), out, width - 2);
    }
  }
  return NuvPixelsInGryImg(pResImg, width, height, 255);
}
