// Few points that tell much: of a curve those that keep its shape, of a contour the corners of a
// quadrilateral.

#include <algorithm>
#include <utility>

#include "frame/buffer.h"
#include "lines/diameter.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

struct Points {
  int32_t* x;
  int32_t* y;

  void swap(int32_t i, int32_t j) const {
    std::swap(x[i], x[j]);
    std::swap(y[i], y[j]);
  }
  double distance_to_chord(int32_t i, int32_t j, int32_t k) const {
    return NuvDistFromPoint3To2PLine(x[i], y[i], x[j], y[j], x[k], y[k]);
  }
};

// By exchanges, whose order among points of equal y others rely on.
void sort_by_y(Points points, int32_t n) {
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t j = i + 1; j < n; ++j) {
      if (points.y[j] < points.y[i]) points.swap(i, j);
    }
  }
}

// Below every distance.
constexpr double kNoDistance = -10.0;

// A stretch of points, and its inner point that is farthest from the chord between its ends.
struct Stretch {
  int32_t low;
  int32_t high;
  int32_t candidate;
  double distance;
};

Stretch stretch_of(Points points, int32_t low, int32_t high) {
  // Without inner points the end stands in, as if it lay on the chord.
  if (high - low < 2) return {low, high, high, 0.0};
  Stretch stretch{low, high, high, kNoDistance};
  for (int32_t k = low + 1; k < high; ++k) {
    const double distance = points.distance_to_chord(low, high, k);
    if (distance > stretch.distance) {
      stretch.distance = distance;
      stretch.candidate = k;
    }
  }
  return stretch;
}

// The pair of the greatest squared distance, in 32 bits that wrap, from 1 on; the first one in the order of i
// and then j.
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
  // Differences of this size keep squared distances in 32 bits, and the areas of the hull in 64.
  constexpr int64_t kSide = 32767;
  const auto [x1, x2] = std::minmax_element(points.x, points.x + n);
  const auto [y1, y2] = std::minmax_element(points.y, points.y + n);
  if (static_cast<int64_t>(*x2) - *x1 > kSide || static_cast<int64_t>(*y2) - *y1 > kSide) {
    return farthest_of_all_pairs(points, n);
  }
  const Diameter diameter(points.x, points.y, n);
  return diameter.allocated() ? diameter.find() : farthest_of_all_pairs(points, n);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvLineKeyPoints(int32_t* pX, int32_t* pY, int32_t N, int32_t M, int32_t* pKeyX, int32_t* pKeyY) {
  const Points points{pX, pY};
  const Points keys{pKeyX, pKeyY};
  const auto copy = [=](int32_t from, int32_t to) {
    pKeyX[to] = pX[from];
    pKeyY[to] = pY[from];
  };
  sort_by_y(points, N);
  if (M > N) {
    for (int32_t i = 0; i < N; ++i) copy(i, i);
    return std::max(N, 0);
  }
  if (M < 1) return 0;
  const Buffer<Stretch> stretches = allocate<Stretch>(static_cast<std::size_t>(M));
  if (!stretches) return 0;

  copy(0, 0);
  copy(N - 1, M - 1);
  stretches[0] = stretch_of(points, 0, N - 1);
  for (int32_t j = 1; j <= M - 2; ++j) {
    // The first of the greatest; a stretch whose ends coincide has no distance, and is taken only for want of
    // others.
    Stretch* best = stretches.get();
    for (Stretch* s = best + 1; s < stretches.get() + j; ++s) {
      if (s->distance > best->distance) best = s;
    }
    copy(best->candidate, j);
    const int32_t split = best->candidate;
    stretches[static_cast<std::size_t>(j)] = stretch_of(points, split, best->high);
    *best = stretch_of(points, best->low, split);
  }
  sort_by_y(keys, M);
  return M;
}

bool NuvContour2Poly4(int32_t* pX, int32_t* pY, int32_t N, int32_t* pPolyX, int32_t* pPolyY) {
  const Points points{pX, pY};
  const PointPair ends = farthest_apart(points, N);
  if (ends.distance == 0) return false;
  const int32_t end1 = ends.i;
  const int32_t end2 = ends.j;

  // Where a side has no point, its corner is halfway along the contour.
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
