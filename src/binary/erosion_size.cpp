// How large a square an image can be eroded by before nothing is left.
//
// Each round measures the distances of the white pixels to the ends of their runs and erodes with their
// median as half size. Along rows the distances of a run are copied from a table. Along columns they are
// counted row by row, once downwards and once upwards, so that a step works on whole rows.

#include <algorithm>
#include <array>
#include <cstring>

#include "core/byte_counter.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "histogram/histogram.h"
#include "nuv/binary.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// Distances stop rising here.
constexpr uint8_t kMaxDistance = 254;

// The distances from 1 to the greatest, and back to 1.
constexpr std::array<uint8_t, 2 * kMaxDistance> make_ramps() {
  std::array<uint8_t, 2 * kMaxDistance> ramps{};
  for (std::size_t i = 0; i < kMaxDistance; ++i) {
    ramps[i] = ramps[ramps.size() - 1 - i] = static_cast<uint8_t>(i + 1);
  }
  return ramps;
}
constexpr std::array<uint8_t, 2 * kMaxDistance> kRamps = make_ramps();

// Replaces the pixels of a run by their distances to the nearer end. The distance is 1 at both ends.
void store_distances(uint8_t* row, int32_t first, int32_t last) {
  const int32_t count = last - first + 1;
  const auto rising = static_cast<std::size_t>(std::min<int32_t>((count + 1) / 2, kMaxDistance));
  const auto falling = static_cast<std::size_t>(std::min<int32_t>(count / 2, kMaxDistance));
  uint8_t* falls = row + last + 1 - falling;
  std::memcpy(row + first, kRamps.data(), rising);
  std::memset(row + first + rising, kMaxDistance, static_cast<std::size_t>(count) - rising - falling);
  std::memcpy(falls, kRamps.data() + kRamps.size() - falling, falling);
}

// One step along the columns. The distance of a white pixel from the end of its run is that of the pixel before
// it plus 1. The pixel becomes that distance if it is less.
NUV_ROW_KERNEL void take_lesser_distance(uint8_t* NUV_RESTRICT row, uint8_t* NUV_RESTRICT distances,
                                         std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t pixel = row[x];
    const auto next = static_cast<uint8_t>(lesser(distances[x], kMaxDistance - 1) + 1);
    const uint8_t distance = pixel != 0 ? next : 0;
    distances[x] = distance;
    row[x] = lesser(pixel, distance);
  }
}

// Replaces each white pixel by the least of its distances to the ends of its runs in row and column, and counts
// the results. Each row is measured just before the way down reaches it, and counted on the way up, so that a
// large image passes through the cache twice.
Histogram distances_to_run_ends(GrayImage image) {
  constexpr int32_t kStrip = 4096;
  ByteCounter counter;
  if (image.empty()) return counter.counts();
  const Lines rows = rows_of(image);
  std::array<uint8_t, kStrip> distances;
  for (int32_t x = 0; x < image.width; x += kStrip) {
    const int32_t n = std::min(kStrip, image.width - x);
    distances.fill(0);
    for (int32_t y = 0; y < image.height; ++y) {
      uint8_t* row = image.row(y);
      if (x == 0) {
        for_white_runs(rows[y], [row](int32_t first, int32_t last) { store_distances(row, first, last); });
      }
      take_lesser_distance(row + x, distances.data(), n);
    }
    distances.fill(0);
    for (int32_t y = image.height - 1; y >= 0; --y) {
      uint8_t* row = image.at(x, y);
      take_lesser_distance(row, distances.data(), n);
      for_white_runs({row, n, 1},
                     [&](int32_t first, int32_t last) { counter.add(row + first, last - first + 1); });
    }
  }
  return counter.counts();
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGetMaxSizeofMinFilter(uint8_t* pBinImg, uint8_t* pTmpImg, uint8_t* pWorkImg, int32_t width,
                                 int32_t height, int32_t* pSize) {
  const GrayImage work{pWorkImg, width, height};
  *pSize = 0;
  copy_bytes(pWorkImg, pBinImg, work.size());
  for (;;) {
    copy_bytes(pTmpImg, pWorkImg, work.size());
    Histogram bins = distances_to_run_ends(work);
    const int32_t largest = last_occupied(bins.data());
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
    // An erosion can leave white unchanged: borders repeat the nearest result, and lone black pixels
    // do not grow.
    if (std::memcmp(pWorkImg, pTmpImg, static_cast<std::size_t>(work.size())) == 0) return *pSize;
  }
}
