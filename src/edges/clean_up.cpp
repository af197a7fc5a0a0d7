// Clean-up of edge images: deletes crossings, short contours and weak points, and marks gaps.

#include <algorithm>
#include <cstring>

#include "contours/trace.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/contours.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr uint8_t kToBeDeleted = 128;
constexpr uint8_t kEndPoint = 200;
constexpr uint8_t kGap = 100;

constexpr int32_t kMostGradient = 510;

// ---- neighbours ----

// The number of the eight neighbours of p that are not 0; w is the row stride.
NUV_INLINE uint8_t neighbours_of(const uint8_t* p, std::ptrdiff_t w) {
  return static_cast<uint8_t>((p[-w - 1] != 0) + (p[-w] != 0) + (p[-w + 1] != 0) + (p[-1] != 0) +
                              (p[1] != 0) + (p[w - 1] != 0) + (p[w] != 0) + (p[w + 1] != 0));
}

// Pixels that are not 0 and have least to most neighbours become mark; the others stay. Each condition chooses
// between two bytes: GCC 12 makes wrong vector code for 64-bit ARM where the conditions are combined first.
NUV_ROW_KERNEL void mark_by_neighbours(const uint8_t* p, std::ptrdiff_t w, uint8_t least, uint8_t most,
                                       uint8_t mark, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++p) {
    const uint8_t count = neighbours_of(p, w);
    const uint8_t from_least = count < least ? p[0] : mark;
    const uint8_t within = count > most ? p[0] : from_least;
    out[x] = p[0] == 0 ? 0 : within;
  }
}

constexpr int32_t kSpan = 1024;

// Calls write(x, y, out, n) for spans of n pixels of the interior, which begin at (x, y), and copies out over
// the span. Spans before it already hold their new pixels, so write() may use only those properties of
// neighbouring pixels that rewriting does not change.
template <class Write>
void rewrite_interior(GrayImage image, Write write) {
  const Region interior = image.interior();
  uint8_t out[kSpan];
  for (int32_t y = interior.y1; y <= interior.y2; ++y) {
    for (int32_t x = interior.x1; x <= interior.x2; x += std::min(kSpan, interior.x2 + 1 - x)) {
      const int32_t n = std::min(kSpan, interior.x2 + 1 - x);
      write(x, y, out, n);
      std::memcpy(image.at(x, y), out, static_cast<std::size_t>(n));
    }
  }
}

// A mark is not 0, so it does not change the counts of the pixels around it.
void mark_interior(GrayImage image, uint8_t least, uint8_t most, uint8_t mark) {
  rewrite_interior(image, [=](int32_t x, int32_t y, uint8_t* out, std::ptrdiff_t n) {
    mark_by_neighbours(image.at(x, y), image.width, least, most, mark, out, n);
  });
}

NUV_ROW_KERNEL void delete_marked(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] == kToBeDeleted ? 0 : pixels[i];
}

// ---- weak points ----

NUV_ROW_KERNEL void keep_strong(const uint8_t* edges, const uint8_t* gray, std::ptrdiff_t w, int16_t least,
                                uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x, ++gray) {
    const auto gradient = static_cast<int16_t>(difference(gray[w], gray[-w]) + difference(gray[1], gray[-1]));
    const uint8_t kept = gradient < least ? 0 : 255;
    out[x] = edges[x] & kept;
  }
}

// ---- gaps ----

// A window has four quadrants around its pixel (x, y), which overlap in row y and column x: rows y - reach to
// y or y to y + reach - 1, and columns x - reach to x or x to x + reach - 1. The pixel lies between two end
// points if two opposite quadrants hold one each.

constexpr int32_t kMaxEndPoints = 1000;

// Adds the end points of one row to the counts of the columns and subtracts those of another.
NUV_ROW_KERNEL void slide_counts(const uint8_t* in, const uint8_t* out, uint32_t* NUV_RESTRICT counts,
                                 std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    counts[x] += static_cast<uint32_t>(in[x] == kEndPoint) - static_cast<uint32_t>(out[x] == kEndPoint);
  }
}

// The upper or the lower half of a window that slides down the image: the number of end points in each
// column, and in all columns before it.
struct HalfWindow {
  Buffer<uint32_t> counts;
  Buffer<uint32_t> before;

  explicit HalfWindow(int32_t width)
      : counts(allocate<uint32_t>(width)), before(allocate<uint32_t>(int64_t{width} + 1)) {
    if (counts) std::fill_n(counts.get(), width, 0);
  }

  bool allocated() const { return counts && before; }
  void sum_up(int32_t width) {
    uint32_t sum = 0;
    for (int32_t x = 0; x < width; ++x) {
      before[static_cast<std::size_t>(x)] = sum;
      sum += counts[static_cast<std::size_t>(x)];
    }
    before[static_cast<std::size_t>(width)] = sum;
  }
};

// Sets gaps to 255 where one of n pixels is a gap, and to 0 elsewhere. upper[x] and lower[x] are the numbers
// of end points before column x in the two halves of the window.
NUV_ROW_KERNEL void find_gaps(const uint8_t* edges, const uint8_t* mask, const uint32_t* upper,
                              const uint32_t* lower, std::ptrdiff_t reach, uint8_t* NUV_RESTRICT gaps,
                              std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const bool upper_left = upper[x + 1] != upper[x - reach];
    const bool upper_right = upper[x + reach] != upper[x];
    const bool lower_left = lower[x + 1] != lower[x - reach];
    const bool lower_right = lower[x + reach] != lower[x];
    const bool is_between = (upper_left & lower_right) | (upper_right & lower_left);
    gaps[x] = (is_between & (mask[x] != 0) & (edges[x] == 0)) ? 255 : 0;
  }
}

NUV_ROW_KERNEL void mark_gaps(const uint8_t* gaps, uint8_t* NUV_RESTRICT edges, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    edges[x] = static_cast<uint8_t>((gaps[x] & kGap) | (~gaps[x] & edges[x]));
  }
}

// Returns whether (x, y) lies between two of the first thousand end points of its window, in raster order. It
// scans the window and allocates nothing.
bool is_between_first_end_points(GrayImage edges, int32_t x, int32_t y, int32_t reach) {
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

void mark_gaps_by_scanning(GrayImage edges, GrayImage mask, int32_t reach) {
  const Region inner = edges.interior(reach);
  for (int32_t y = inner.y1; y <= inner.y2; ++y) {
    for (int32_t x = inner.x1; x <= inner.x2; ++x) {
      uint8_t& pixel = *edges.at(x, y);
      const bool is_candidate = *mask.at(x, y) != 0 && pixel == 0;
      if (is_candidate && is_between_first_end_points(edges, x, y, reach)) pixel = kGap;
    }
  }
}

// Marking a gap changes no end point, so the order of the pixels does not matter.
void mark_gaps(GrayImage edges, GrayImage mask, int32_t reach) {
  const Region inner = edges.interior(reach);
  if (inner.empty()) return;
  HalfWindow upper(edges.width);
  HalfWindow lower(edges.width);
  const Buffer<uint8_t> no_end_points = allocate<uint8_t>(edges.width);
  if (!upper.allocated() || !lower.allocated() || !no_end_points) {
    mark_gaps_by_scanning(edges, mask, reach);
    return;
  }
  std::fill_n(no_end_points.get(), edges.width, 0);
  const auto slide = [&](HalfWindow& half, const uint8_t* in, const uint8_t* out) {
    slide_counts(in, out, half.counts.get(), edges.width);
  };
  for (int32_t i = 0; i < reach; ++i) {
    slide(upper, edges.row(i), no_end_points.get());
    slide(lower, edges.row(reach + i), no_end_points.get());
  }
  slide(upper, edges.row(reach), no_end_points.get());

  // Only a large window can hold more end points than the limit.
  const bool may_overflow = int64_t{4} * reach * reach > kMaxEndPoints;
  uint8_t gaps[kSpan];
  for (int32_t y = inner.y1; y <= inner.y2; ++y) {
    upper.sum_up(edges.width);
    lower.sum_up(edges.width);
    for (std::ptrdiff_t first = inner.x1; first <= inner.x2; first += kSpan) {
      const std::ptrdiff_t n = std::min<std::ptrdiff_t>(kSpan, inner.x2 + 1 - first);
      uint8_t* row = edges.row(y) + first;
      const uint32_t* above = upper.before.get() + first;
      const uint32_t* below = lower.before.get() + first;
      find_gaps(row, mask.row(y) + first, above, below, reach, gaps, n);
      for (std::ptrdiff_t x = 0; may_overflow && x < n; ++x) {
        if (gaps[x] == 0) continue;
        const uint32_t in_window =
            (above[x + reach] - above[x - reach]) + (below[x + reach] - below[x - reach]);
        if (in_window <= kMaxEndPoints) continue;
        if (!is_between_first_end_points(edges, static_cast<int32_t>(first + x), y, reach)) gaps[x] = 0;
      }
      mark_gaps(gaps, row, n);
    }
    if (y == inner.y2) break;
    slide(upper, edges.row(y + 1), edges.row(y - reach));
    slide(lower, edges.row(y + reach), edges.row(y));
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvEdgeDeleteNoiseAndCrossPoints(uint8_t* pBinImg, int32_t width, int32_t height,
                                      int32_t maxNeighbours) {
  const GrayImage image{pBinImg, width, height};
  clear_sides(image);
  // A pixel without neighbours stays, whatever the limit.
  if (maxNeighbours < 8) {
    mark_interior(image, static_cast<uint8_t>(std::max(maxNeighbours, 0) + 1), 8, kToBeDeleted);
  }
  delete_marked(pBinImg, image.size());
}

void NuvEdgeDeleteNoiseByLength(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                uint8_t* pResImg) {
  NUV_CONTOUR_STRUCT* contours = NuvGetContours(pBinImg, pResImg, width, height, minLength, 0, kOuterOnly);
  fill_bytes(pResImg, 0, GrayImage{pResImg, width, height}.size());
  for (const NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) {
    NuvMarkChainByColor(pResImg, width, c->x, c->y, c->pChainCode, c->N, 255);
  }
  NuvFreeContours(contours);
}

void NuvRemoveEdgePointsByGrd(uint8_t* pEdgeImg, uint8_t* pGryImg, int32_t width, int32_t height,
                              int32_t minGrd) {
  if (minGrd <= 0) return;
  const auto least = static_cast<int16_t>(std::min(minGrd, kMostGradient + 1));
  const GrayImage edges{pEdgeImg, width, height};
  const GrayImage gray{pGryImg, width, height};
  rewrite_interior(edges, [=](int32_t x, int32_t y, uint8_t* out, std::ptrdiff_t n) {
    keep_strong(edges.at(x, y), gray.at(x, y), width, least, out, n);
  });
}

void NuvConnectEdge(uint8_t* pEdgeImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t gapLength) {
  const GrayImage edges{pEdgeImg, width, height};
  mark_interior(edges, 0, 1, kEndPoint);
  const int32_t reach = gapLength / 2 + 1;
  if (reach < 1) return;  // the windows are empty
  mark_gaps(edges, {pMskImg, width, height}, reach);
}
