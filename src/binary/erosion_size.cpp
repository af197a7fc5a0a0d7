// How large a square an image can be eroded by before nothing is left.
//
// Each round measures the distances of the white pixels to the ends of their runs and erodes with their
// median as half size. Along rows the distances of a run are copied from a table. Along columns they are
// counted row by row, once downwards and once upwards, so that a step works on whole rows.
//
// Only the least box that holds all white pixels matters, and each erosion shrinks it. So a round works on that
// box alone, copied into the caller's work space as an image of its own. The rounds together then cost little
// more than the first one.

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

// ---- the box of the white pixels ----

// The least region that holds all white pixels. It is empty if there is none.
Region box_of_white(GrayImage image) {
  const Lines rows = rows_of(image);
  const auto is_black = [&](int32_t y) { return next_white(rows[y], 0) == rows.length; };
  Region box{image.width, -1, 0, rows.count - 1};
  while (box.y1 <= box.y2 && is_black(box.y1)) ++box.y1;
  while (box.y1 <= box.y2 && is_black(box.y2)) --box.y2;
  for (int32_t y = box.y1; y <= box.y2; ++y) {
    const Line row = rows[y];
    box.x1 = std::min(box.x1, next_white({row.start, box.x1, 1}, 0));
    int32_t last = image.width - 1;
    while (last > box.x2 && row[last] == 0) --last;
    box.x2 = last;
  }
  return box;
}

// The region with up to two more pixels on each side. A black pixel next to a white one grows only beside
// another black one, so erosions of the region need both.
Region with_margin(Region box, GrayImage image) {
  constexpr int32_t kMargin = 2;
  return Region{box.x1 - kMargin, box.x2 + kMargin, box.y1 - kMargin, box.y2 + kMargin}.clamped_to(
      image.width, image.height);
}

// Copies a region of an image to the first pixels of some memory, which may be those of the image. Returns it as
// an image of its own.
GrayImage cropped(GrayImage image, Region region, uint8_t* to) {
  const GrayImage result{to, region.columns(), region.rows()};
  if (to == image.pixels && result.size() == image.size()) return result;
  for (int32_t y = 0; y < result.height; ++y) {
    std::memmove(result.row(y), image.at(region.x1, region.y1 + y), static_cast<std::size_t>(result.width));
  }
  return result;
}

// Moves an image that takes the first pixels of a larger one to the given place of it, and makes all other
// pixels black. Rows move to higher addresses, the last one first.
void place_in(GrayImage larger, Point place, GrayImage image) {
  uint8_t* end = larger.pixels + larger.size();
  for (int32_t y = image.height - 1; y >= 0; --y) {
    uint8_t* row = larger.at(place.x, place.y + y);
    std::memmove(row, image.row(y), static_cast<std::size_t>(image.width));
    fill_bytes(row + image.width, 0, end - (row + image.width));
    end = row;
  }
  fill_bytes(larger.pixels, 0, end - larger.pixels);
}

// Erodes an image by a square with half size m. Returns false if the square is larger than the whole image,
// which the source is a part of, or if allocation fails.
bool erode(GrayImage source, int32_t m, GrayImage whole, GrayImage result) {
  const int32_t side = 2 * m + 1;
  if (m == 1) {
    NuvBinImgMinFilter3x3(source.pixels, source.width, source.height, result.pixels);
    return true;
  }
  if (side > whole.width || side > whole.height) return false;
  if (side > source.width || side > source.height) {
    // The square reaches the black pixels around the part from everywhere.
    fill_bytes(result.pixels, 0, result.size());
    return true;
  }
  return NuvBinImgFilter(source.pixels, source.width, source.height, m, m,
                         static_cast<uint32_t>((side * side - 1) * 255), result.pixels);
}

bool are_equal(GrayImage a, GrayImage b) {
  return std::memcmp(a.pixels, b.pixels, static_cast<std::size_t>(a.size())) == 0;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGetMaxSizeofMinFilter(uint8_t* pBinImg, uint8_t* pTmpImg, uint8_t* pWorkImg, int32_t width,
                                 int32_t height, int32_t* pSize) {
  const GrayImage whole{pWorkImg, width, height};
  GrayImage image{pBinImg, width, height};  // of the round
  Point place{0, 0};                        // where the image lies in the whole one
  *pSize = 0;
  for (;;) {
    const Region box = box_of_white(image);
    if (box.empty()) {
      fill_bytes(pTmpImg, 0, whole.size());
      fill_bytes(pWorkImg, 0, whole.size());
      return *pSize -= 1;
    }
    const Region part = with_margin(box, image);
    place = {place.x + part.x1, place.y + part.y1};
    image = cropped(image, part, pWorkImg);
    const GrayImage before{pTmpImg, image.width, image.height};
    copy_bytes(pTmpImg, pWorkImg, image.size());
    Histogram bins = distances_to_run_ends(image);
    const int32_t m = std::max(NuvGetMedianInHistogram(bins.data()), 1);
    const bool is_last = last_occupied(bins.data()) == 1;
    *pSize += is_last ? 1 : 2 * m;
    // An erosion can leave white unchanged: borders repeat the nearest result, and lone black pixels
    // do not grow.
    if (is_last || !erode(before, m, whole, image) || are_equal(image, before)) {
      place_in({pTmpImg, width, height}, place, before);
      place_in(whole, place, image);
      return *pSize;
    }
  }
}
