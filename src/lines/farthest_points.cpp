// Searches for the farthest point.
//
// A search scans its stretch. If stretches are split unevenly, the scans add up to a quadratic time, and a
// tree over the points replaces them. The leaves of the tree are blocks of points. Each node has two chains,
// the convex hull of its points toward greater x and toward smaller x, in the order of y. The signed distance
// from a chord is a linear function. Its extremes over a node lie on the chains of the node and are found
// there by bisection.
//
// For small coordinates the numerators of all distances are exact and their quotients keep the order. So scan
// and tree compare numerators, and find the same point as a scan that compares distances.

#include "lines/farthest_points.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "core/row_kernel.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

constexpr int32_t kBlock = 32;
// The tree is built when the scans have visited more than this many times the number of points.
constexpr int32_t kScansBeforeTree = 32;
constexpr int32_t kGreatestCoordinate = 1 << 20;
constexpr double kNoDistance = -10.0;
constexpr int32_t kSides = 2;  // toward greater x, and toward smaller x

int64_t toward(int32_t side, int32_t x) {
  return side == 0 ? x : -int64_t{x};
}

// The bits of the greatest |x*dy - y*dx + offset|. The bits of numbers that are not negative have the order of
// the numbers, and compilers make vector code for the maximum of integers.
int64_t bits_of(double v) {
  int64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  return bits;
}
NUV_ROW_KERNEL int64_t greatest_bits(const int32_t* x, const int32_t* y, std::ptrdiff_t n, double dx,
                                     double dy, double offset) {
  int64_t greatest = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double v = std::fabs(x[i] * dy - y[i] * dx + offset);
    int64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    greatest = bits > greatest ? bits : greatest;
  }
  return greatest;
}

}  // namespace

// A chord, as the linear function that gives the numerator of the signed distance from it.
struct FarthestPoints::Chord {
  int64_t dx;
  int64_t dy;  // 0 or more
  int64_t offset;

  int64_t at(int64_t x, int64_t y) const { return x * dy - y * dx + offset; }
};

struct FarthestPoints::Best {
  int64_t value = -1;
  int32_t level = 0;
  int32_t node = 0;
  int32_t place = -1;  // the point, if a single point is the best; -1 if a whole node is
};

FarthestPoints::FarthestPoints(const int32_t* x, const int32_t* y, int32_t n) : x_(x), y_(y), n_(n) {
  const auto is_small = [](int32_t v) { return v >= -kGreatestCoordinate && v <= kGreatestCoordinate; };
  is_exact_ = std::all_of(x, x + n, is_small) && std::all_of(y, y + n, is_small);
}

FarthestPoints::Chord FarthestPoints::chord_of(int32_t low, int32_t high) const {
  const int32_t y1x2 = y_[low] * x_[high];  // in 32 bits
  const int32_t x1y2 = x_[low] * y_[high];
  return {int64_t{x_[high]} - x_[low], int64_t{y_[high]} - y_[low], int64_t{y1x2} - x1y2};
}

double FarthestPoints::distance(int32_t low, int32_t high, int32_t place) const {
  return NuvDistFromPoint3To2PLine(x_[low], y_[low], x_[high], y_[high], x_[place], y_[place]);
}

FarthestPoints::Found FarthestPoints::search(int32_t low, int32_t high) {
  const int32_t inner = high - low - 1;
  if (inner <= 4 * kBlock) return scan(low, high);
  if (!is_built_) {
    scanned_ += inner;
    if (scanned_ <= int64_t{kScansBeforeTree} * n_ || !build()) return scan(low, high);
  }
  const Chord chord = chord_of(low, high);
  if (chord.dx == 0 && chord.dy == 0) return {high, kNoDistance};
  Best best;
  search_node(levels_ - 1, 0, low + 1, high, chord, best);
  const int32_t place = best.place >= 0 ? best.place : first_with(best.value, best.level, best.node, chord);
  return {place, distance(low, high, place)};
}

FarthestPoints::Found FarthestPoints::scan(int32_t low, int32_t high) const {
  if (is_exact_) return scan_exactly(low, high, chord_of(low, high));
  Found found{high, kNoDistance};
  for (int32_t k = low + 1; k < high; ++k) {
    const double d = distance(low, high, k);
    if (d > found.distance) found = {k, d};
  }
  return found;
}

// Finds the first block of points with the greatest numerator, then the point in it.
FarthestPoints::Found FarthestPoints::scan_exactly(int32_t low, int32_t high, const Chord& chord) const {
  constexpr int32_t kScanned = 256;
  if (high - low < 2 || (chord.dx == 0 && chord.dy == 0)) return {high, kNoDistance};
  const auto dx = static_cast<double>(chord.dx);
  const auto dy = static_cast<double>(chord.dy);
  const auto offset = static_cast<double>(chord.offset);
  int64_t greatest = -1;
  int32_t place = 0;
  for (int32_t k = low + 1; k < high; k += kScanned) {
    const int64_t bits = greatest_bits(x_ + k, y_ + k, std::min(kScanned, high - k), dx, dy, offset);
    if (bits <= greatest) continue;
    greatest = bits;
    place = k;
  }
  while (bits_of(std::fabs(x_[place] * dy - y_[place] * dx + offset)) != greatest) ++place;
  return {place, distance(low, high, place)};
}

// ---- the tree ----
//
// Level 0 has a node for each block, and each level above has half as many. Each level has one array per side
// for its chains. A chain starts at the place of the first point of its node.

int32_t FarthestPoints::first_of(int32_t level, int32_t node) const {
  return static_cast<int32_t>(std::min((int64_t{node} * kBlock) << level, int64_t{n_}));
}
int32_t FarthestPoints::end_of(int32_t level, int32_t node) const {
  return static_cast<int32_t>(std::min(((int64_t{node} + 1) * kBlock) << level, int64_t{n_}));
}

int32_t* FarthestPoints::chain_at(int32_t level, int32_t side, int32_t first) const {
  return chains_.get() + (static_cast<std::ptrdiff_t>(level) * kSides + side) * n_ + first;
}
int32_t& FarthestPoints::length_at(int32_t level, int32_t side, int32_t node) const {
  return lengths_[(static_cast<std::size_t>(level) * kSides + static_cast<std::size_t>(side)) *
                      static_cast<std::size_t>(blocks_) +
                  static_cast<std::size_t>(node)];
}

bool FarthestPoints::build() {
  if (cannot_be_built_) return false;
  cannot_be_built_ = true;
  if (!is_exact_) return false;
  blocks_ = (n_ - 1) / kBlock + 1;
  levels_ = 1;
  while ((int64_t{1} << (levels_ - 1)) < blocks_) ++levels_;
  const auto arrays = int64_t{levels_} * kSides;
  chains_ = allocate<int32_t>(arrays * n_);
  lengths_ = allocate<int32_t>(arrays * blocks_);
  if (!chains_ || !lengths_) return false;
  for (int32_t level = 0; level < levels_; ++level) {
    for (int32_t node = 0; first_of(level, node) < n_; ++node) build_chain(level, node);
  }
  return is_built_ = true;
}

void FarthestPoints::build_chain(int32_t level, int32_t node) {
  for (int32_t side = 0; side < kSides; ++side) {
    int32_t* chain = chain_at(level, side, first_of(level, node));
    int32_t length = 0;
    const auto add = [&](int32_t p) {
      const int64_t x = toward(side, x_[p]);
      // Only the outermost of several points of equal y stays.
      if (length > 0 && y_[chain[length - 1]] == y_[p]) {
        if (toward(side, x_[chain[length - 1]]) >= x) return;
        --length;
      }
      // A point is a corner only if it lies outside the line from the point before it to the new point.
      const auto is_corner = [&](int32_t before, int32_t between) {
        const int64_t bx = toward(side, x_[before]);
        const int64_t mx = toward(side, x_[between]);
        return (mx - bx) * (int64_t{y_[p]} - y_[before]) > (x - bx) * (int64_t{y_[between]} - y_[before]);
      };
      while (length > 1 && !is_corner(chain[length - 2], chain[length - 1])) --length;
      chain[length++] = p;
    };
    if (level == 0) {
      for (int32_t p = first_of(0, node); p < end_of(0, node); ++p) add(p);
    } else {
      for (int32_t child : {2 * node, 2 * node + 1}) {
        const int32_t first = first_of(level - 1, child);
        if (first >= n_) continue;
        const int32_t* points = chain_at(level - 1, side, first);
        std::for_each(points, points + length_at(level - 1, side, child), add);
      }
    }
    length_at(level, side, node) = length;
  }
}

int64_t FarthestPoints::greatest_in(int32_t level, int32_t node, const Chord& chord) const {
  int64_t greatest = 0;
  for (int32_t side = 0; side < kSides; ++side) {
    const int32_t* chain = chain_at(level, side, first_of(level, node));
    const auto value = [&](int32_t i) {
      const int64_t v = chord.at(x_[chain[i]], y_[chain[i]]);
      return side == 0 ? v : -v;
    };
    // The values rise along the chain and then fall.
    int32_t low = 0;
    int32_t high = length_at(level, side, node) - 1;
    while (low < high) {
      const int32_t middle = low + (high - low) / 2;
      if (value(middle) < value(middle + 1)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    greatest = std::max(greatest, value(low));
  }
  return greatest;
}

// Updates best with the points first to end - 1 that lie in the node.
void FarthestPoints::search_node(int32_t level, int32_t node, int32_t first, int32_t end, const Chord& chord,
                                 Best& best) const {
  const int32_t node_first = first_of(level, node);
  const int32_t node_end = end_of(level, node);
  if (node_first >= end || node_end <= first) return;
  if (first <= node_first && node_end <= end) {
    const int64_t value = greatest_in(level, node, chord);
    if (value > best.value) best = {value, level, node, -1};
  } else if (level == 0) {
    for (int32_t p = std::max(first, node_first); p < std::min(end, node_end); ++p) {
      const int64_t value = std::abs(chord.at(x_[p], y_[p]));
      if (value > best.value) best = {value, 0, node, p};
    }
  } else {
    search_node(level - 1, 2 * node, first, end, chord, best);
    search_node(level - 1, 2 * node + 1, first, end, chord, best);
  }
}

// The first point of a node with that value. Some point of the node must have it.
int32_t FarthestPoints::first_with(int64_t value, int32_t level, int32_t node, const Chord& chord) const {
  while (level > 0) {
    --level;
    node *= 2;
    if (greatest_in(level, node, chord) != value) ++node;
  }
  int32_t p = first_of(0, node);
  while (std::abs(chord.at(x_[p], y_[p])) != value) ++p;
  return p;
}

}  // namespace nuv
