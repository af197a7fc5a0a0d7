// Key points: the points that keep the shape of a curve, and the corners of a quadrilateral for a contour.

#include <algorithm>
#include <cstdint>

#include "core/buffer.h"
#include "lines/diameter.h"
#include "lines/exchange_sort.h"
#include "lines/farthest_points.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

struct Points {
  int32_t* x;
  int32_t* y;

  double distance_to_chord(int32_t i, int32_t j, int32_t k) const {
    return NuvDistFromPoint3To2PLine(x[i], y[i], x[j], y[j], x[k], y[k]);
  }
};

// A stretch of points, and its inner point that is farthest from the chord between its ends.
struct Stretch {
  int32_t low;
  int32_t high;
  int32_t number;  // in the order in which stretches are formed
  FarthestPoints::Found farthest;
};

// The order of the heap: the greatest distance comes first. Ties go to the stretch with the lowest number.
bool comes_later(const Stretch& a, const Stretch& b) {
  if (a.farthest.distance != b.farthest.distance) return a.farthest.distance < b.farthest.distance;
  return a.number > b.number;
}

Stretch stretch_of(FarthestPoints& points, int32_t low, int32_t high, int32_t number) {
  // A stretch without inner points has its end as its farthest point, at distance 0.
  if (high - low < 2) return {low, high, number, {high, 0.0}};
  return {low, high, number, points.search(low, high)};
}

// ---- the farthest pair ----

// The pair with the greatest squared distance, which is 32-bit and wraps. Ties go to the lowest i, then to
// the lowest j. The distance is 0 if no pair has a positive one.
PointPair farthest_of_all_pairs(Points points, int32_t n) {
  PointPair best{0, 0, 0};
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t j = i + 1; j < n; ++j) {
      const int32_t dx = points.x[i] - points.x[j];
      const int32_t dy = points.y[i] - points.y[j];
      const int32_t distance = dy * dy + dx * dx;
      if (distance > best.distance) best = {i, j, distance};
    }
  }
  return best;
}

PointPair farthest_apart(Points points, int32_t n) {
  constexpr int32_t kFewPoints = 32;
  if (n <= kFewPoints) return farthest_of_all_pairs(points, n);
  // Up to this difference of coordinates, squared distances fit 32 bits, and areas of the hull fit 64.
  constexpr int64_t kSide = 32767;
  const auto [x1, x2] = std::minmax_element(points.x, points.x + n);
  const auto [y1, y2] = std::minmax_element(points.y, points.y + n);
  if (static_cast<int64_t>(*x2) - *x1 > kSide || static_cast<int64_t>(*y2) - *y1 > kSide) {
    return farthest_of_all_pairs(points, n);
  }
  const Diameter diameter(points.x, points.y, n, *x1, *y1);
  return diameter.allocated() ? diameter.find() : farthest_of_all_pairs(points, n);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvLineKeyPoints(int32_t* pX, int32_t* pY, int32_t N, int32_t M, int32_t* pKeyX, int32_t* pKeyY) {
  const auto copy = [=](int32_t from, int32_t to) {
    pKeyX[to] = pX[from];
    pKeyY[to] = pY[from];
  };
  exchange_sort_by_y(pX, pY, N);
  if (M > N) {
    for (int32_t i = 0; i < N; ++i) copy(i, i);
    return std::max(N, 0);
  }
  if (M < 1) return 0;
  const Buffer<Stretch> stretches = allocate<Stretch>(M);
  if (!stretches) return 0;

  copy(0, 0);
  copy(N - 1, M - 1);
  FarthestPoints points(pX, pY, N);
  Stretch* const first = stretches.get();
  first[0] = stretch_of(points, 0, N - 1, 0);
  for (int32_t j = 1; j <= M - 2; ++j) {
    // A stretch whose ends coincide has a negative distance, so it is split only if there is no other.
    std::pop_heap(first, first + j, comes_later);
    const Stretch best = first[j - 1];
    const int32_t split = best.farthest.place;
    copy(split, j);
    first[j - 1] = stretch_of(points, best.low, split, best.number);
    std::push_heap(first, first + j, comes_later);
    first[j] = stretch_of(points, split, best.high, j);
    std::push_heap(first, first + j + 1, comes_later);
  }
  exchange_sort_by_y(pKeyX, pKeyY, M);
  return M;
}

bool NuvContour2Poly4(int32_t* pX, int32_t* pY, int32_t N, int32_t* pPolyX, int32_t* pPolyY) {
  const Points points{pX, pY};
  const PointPair ends = farthest_apart(points, N);
  if (ends.distance == 0) return false;
  const int32_t end1 = ends.i;
  const int32_t end2 = ends.j;

  // If a side has no point, its corner is halfway along the contour.
  int32_t corners[4] = {end1, (end1 + end2) / 2, end2, (N - 1 + end2) / 2};
  double farthest_on_side1 = 0.0;
  double farthest_on_side2 = 0.0;
  for (int32_t k = 0; k < N; ++k) {
    if (k == end1 || k == end2) continue;
    const int32_t side = NuvWhichSideIsPoint3ToLine(pX[end1], pY[end1], pX[end2], pY[end2], pX[k], pY[k]);
    const double distance = points.distance_to_chord(end1, end2, k);
    if (side == 1 && distance > farthest_on_side1) {
      farthest_on_side1 = distance;
      corners[1] = k;
    } else if (side == -1 && distance > farthest_on_side2) {
      farthest_on_side2 = distance;
      corners[3] = k;
    }
  }
  for (int32_t i = 0; i < 4; ++i) {
    pPolyX[i] = pX[corners[i]];
    pPolyY[i] = pY[corners[i]];
  }
  return true;
}
