// The two points of a set that are farthest apart.
//
// Both are corners of the convex hull, and they are antipodal: the hull lies between two parallel lines
// through them. Calipers that rotate around the hull visit all antipodal pairs.

#ifndef NUV_LINES_DIAMETER_H
#define NUV_LINES_DIAMETER_H

#include <algorithm>
#include <cstdint>

#include "core/buffer.h"

namespace nuv {

// The indices of two points, the lower one first.
struct PointPair {
  int32_t i;
  int32_t j;
  int64_t distance;  // squared
};

class Diameter {
 public:
  // The differences of coordinates must fit 16 bits. x1 and y1 are the least coordinates.
  Diameter(const int32_t* x, const int32_t* y, int32_t n, int32_t x1, int32_t y1) : x_(x), y_(y) {
    // hull_ takes the lower side from the left, then the upper side from the right.
    order_ = allocate<uint64_t>(n);
    hull_ = allocate<int32_t>(2 * int64_t{n});
    if (allocated()) build_hull(n, x1, y1);
  }
  bool allocated() const { return order_ != nullptr && hull_ != nullptr; }

  // Ties go to the lowest i, then to the lowest j. The distance is 0 if all points coincide.
  PointPair find() const {
    PointPair best{0, 0, 0};
    const auto offer = [&](int32_t a, int32_t b) {
      const PointPair pair{std::min(hull_at(a), hull_at(b)), std::max(hull_at(a), hull_at(b)),
                           squared_distance(hull_at(a), hull_at(b))};
      const bool earlier = pair.i < best.i || (pair.i == best.i && pair.j < best.j);
      if (pair.distance > best.distance || (pair.distance == best.distance && best.distance > 0 && earlier))
        best = pair;
    };
    int32_t far = 1;
    for (int32_t edge = 0; edge < corners_; ++edge) {
      const auto height = [&](int32_t corner) {
        return turn(hull_at(edge), hull_at(edge + 1), hull_at(corner));
      };
      while (height(far + 1) > height(far)) ++far;
      offer(edge, far);
      offer(edge + 1, far);
      // If the edge opposite is parallel to this one, both its ends lie on the other line.
      if (height(far + 1) == height(far)) {
        offer(edge, far + 1);
        offer(edge + 1, far + 1);
      }
    }
    return best;
  }

 private:
  int32_t hull_at(int32_t corner) const { return hull_[static_cast<std::size_t>(corner % corners_)]; }
  int64_t squared_distance(int32_t i, int32_t j) const {
    const int64_t dx = static_cast<int64_t>(x_[i]) - x_[j];
    const int64_t dy = static_cast<int64_t>(y_[i]) - y_[j];
    return dx * dx + dy * dy;
  }
  // Twice the area of a triangle, positive if its corners turn in the direction of the hull.
  int64_t turn(int32_t a, int32_t b, int32_t c) const {
    return (static_cast<int64_t>(x_[b]) - x_[a]) * (static_cast<int64_t>(y_[c]) - y_[a]) -
           (static_cast<int64_t>(y_[b]) - y_[a]) * (static_cast<int64_t>(x_[c]) - x_[a]);
  }

  // The points are sorted by x, then by y, then by index. A key holds all three, so a comparison reads no point.
  void build_hull(int32_t n, int32_t x1, int32_t y1) {
    for (int32_t i = 0; i < n; ++i) {
      const auto x = static_cast<uint64_t>(x_[i] - x1);
      const auto y = static_cast<uint64_t>(y_[i] - y1);
      order_[static_cast<std::size_t>(i)] = x << 48 | y << 32 | static_cast<uint64_t>(i);
    }
    uint64_t* const end = order_.get() + n;
    std::sort(order_.get(), end);
    // Only the first of several points in one place stays.
    uint64_t* const last =
        std::unique(order_.get(), end, [](uint64_t a, uint64_t b) { return a >> 32 == b >> 32; });
    const auto add = [this](int32_t first, int32_t point) {
      const auto corner = [this](int32_t i) { return hull_[static_cast<std::size_t>(i)]; };
      while (corners_ - first >= 2 && turn(corner(corners_ - 2), corner(corners_ - 1), point) <= 0)
        --corners_;
      hull_[static_cast<std::size_t>(corners_++)] = point;
    };
    const auto point_of = [](uint64_t key) { return static_cast<int32_t>(key & UINT32_MAX); };
    for (const uint64_t* p = order_.get(); p != last; ++p) add(0, point_of(*p));
    const int32_t lower = corners_ - 1;
    for (const uint64_t* p = last - 1; p != order_.get();) add(lower, point_of(*--p));
    if (corners_ > 1) --corners_;  // the last corner repeats the first
  }

  const int32_t* x_;
  const int32_t* y_;
  Buffer<uint64_t> order_;
  Buffer<int32_t> hull_;
  int32_t corners_ = 0;
};

}  // namespace nuv

#endif
