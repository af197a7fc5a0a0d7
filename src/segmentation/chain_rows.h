// A chain prepared for many tests of points: its crossings, sorted by row and column.

#ifndef NUV_SEGMENTATION_CHAIN_ROWS_H
#define NUV_SEGMENTATION_CHAIN_ROWS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "contours/chain.h"
#include "contours/crossings.h"
#include "core/buffer.h"
#include "core/views.h"

namespace nuv {

// The crossings of a chain that NuvIsPointIncludedByChain() adds up, sorted by row and column. They pay off
// if many points are tested; for a few, ChainBlocks cost less.
class ChainRows {
 public:
  explicit operator bool() const { return crossings_ != nullptr; }
  void reset() {
    ends_.reset();
    crossings_.reset();
  }

  // Sorts the crossings of a chain within the rows of a box. The rows stay empty if allocation fails.
  void build(const Chain& chain, Region box) {
    first_ = box.y1;
    rows_ = box.rows();
    const auto rows = static_cast<std::size_t>(rows_);
    ends_ = allocate<std::size_t>(rows + 1);
    if (!ends_) return;
    std::fill_n(ends_.get(), rows + 1, std::size_t{0});
    for_each_crossing(chain, [this](int32_t y, Crossing) { ++ends_[row(y) + 1]; });
    for (std::size_t i = 0; i < rows; ++i) ends_[i + 1] += ends_[i];
    crossings_ = allocate<Crossing>(ends_[rows]);
    if (!crossings_) return;
    // ends_[i] is the begin of row i here. Filling the row moves it to the end of the row.
    for_each_crossing(chain, [this](int32_t y, Crossing c) { crossings_[ends_[row(y)]++] = c; });
    for (std::size_t i = 0; i < rows; ++i) {
      Crossing* begin = crossings_.get() + (i == 0 ? 0 : ends_[i - 1]);
      Crossing* end = crossings_.get() + ends_[i];
      std::sort(begin, end, [](Crossing a, Crossing b) { return a.x > b.x; });
      int32_t sum = 0;
      for (Crossing* c = begin; c != end; ++c) c->sum = sum += c->sum;
    }
  }

  bool holds(int32_t x, int32_t y) const {
    if (y < first_ || y - first_ >= rows_) return false;
    const std::size_t i = row(y);
    const Crossing* begin = crossings_.get() + (i == 0 ? 0 : ends_[i - 1]);
    const Crossing* end = crossings_.get() + ends_[i];
    const Crossing* left = std::partition_point(begin, end, [=](Crossing c) { return c.x >= x; });
    return left != begin && left[-1].sum != 0;
  }

 private:
  // A crossing counts for the points at its left and for the point at its column.
  struct Crossing {
    int32_t x;
    int32_t sum;  // after sorting: together with the crossings at its right
  };

  std::size_t row(int32_t y) const { return static_cast<std::size_t>(y - first_); }

  // A position adds kCrossing for the points of its row up to itself, and kOnPoint for the point itself. The
  // second is a crossing at the point minus one at its left neighbour.
  template <class Visit>
  static void for_each_crossing(const Chain& chain, Visit visit) {
    Point p = chain.start;
    for (int32_t i = 0; i < chain.n; ++i) {
      const int before = chain.previous(i);
      const int code = direction_of(chain.codes[i]);
      const int passing = kCrossing[before / 4][code];
      const int at_point = kOnPoint[before][code];
      if (passing + at_point != 0) visit(p.y, Crossing{p.x, passing + at_point});
      if (at_point != 0) visit(p.y, Crossing{p.x - 1, -at_point});
      take_step(p, chain.codes[i]);
    }
  }

  Buffer<std::size_t> ends_;
  Buffer<Crossing> crossings_;
  int32_t first_ = 0;
  int32_t rows_ = 0;
};

}  // namespace nuv

#endif
