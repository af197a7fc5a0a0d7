// How large a square an image can be eroded by before nothing is left.

#include <algorithm>
#include <cstring>

#include "frame/byte_counter.h"
#include "frame/runs.h"
#include "frame/views.h"
#include "nuv/binary.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// One less than the largest byte: there is always a bin above.
constexpr int32_t kMaxDistance = 254;

// Calls visit(place, distance) for the pixels of a run, the distance being 1 at both ends.
template <class Visit>
void for_distances(int32_t first, int32_t last, Visit visit) {
  for (int32_t i = first; i <= last; ++i) {
    const int32_t to_end = std::min(i - first, last - i) + 1;
    visit(i, static_cast<uint8_t>(std::min(to_end, kMaxDistance)));
  }
}

// Replaces each white pixel by the lesser of its distances to the ends of its run in the row and in the
// column.
Histogram distances_to_run_ends(GrayImage image) {
  Histogram bins{};
  const Lines rows = rows_of(image);
  for (int32_t y = 0; y < rows.count; ++y) {
    for_white_runs(rows[y], [&](int32_t first, int32_t last) {
      for_distances(first, last, [&](int32_t x, uint8_t distance) {
        rows[y][x] = distance;
        ++bins[distance];
      });
    });
  }
  const Lines columns = columns_of(image);
  for (int32_t x = 0; x < columns.count; ++x) {
    for_white_runs(columns[x], [&](int32_t first, int32_t last) {
      for_distances(first, last, [&](int32_t y, uint8_t distance) {
        uint8_t& pixel = columns[x][y];
        if (distance >= pixel) return;
        --bins[pixel];
        pixel = distance;
        ++bins[distance];
      });
    });
  }
  return bins;
}

int32_t largest_value(const Histogram& bins) {
  int32_t value = kBins - 1;
  while (value >= 0 && bins[static_cast<std::size_t>(value)] == 0) --value;
  return value;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGetMaxSizeofMinFilter(uint8_t* pBinImg, uint8_t* pTmpImg, uint8_t* pWorkImg, int32_t width,
                                 int32_t height, int32_t* pSize) {
  const GrayImage work{pWorkImg, width, height};
  const auto bytes = static_cast<std::size_t>(work.size());
  *pSize = 0;
  std::memcpy(pWorkImg, pBinImg, bytes);
  for (;;) {
    std::memcpy(pTmpImg, pWorkImg, bytes);
    Histogram bins = distances_to_run_ends(work);
    const int32_t largest = largest_value(bins);
    if (largest < 0) return *pSize -= 1;
    if (largest == 1) return *pSize += 1;

    const int32_t m = std::max(NuvGetMedianInHistogram(bins.data()), 1);
    const int32_t side = 2 * m + 1;
    *pSize += 2 * m;
    if (m == 1) {
      NuvBinImgMinFilter3x3(pTmpImg, width, height, pWorkImg);
    } else if (side > width || side > height ||
               !NuvBinImgFilter(pTmpImg, width, height, m, m, static_cast<uint32_t>((side * side - 1) * 255),
                                pWorkImg)) {
      return *pSize;
    }
    // Some white is out of the reach of an erosion: borders repeat the nearest result, lone black pixels do
    // not grow.
    if (std::memcmp(pWorkImg, pTmpImg, bytes) == 0) return *pSize;
  }
}
