// Edge images cleaned: crossings, short contours and weak points dropped, gaps marked.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "contours/trace.h"
#include "frame/borders.h"
#include "frame/buffer.h"
#include "frame/neighbours.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/contours.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr uint8_t kToBeDeleted = 128;
constexpr uint8_t kEndPoint = 200;
constexpr uint8_t kGap = 100;

// Whether more than a limit of the eight neighbours of p are not 0.
class NeighbourCount {
 public:
  explicit NeighbourCount(int32_t width) : offsets_(neighbour_offsets(width)) {}

  bool exceeds(const uint8_t* p, int32_t limit) const {
    int32_t count = 0;
    for (std::ptrdiff_t offset : offsets_) {
      if (p[offset] != 0 && ++count > limit) return true;
    }
    return false;
  }

 private:
  std::array<std::ptrdiff_t, 8> offsets_;
};

// Calls action(x, y) for the interior pixels in raster order.
template <class Action>
void for_interior(GrayImage image, Action action) {
  const Region interior = image.interior();
  for (int32_t y = interior.y1; y <= interior.y2; ++y) {
    for (int32_t x = interior.x1; x <= interior.x2; ++x) action(x, y);
  }
}

NUV_ROW_KERNEL void delete_marked(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] == kToBeDeleted ? 0 : pixels[i];
}

// ---- gaps ----

// How many end points each column holds in the rows of the window, which slides down the image.
class EndPointColumns {
 public:
  EndPointColumns(GrayImage edges, int32_t reach)
      : edges_(edges), reach_(reach), counts_(allocate<int32_t>(static_cast<std::size_t>(edges.width))) {}

  // For the window of row y: rows y - reach to y + reach - 1.
  void start(int32_t y) {
    if (!counts_) return;
    std::fill_n(counts_.get(), edges_.width, 0);
    for (int32_t i = y - reach_; i < y + reach_; ++i) count_row(i, 1);
  }
  void move_down(int32_t y) {
    if (!counts_) return;
    count_row(y - reach_, -1);
    count_row(y + reach_, 1);
  }
  // Without the memory to know, every window may hold some.
  int32_t at(int32_t x) const { return counts_ ? counts_[static_cast<std::size_t>(x)] : 1; }

 private:
  void count_row(int32_t y, int32_t sign) {
    const uint8_t* row = edges_.row(y);
    for (int32_t x = 0; x < edges_.width; ++x) {
      counts_[static_cast<std::size_t>(x)] += row[x] == kEndPoint ? sign : 0;
    }
  }

  GrayImage edges_;
  int32_t reach_;
  Buffer<int32_t> counts_;
};

constexpr int32_t kMaxEndPoints = 1000;

// Whether the window of (x, y), rows y - reach to y + reach - 1 and columns likewise, holds two end points
// with y between their rows and x between their columns, all inclusive: one in a closed quadrant around (x,
// y), and one in the quadrant across. Only the first thousand end points count.
bool bridges_end_points(GrayImage edges, int32_t x, int32_t y, int32_t reach) {
  bool upper_left = false;
  bool upper_right = false;
  bool lower_left = false;
  bool lower_right = false;
  int32_t found = 0;
  for (int32_t py = y - reach; py < y + reach; ++py) {
    const uint8_t* row = edges.row(py);
    for (int32_t px = x - reach; px < x + reach; ++px) {
      if (row[px] != kEndPoint) continue;
      upper_left |= py <= y && px <= x;
      upper_right |= py <= y && px >= x;
      lower_left |= py >= y && px <= x;
      lower_right |= py >= y && px >= x;
      if ((upper_left && lower_right) || (upper_right && lower_left)) return true;
      if (++found == kMaxEndPoints) return false;
    }
  }
  return false;
}

// Calls bridge(x, y) for the pixels that mask and edges leave for a gap, where two end points are near.
template <class Bridge>
void for_gap_candidates(GrayImage edges, const uint8_t* mask, int32_t reach, Bridge bridge) {
  const Region inner = edges.interior(reach);
  if (inner.empty()) return;
  EndPointColumns columns(edges, reach);
  columns.start(reach);
  for (int32_t y = inner.y1; y <= inner.y2; ++y) {
    int32_t near = 0;
    for (int32_t x = 0; x < 2 * reach; ++x) near += columns.at(x);
    const uint8_t* allowed = mask + (edges.row(y) - edges.pixels);
    for (int32_t x = inner.x1; x <= inner.x2; ++x) {
      if (near >= 2 && allowed[x] != 0 && *edges.at(x, y) == 0) bridge(x, y);
      near += columns.at(x + reach) - columns.at(x - reach);
    }
    if (y < inner.y2) columns.move_down(y);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvEdgeDeleteNoiseAndCrossPoints(uint8_t* pBinImg, int32_t width, int32_t height,
                                      int32_t maxNeighbours) {
  const GrayImage image{pBinImg, width, height};
  const NeighbourCount neighbours(width);
  clear_sides(image);
  for_interior(image, [&](int32_t x, int32_t y) {
    uint8_t* p = image.at(x, y);
    // Marked pixels still count as neighbours.
    if (*p != 0 && neighbours.exceeds(p, maxNeighbours)) *p = kToBeDeleted;
  });
  delete_marked(pBinImg, image.size());
}

void NuvEdgeDeleteNoiseByLength(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                uint8_t* pResImg) {
  NUV_CONTOUR_STRUCT* contours = NuvGetContours(pBinImg, pResImg, width, height, minLength, 0, kOuterOnly);
  std::memset(pResImg, 0, static_cast<std::size_t>(GrayImage{pResImg, width, height}.size()));
  for (const NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) {
    NuvMarkChainByColor(pResImg, width, c->x, c->y, c->pChainCode, c->N, 255);
  }
  NuvFreeContours(contours);
}

void NuvRemoveEdgePointsByGrd(uint8_t* pEdgeImg, uint8_t* pGryImg, int32_t width, int32_t height,
                              int32_t minGrd) {
  const GrayImage edges{pEdgeImg, width, height};
  for_interior(edges, [=](int32_t x, int32_t y) {
    uint8_t* edge = edges.at(x, y);
    const uint8_t* p = pGryImg + (edge - edges.pixels);
    const int32_t gradient = std::abs(p[width] - p[-width]) + std::abs(p[1] - p[-1]);
    if (*edge != 0 && gradient < minGrd) *edge = 0;
  });
}

void NuvConnectEdge(uint8_t* pEdgeImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t gapLength) {
  const GrayImage edges{pEdgeImg, width, height};
  const NeighbourCount neighbours(width);
  for_interior(edges, [&](int32_t x, int32_t y) {
    uint8_t* p = edges.at(x, y);
    if (*p != 0 && !neighbours.exceeds(p, 1)) *p = kEndPoint;
  });
  const int32_t reach = gapLength / 2 + 1;
  if (reach < 1) return;  // windows of no pixels
  for_gap_candidates(edges, pMskImg, reach, [=](int32_t x, int32_t y) {
    if (bridges_end_points(edges, x, y, reach)) *edges.at(x, y) = kGap;
  });
}
