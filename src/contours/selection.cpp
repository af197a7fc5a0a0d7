// The contours of an image, selected by what they measure: marked, drawn, removed, painted, and the search
// for squares.
//
// All functions scan the image and trace each contour when they find it. They differ in the rows that they
// scan, in the limit of background, and in what they do with a contour. Two of them also act on pairs of
// pixels at which no contour starts. They use the scan for pairs and keep the last contour.

#include <algorithm>
#include <cstring>
#include <numeric>

#include "contours/chain.h"
#include "contours/marks.h"
#include "contours/stamps.h"
#include "contours/trace.h"
#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

NUV_ROW_KERNEL void contours_to_white(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] == kTracedContour ? 255 : 0;
}

// A traced contour. Its codes are in the work buffer.
struct Traced {
  ContourStart start;
  int32_t n;
};

struct ChainSize {
  int32_t area;
  int32_t perimeter;
};

ChainSize polygon_size(uint8_t* codes, int32_t n) {
  ChainSize size{};
  NuvAreaAndPerimeter(codes, n, &size.area, &size.perimeter);
  return size;
}

bool lies_in(int32_t value, int32_t min, int32_t max) {
  return value >= min && value <= max;
}

// The rows of a scan, and the limit below which the pixel before an outer contour lies.
struct Scan {
  int32_t first_row;
  int32_t step;
  uint8_t background_limit;
};
constexpr Scan kEveryRow{1, 1, kBackgroundLimit};

Scan every_nth_row(int32_t first_row, int32_t step) {
  return {first_row, std::max(step, 1), kNarrowBackgroundLimit};
}

template <class Action>
void for_scanned_rows(GrayImage image, Scan scan, Action action) {
  for (int64_t y = scan.first_row; y < image.height; y += scan.step) action(static_cast<int32_t>(y));
}

Traced trace(GrayImage image, uint8_t* codes, ContourStart start) {
  return {start, NuvTraceContour(image.pixels, image.width, start.x, start.y, codes,
                                 image.width * image.height, start.is_outer)};
}

// Traces every contour that the scan finds and calls action(Traced). The sides of the image must be clear.
template <class Action>
void for_contours(GrayImage image, uint8_t* codes, Scan scan, Action action) {
  for_scanned_rows(image, scan, [&](int32_t y) {
    scan_row_for_contours(
        image, y, 1, image.width - 1, [&](ContourStart start) { action(trace(image, codes, start)); },
        scan.background_limit);
  });
}

// Fills, in a copy of the image, the contours of one kind that enclose min_area to max_area pixels. Returns
// their number.
int32_t fill_by_area(GrayImage image, uint8_t* codes, GrayImage result, bool outer, int32_t min_area,
                     int32_t max_area, int32_t fill) {
  if (image.empty()) return 0;
  int32_t count = 0;
  clear_sides(image);
  copy_bytes(result.pixels, image.pixels, image.size());
  for_contours(image, codes, kEveryRow, [&](Traced contour) {
    if (contour.start.is_outer != outer) return;
    if (!lies_in(NuvRealPixelsEnclosed(codes, contour.n), min_area, max_area)) return;
    // The rim of an object is part of it. The rim of a hole is not.
    NuvFillingContour(result.pixels, result.width, contour.start.x, contour.start.y, codes, contour.n, outer,
                      kRightEdge, fill);
    ++count;
  });
  restore_binary(image, image.whole());
  return count;
}

// ---- squares ----

// The best n squares found so far, in no order.
class Squares {
 public:
  Squares(int32_t* x, int32_t* y, double* error, int32_t n) : x_(x), y_(y), error_(error), n_(n) {}

  // Once all places are taken, a square replaces the first one of greatest error, even if its own is greater.
  void add(int32_t x, int32_t y, double error) {
    if (n_ < 1) return;
    if (found_ < n_) {
      store(found_++, x, y, error);
      return;
    }
    if (!heap_ && !heap_was_tried_) build_heap();
    if (!heap_) {
      store(static_cast<int32_t>(std::max_element(error_, error_ + n_) - error_), x, y, error);
      return;
    }
    const auto comes_later = [this](int32_t a, int32_t b) { return is_replaced_later(a, b); };
    int32_t* const end = heap_.get() + n_;
    std::pop_heap(heap_.get(), end, comes_later);
    store(end[-1], x, y, error);
    std::push_heap(heap_.get(), end, comes_later);
  }
  int32_t found() const { return found_; }

 private:
  void store(int32_t place, int32_t x, int32_t y, double error) {
    x_[place] = x;
    y_[place] = y;
    error_[place] = error;
  }
  bool is_replaced_later(int32_t a, int32_t b) const {
    return error_[a] != error_[b] ? error_[a] < error_[b] : a > b;
  }
  // A heap of the places. A search per square would cost the product of squares and places. If allocation fails,
  // there is no heap.
  void build_heap() {
    heap_was_tried_ = true;
    heap_ = allocate<int32_t>(static_cast<std::size_t>(n_));
    if (!heap_) return;
    std::iota(heap_.get(), heap_.get() + n_, 0);
    std::make_heap(heap_.get(), heap_.get() + n_,
                   [this](int32_t a, int32_t b) { return is_replaced_later(a, b); });
  }

  int32_t* x_;
  int32_t* y_;
  double* error_;
  int32_t n_;
  int32_t found_ = 0;
  Buffer<int32_t> heap_;
  bool heap_was_tried_ = false;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvMarkContours(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const GrayImage result{pResImg, width, height};
  if (result.empty()) return;
  copy_bytes(pResImg, pBinImg, result.size());
  clear_sides(result);
  for_scanned_rows(result, kEveryRow, [=](int32_t y) {
    scan_row_for_contours(result, y, 1, width - 1, [=](ContourStart start) {
      NuvMarkContour(pResImg, width, start.x, start.y, start.is_outer);
    });
  });
  contours_to_white(pResImg, result.size());
}

int32_t NuvSelectContoursByPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                     int32_t yStep, int32_t minPerimeter, int32_t maxPerimeter,
                                     uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return 0;
  // Even a diagonal step is shorter than 2.
  const int32_t min_codes = std::max(minPerimeter / 2, 2);
  int32_t count = 0;
  clear_sides(image);
  for_contours(image, pChainCode, every_nth_row(1, yStep), [&](Traced contour) {
    if (contour.n < min_codes) return;
    if (!lies_in(polygon_size(pChainCode, contour.n).perimeter, minPerimeter, maxPerimeter)) return;
    ++count;
    NuvMarkChainByColor(pResImg, width, contour.start.x, contour.start.y, pChainCode, contour.n, 255);
  });
  restore_binary(image, image.whole());
  return count;
}

int32_t NuvSelectContoursByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                int32_t yStep, int32_t minArea, int32_t maxArea, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return 0;
  const Scan scan = every_nth_row(1, yStep);
  clear_sides(image);

  // Every pair of different pixels counts the last chain traced. Before the first trace that is the content
  // of the buffer.
  int32_t n = static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(width) * scan.step, image.size()));
  bool selected = lies_in(polygon_size(pChainCode, n).area, minArea, maxArea);
  int32_t count = 0;
  StampedChain stamps({pResImg, width, height}, pResImg != pBinImg);
  for_scanned_rows(image, scan, [&](int32_t y) {
    scan_row_for_pairs(image, y, 1, width - 1, [&](int32_t x, uint8_t pixel, uint8_t left) {
      const bool is_outer = starts_outer(pixel, left, scan.background_limit);
      const Point start{pixel == 255 ? x : x - 1, y};
      if (is_outer || starts_inner(pixel, left)) {
        stamps.draw(pChainCode, n);
        n = trace(image, pChainCode, {start.x, start.y, is_outer}).n;
        selected = lies_in(polygon_size(pChainCode, n).area, minArea, maxArea);
      }
      if (!selected) return;
      ++count;
      stamps.add(start, pChainCode, n);
    });
  });
  stamps.draw(pChainCode, n);
  restore_binary(image, image.whole());
  return count;
}

int32_t NuvMarkMaxAreaHoleContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                  int32_t color) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return 0;
  // The sides keep their values, so the tracer works on a copy with a frame of background.
  const GrayImage framed{nullptr, width + 2, height + 2};
  const Buffer<uint8_t> pixels = allocate<uint8_t>(framed.size());
  if (!pixels) return 0;
  const GrayImage copy{pixels.get(), framed.width, framed.height};
  clear_sides(copy);
  for (int32_t y = 0; y < height; ++y) {
    std::memcpy(copy.at(1, y + 1), image.row(y), static_cast<std::size_t>(width));
  }

  const int32_t size = width * height;
  int32_t used = 0;  // the chains lie one after the other
  const auto trace_to = [&](int32_t place, ContourStart start) {
    // A sink leaves the last byte of its capacity free.
    ChainSink chain(pChainCode + place, std::min(size, size - place + 1));
    trace_contour(copy.at(start.x, start.y), copy.width, start.is_outer,
                  [&chain](uint8_t code) { chain(code); });
    return chain;
  };
  ContourStart best{1, 1, false};
  int32_t best_place = 0;
  int32_t best_area = 0;
  int32_t best_n = 0;
  for (int32_t y = 2; y <= height; ++y) {
    scan_row_for_contours(copy, y, 1, width, [&](ContourStart start) {
      ChainSink chain = trace_to(used, start);
      if (chain.cut()) {
        // The marks are objects, too, so the contour can be traced again, to the start of the buffer.
        used = 0;
        chain = trace_to(used, start);
      }
      const int32_t n = chain.count();
      const int32_t area = start.is_outer ? 0 : NuvRealPixelsEnclosed(pChainCode + used, n);
      if (area > best_area) {
        best = start;
        best_place = used;
        best_area = area;
        best_n = n;
      }
      used += n;
    });
  }
  // Later chains may have overwritten the best one.
  if (best_n > 0) trace_to(best_place, best);
  for (int32_t y = 0; y < height; ++y) {
    std::memcpy(image.row(y), copy.at(1, y + 1), static_cast<std::size_t>(width));
  }
  walk_start_and_ends({{best.x - 1, best.y - 1}, pChainCode + best_place, best_n},
                      [=](Point p) { *image.at(p.x, p.y) = low_byte(color); });
  return best_area;
}

int32_t Nuv255NRegionsWithMaxArea(uint8_t* pBinImg, int32_t width, int32_t height, int32_t N,
                                  int32_t minPerimeter, uint8_t* pResImg) {
  NUV_CONTOUR_STRUCT* contours = NuvGetContours(pBinImg, pResImg, width, height, minPerimeter, 0, kOuterOnly);
  fill_bytes(pResImg, 0, GrayImage{pResImg, width, height}.size());

  int32_t regions = 0;
  for (NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext, ++regions) {
    NuvAreaAndPerimeter(c->pChainCode, c->N, &c->area, &c->perimeter);
  }
  // The area of the Nth largest region, which a region must exceed to be painted. With fewer than N regions
  // all are painted.
  int32_t limit = 0;
  bool known = N > regions;
  if (N >= 1 && !known) {
    const Buffer<int32_t> areas = allocate<int32_t>(regions);
    known = areas != nullptr;
    if (known) {
      int32_t* end = areas.get();
      for (const NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) *end++ = c->area;
      std::nth_element(areas.get(), end - N, end);
      limit = *(end - N);
    }
  }
  int32_t painted = 0;
  for (const NUV_CONTOUR_STRUCT* c = contours; known && c != nullptr; c = c->pNext) {
    if (c->area <= limit) continue;
    NuvPastePixels2ResImg(pBinImg, width, c->x, c->y, c->pChainCode, c->N, kRightEdge, 255, pResImg, 255);
    ++painted;
  }
  NuvFreeContours(contours);
  return painted;
}

int32_t NuvRemoveBlackRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                    int32_t minArea, int32_t maxArea, uint8_t* pResImg) {
  return fill_by_area({pBinImg, width, height}, pChainCode, {pResImg, width, height}, false, minArea, maxArea,
                      255);
}

int32_t NuvRemoveWhiteRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                    int32_t minArea, int32_t maxArea, uint8_t* pResImg) {
  return fill_by_area({pBinImg, width, height}, pChainCode, {pResImg, width, height}, true, minArea, maxArea,
                      0);
}

void NuvDeleteShortContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                           int32_t minLength, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return;
  clear_sides(image);
  copy_bytes(pResImg, pBinImg, image.size());
  const auto erase = [=](ContourStart start, int32_t n) {
    if (n <= minLength) NuvMarkChainByColor(pResImg, width, start.x, start.y, pChainCode, n, 0);
  };

  ContourStart last{};
  bool traced = false;
  for (int32_t y = 1; y < height - 1; ++y) {
    scan_row_for_pairs(image, y, 1, width - 1, [&](int32_t x, uint8_t pixel, uint8_t left) {
      const bool is_outer = starts_outer(pixel, left);
      if (is_outer || starts_inner(pixel, left)) {
        last = {is_outer ? x : x - 1, y, is_outer};
        traced = true;
        const int32_t n = trace(image, pChainCode, last).n;
        if (is_outer) erase(last, n);
      } else if (pixel != 0 && traced) {
        // A pair that starts no contour counts as a contour without codes at the last start.
        erase(last, 0);
      }
    });
  }
  restore_binary(image, image.whole());
}

int32_t NuvGetNSquaresCenter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                             int32_t step, bool useOuter, double tolerance, int32_t* pX, int32_t* pY,
                             double* pError, int32_t N) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return 0;
  const Scan scan = every_nth_row(0, step);
  const double least = 1.0 - tolerance;
  Squares squares(pX, pY, pError, N);
  clear_sides(image);
  for_contours(image, pChainCode, scan, [&](Traced contour) {
    // No side of a square is shorter than the distance of the scanned rows.
    if (contour.start.is_outer != useOuter || contour.n < 4 * static_cast<int64_t>(scan.step)) return;
    const ChainSize size = polygon_size(pChainCode, contour.n);
    const double perimeter = size.perimeter;
    const double squareness = (size.area - perimeter * 0.5) * 16 / (perimeter * perimeter);
    if (least > squareness) return;
    int32_t x1 = 0;
    int32_t x2 = 0;
    int32_t y1 = 0;
    int32_t y2 = 0;
    NuvContourRect(contour.start.x, contour.start.y, pChainCode, contour.n, &x1, &x2, &y1, &y2);
    const double aspect = static_cast<double>(x2 - x1 + 1) / (y2 - y1 + 1);
    // A box that is too wide has failed the test of squareness.
    if (least > aspect) return;
    squares.add((x1 + x2) / 2, (y1 + y2) / 2, 1.0 - (aspect + squareness) * 0.5);
  });
  return squares.found();
}
