// Cutting a chain into straight pieces.
//
// A window grows along the chain code by code. Running sums give its path length, its chord, its box, and the
// four areas between its path and the sides of the box, so that each test costs the same however long the
// window is. The window grows while both tests hold. When a test fails, the last window that passed becomes a
// piece, and a new window starts a little before the failure, so that no corner is lost between two pieces. A
// window that never passed loses its first code instead.

#include "lines/chain_cutter.h"

#include <algorithm>

#include "core/arithmetic.h"
#include "core/neighbours.h"

namespace nuv {
namespace {

// Path lengths have 10 fractional bits.
constexpr int32_t kUnitStep = 1024;
constexpr int32_t kDiagonalStep = 1448;
constexpr int32_t kShortestTested = 6 * kUnitStep;
constexpr int32_t kShortestChain = 6;

// The least and the greatest coordinate of the window, and the indices of the points that reached them last.
class Extent {
 public:
  void reset(int32_t value, int32_t at) {
    low_ = high_ = value;
    low_at_ = high_at_ = at;
  }

  void add(int32_t value, int32_t at) {
    if (value <= low_) {
      low_ = value;
      low_at_ = at;
    } else if (value >= high_) {
      high_ = value;
      high_at_ = at;
    }
  }

  // Removes the first point of the window. If it held an extreme, the new extreme is taken from the next
  // three points alone. A chain moves by one pixel per step, so this is nearly the extreme of the rest.
  void drop(int32_t tail, const int32_t* values) {
    if (low_at_ == tail) {
      low_ = values[low_at_ = tail + 1];
      for (int32_t at = tail + 2; at <= tail + 3; ++at) {
        if (values[at] <= low_) low_ = values[low_at_ = at];
      }
    } else if (high_at_ == tail) {
      high_ = values[high_at_ = tail + 1];
      for (int32_t at = tail + 2; at <= tail + 3; ++at) {
        if (values[at] >= high_) high_ = values[high_at_ = at];
      }
    }
  }

  int32_t low() const { return low_; }
  int32_t high() const { return high_; }
  int32_t size() const { return high_ - low_ + 1; }

 private:
  int32_t low_ = 0;
  int32_t high_ = 0;
  int32_t low_at_ = 0;
  int32_t high_at_ = 0;
};

// The numbers of codes that move along one axis and of those that do not, and the sum of the other coordinate
// over the codes that move.
struct AxisSums {
  int32_t still = 0;
  int32_t moving = 0;
  int32_t other = 0;

  void add(int32_t step, int32_t other_coordinate, int32_t sign) {
    if (step == 0) {
      still += sign;
    } else {
      moving += sign;
      other += sign * other_coordinate;
    }
  }

  // The areas between the path and the side of the box at its low and at its high end.
  int32_t to_low(const Extent& e) const { return still + moving * (1 - e.low()) + other; }
  int32_t to_high(const Extent& e) const { return still + moving * (e.high() + 1) - other; }
};

class Window {
 public:
  explicit Window(const ChainWithPoints& chain) : chain_(chain) { restart(0); }

  void restart(int32_t tail) {
    tail_ = tail;
    length_ = chord_x_ = chord_y_ = 0;
    along_x_ = along_y_ = AxisSums{};
    x_.reset(chain_.x[tail], tail);
    y_.reset(chain_.y[tail], tail);
  }

  void add(int32_t i) {
    count(i, 1);
    x_.add(chain_.x[i], i);
    y_.add(chain_.y[i], i);
  }

  void drop_tail() {
    count(tail_, -1);
    x_.drop(tail_, chain_.x);
    y_.drop(tail_, chain_.y);
    ++tail_;
  }

  int32_t tail() const { return tail_; }
  int32_t length() const { return length_; }

  // i is the index of the last code added.
  bool is_straight(int32_t i, const Straightness& limits) const {
    const double chord2 = chord_y_ * chord_y_ + chord_x_ * chord_x_;
    const int32_t path = length_ >> 10;
    if (!(chord2 > path * (limits.min_straightness * limits.min_straightness) * path)) return false;

    const int32_t top = along_x_.to_low(y_);
    const int32_t bottom = along_x_.to_high(y_);
    const int32_t left = along_y_.to_low(x_);
    const int32_t right = along_y_.to_high(x_);
    const int32_t widest = std::max({right + bottom, left + top, right + top, left + bottom});
    // Two areas on opposite sides of a straight path fill the box, and share one pixel per code. An excess
    // lies between path and chord.
    const int32_t deviation = widest - x_.size() * y_.size() - (i - tail_ + 1);
    return deviation * deviation < chord2 * (limits.max_deviation * limits.max_deviation);
  }

 private:
  void count(int32_t i, int32_t sign) {
    const int d = direction_of(chain_.codes[i]);
    length_ += sign * (is_diagonal(d) ? kDiagonalStep : kUnitStep);
    chord_x_ += sign * kDx[d];
    chord_y_ += sign * kDy[d];
    along_x_.add(kDx[d], chain_.y[i], sign);
    along_y_.add(kDy[d], chain_.x[i], sign);
  }

  const ChainWithPoints& chain_;
  int32_t tail_ = 0;
  int32_t length_ = 0;
  int32_t chord_x_ = 0;
  int32_t chord_y_ = 0;
  AxisSums along_x_;
  AxisSums along_y_;
  Extent x_;
  Extent y_;
};

}  // namespace

int32_t trimmed_share(double min_straightness, int32_t count) {
  return std::max(truncated(count * (1.0 - min_straightness) * 0.5), 2);
}

int32_t cut_chain(const ChainWithPoints& chain, const Straightness& limits, Piece* pieces,
                  int32_t max_pieces) {
  if (chain.n < kShortestChain) return 0;
  int32_t n_pieces = 0;
  // Stores the codes from start up to the one before end.
  const auto store = [&](int32_t start, int32_t end) {
    if (n_pieces >= max_pieces) return;
    pieces[n_pieces++] = {{chain.x[start], chain.y[start]}, {chain.x[end], chain.y[end]}, end - start, start};
  };

  Window window(chain);
  bool has_candidate = false;
  int32_t first = 0;
  int32_t last = 0;
  for (int32_t i = 0; i < chain.n; ++i) {
    window.add(i);
    if (window.length() < kShortestTested) continue;
    if (window.is_straight(i, limits)) {
      if (window.length() >= limits.min_length * kUnitStep) {
        has_candidate = true;
        first = window.tail();
        last = i;
      }
    } else if (has_candidate) {
      store(first, last + 1);
      // The new window starts after the first code of the piece, whatever the setting.
      i = std::max(i - trimmed_share(limits.min_straightness, last - first + 1), first);
      window.restart(i + 1);
      has_candidate = false;
    } else {
      window.drop_tail();
    }
  }
  // A piece that is open at the end gives up the last code, which closes the chain.
  if (has_candidate) store(first, chain.n - 1);
  return n_pieces;
}

}  // namespace nuv
