// Binary measures.
//
// Counts of pixels with a property are row kernels. The two measures that need positions walk runs or rows.

#include <algorithm>
#include <array>

#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

#if NUV_HAS_LANES
template <class Lanes>
NUV_INLINE void count_equal_lanes(const uint8_t* row, uint8_t value, Lanes& counts) {
  Lanes pixels;
  load(row, pixels);
  // A comparison gives -1 where the values are equal.
  counts -= reinterpret_cast<Lanes>(pixels == value);
}

// Counts in the bytes of two vectors, one byte for each place of a block of pixels, and adds the bytes up before
// they overflow. Counts whole vectors from x on, and moves x past them.
template <class Lanes>
NUV_INLINE int32_t count_equal_by(const uint8_t* row, std::ptrdiff_t& x, std::ptrdiff_t n, uint8_t value) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  constexpr std::ptrdiff_t kBlock = 2 * kStep;
  constexpr std::ptrdiff_t kBlocks = 254;
  int32_t count = 0;
  while (n - x >= kStep) {
    const std::ptrdiff_t end = x + std::min((n - x) / kBlock, kBlocks) * kBlock;
    Lanes counts{};
    Lanes other_counts{};
    for (; x < end; x += kBlock) {
      count_equal_lanes(row + x, value, counts);
      count_equal_lanes(row + x + kStep, value, other_counts);
    }
    if (n - x >= kStep) {
      count_equal_lanes(row + x, value, counts);
      x += kStep;
    }
    for (std::ptrdiff_t i = 0; i < kStep; ++i) count += counts[i] + other_counts[i];
  }
  return count;
}
#endif

NUV_ROW_KERNEL int32_t count_equal(const uint8_t* row, std::ptrdiff_t n, uint8_t value) {
  int32_t count = 0;
  std::ptrdiff_t x = 0;
#if NUV_HAS_LANES
  count = has_wide_lanes() ? count_equal_by<Bytes32>(row, x, n, value)
                           : count_equal_by<Bytes16>(row, x, n, value);
#endif
  for (; x < n; ++x) count += row[x] == value;
  return count;
}

struct RowSums {
  int32_t count;
  int32_t x;
};

NUV_ROW_KERNEL RowSums object_sums(const uint8_t* row, int32_t n) {
  int32_t count = 0;
  int32_t sum = 0;
  for (int32_t x = 0; x < n; ++x) {
    const int32_t is_object = row[x] != 0;
    count += is_object;
    sum += is_object * x;
  }
  return {count, sum};
}

int32_t black_pixels(GrayImage image, Region region) {
  int32_t count = 0;
  if (region.empty()) return count;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    count += count_equal(image.at(region.x1, y), region.columns(), 0);
  }
  return count;
}

constexpr int32_t kMaxSearchWidth = 4096;

// For every column, the number of runs that begin before it and of those that end after it.
class RunEnds {
 public:
  explicit RunEnds(int32_t width) : width_(width) {}

  void add(int32_t first, int32_t last) {
    ++begins_[first];
    ++ends_[last];
    ++runs_;
  }

  void accumulate() {
    for (int32_t x = 1; x < width_; ++x) {
      begins_[x] += begins_[x - 1];
      ends_[x] += ends_[x - 1];
    }
  }

  // The sum over all runs: 1 if column x is right of the first pixel of a run, and 1 if it is left of the last
  // one. The column may lie outside the image.
  int32_t score(int32_t x) const {
    if (x < 0 || x >= width_) return runs_;
    const int32_t begun_before = x == 0 ? 0 : begins_[x - 1];
    return begun_before + runs_ - ends_[x];
  }

 private:
  int32_t width_;
  int32_t runs_ = 0;
  std::array<int32_t, kMaxSearchWidth> begins_{};
  std::array<int32_t, kMaxSearchWidth> ends_{};
};

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvBinImgSearchCenterX(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2) {
  if (width > kMaxSearchWidth) return 0;
  const GrayImage image{pBinImg, width, height};
  RunEnds long_runs(width);
  for (int32_t y = 0; y < height; ++y) {
    for_white_runs(rows_of(image)[y], [&](int32_t first, int32_t last) {
      if (last - first > 10) long_runs.add(first, last);
    });
  }
  long_runs.accumulate();

  int32_t best = 0;
  int32_t left = width;
  int32_t right = width;
  const auto consider = [&](int32_t first, int32_t last) {  // columns with equal scores
    if (first > last) return;
    const int32_t score = long_runs.score(first);
    if (score < best) return;
    if (score > best) left = first;
    best = score;
    right = last;
  };
  const int32_t columns = std::max(width, 0);
  consider(x1, std::min(x2, -1));
  for (int32_t x = std::max(x1, 0); x <= std::min(x2, columns - 1); ++x) consider(x, x);
  consider(std::max(x1, columns), x2);
  return (left + right) / 2;
}

int32_t NuvBinImgCentroid(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY) {
  const GrayImage image{pBinImg, width, height};
  int32_t count = 0;
  int32_t sum_x = 0;
  int32_t sum_y = 0;
  for (int32_t y = 0; y <= image.whole().y2; ++y) {
    const RowSums row = object_sums(image.row(y), width);
    count += row.count;
    sum_x += row.x;
    sum_y += row.count * y;
  }
  if (count != 0) {
    *pX = sum_x / count;
    *pY = sum_y / count;
  }
  return count;
}

int32_t NuvPixelsInGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t gry) {
  if (gry < 0 || gry > 255) return 0;
  return count_equal(pGryImg, GrayImage{pGryImg, width, height}.size(), static_cast<uint8_t>(gry));
}

double NuvGetBlackRatioInBinaryImg(uint8_t* pBinImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2) {
  const Region region{x1, x2, y1, y2};
  const int32_t black = black_pixels(image_of_any_height<1>(pBinImg, width), region);
  return static_cast<double>(black) / (region.columns() * region.rows());
}

int32_t NuvGetWhitePixelsNum(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                             int32_t y1, int32_t y2) {
  const Region region = Region{x1, x2, y1, y2}.clamped_to(width, height);
  if (region.empty()) return 0;
  return region.columns() * region.rows() - black_pixels({pBinImg, width, height}, region);
}
