// Measures of a chain: areas, perimeter, centre, boxes, points, and the bar that fits it best.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "contours/chain.h"
#include "contours/chain_measures.h"
#include "core/arithmetic.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

// The perimeter of a chain of n codes, odd of which are diagonal steps.
int32_t perimeter_of(int32_t n, int32_t odd) {
  const int32_t even = std::max(n, 0) - odd;
  return truncated(even + std::sqrt(2.0) * odd + 0.5);
}
int32_t perimeter_of(const uint8_t* codes, int32_t n) {
  int32_t odd = 0;
  for (int32_t i = 0; i < n; ++i) odd += is_diagonal(codes[i]);
  return perimeter_of(n, odd);
}

// The area of NuvAreaAndPerimeter: the pixels of the contour count in full.
int32_t area_with_contour(double twice_area, int32_t perimeter) {
  const int32_t half_perimeter = perimeter / 2;
  return truncated(std::fabs(twice_area) / 2 + 0.5 + half_perimeter);
}

// A double holds every sum of twice_polygon_area() exactly for a chain of so many codes.
constexpr int32_t kExactCodes = 1 << 25;

// Twice the signed area of the polygon through the positions of a chain, added up in the given type of number.
template <class Number>
Number twice_polygon_area(const uint8_t* codes, int32_t n) {
  Number sum = 0;
  int64_t y = 0;  // twice the row
  for (int32_t i = 0; i < n; ++i) {
    const int code = direction_of(codes[i]);
    sum += static_cast<Number>(y + kDy[code]) * kDx[code];
    y += 2 * kDy[code];
  }
  return sum;
}

// What a turn adds to the exact area: per_y times the row, and a constant.
struct AreaOfTurn {
  int8_t per_y;
  int8_t constant;
};
constexpr AreaOfTurn kLessY{-1, 0};
constexpr AreaOfTurn kPlusY1{1, 1};
constexpr AreaOfTurn kNothing{0, 0};
constexpr AreaOfTurn kPlus1{0, 1};

// Rows: the code before. Columns: the code itself.
constexpr AreaOfTurn kAreaOfTurn[8][8] = {
    {kPlusY1, kPlusY1, kPlusY1, kPlus1, kPlus1, kNothing, kNothing, kPlusY1},
    {kPlusY1, kPlusY1, kPlusY1, kPlus1, kPlus1, kPlus1, kNothing, kPlusY1},
    {kNothing, kNothing, kNothing, kLessY, kLessY, kLessY, kLessY, kNothing},
    {kNothing, kNothing, kNothing, kLessY, kLessY, kLessY, kLessY, kPlus1},
    {kPlus1, kNothing, kNothing, kLessY, kLessY, kLessY, kLessY, kPlus1},
    {kPlus1, kPlus1, kNothing, kLessY, kLessY, kLessY, kLessY, kPlus1},
    {kPlusY1, kPlusY1, kPlusY1, kNothing, kNothing, kNothing, kNothing, kPlusY1},
    {kPlusY1, kPlusY1, kPlusY1, kPlus1, kNothing, kNothing, kNothing, kPlusY1},
};

// Positive for the contour of an object, negative for that of a hole.
int32_t enclosed_area(const uint8_t* codes, int32_t n) {
  const Chain chain{{0, 0}, codes, n};
  int32_t y = 0;
  int32_t area = 0;
  for (int32_t i = 0; i < n; ++i) {
    const int code = direction_of(codes[i]);
    const AreaOfTurn turn = kAreaOfTurn[chain.previous(i)][code];
    area += turn.per_y * y + turn.constant;
    y += kDy[code];
  }
  return area;
}

// ---- the bar that fits an area ----

// Finds the width of least misfit by branch and bound: halves ranges of widths, and drops a range if its
// bound shows that it holds no better width. Ties go to the least width.
class BarSearch {
 public:
  BarSearch(int32_t area, double half_perimeter) : area_(area), half_perimeter_(half_perimeter) {}

  bool found() const { return misfit_ < kNone; }
  double misfit() const { return misfit_; }
  int32_t width() const { return width_; }
  double length() const { return half_perimeter_ - width_; }

  // Searches the widths from first to last. All or none are below 0, so their bars have areas of one sign.
  void among(int64_t first, int64_t last) {
    if (first <= last) search({first, last, bound(first, last)});
  }

 private:
  static constexpr double kNone = 10000.0;

  struct Range {
    int64_t first;
    int64_t last;
    double bound;
  };

  void search(const Range& range) {
    if (range.bound > misfit_ || (range.bound == misfit_ && (!found() || range.first > width_))) return;
    if (range.first == range.last) {
      const double value = misfit_of(bar(range.first));
      if (value < misfit_ || (value == misfit_ && found() && range.first < width_)) {
        misfit_ = value;
        width_ = static_cast<int32_t>(range.first);
      }
      return;
    }
    const int64_t middle = range.first + (range.last - range.first) / 2;
    const Range lower{range.first, middle, bound(range.first, middle)};
    const Range upper{middle + 1, range.last, bound(middle + 1, range.last)};
    // If neither half has a bound, the half with the lesser misfits comes first. The bars are below 0 then,
    // and the misfit is -(1 + area/-bar).
    const bool unbounded = std::isinf(upper.bound) && upper.bound == lower.bound;
    const bool upper_first = unbounded ? area_ > 0 : upper.bound < lower.bound;
    search(upper_first ? upper : lower);
    search(upper_first ? lower : upper);
  }

  double bar(int64_t width) const {
    return static_cast<double>(width) * (half_perimeter_ - static_cast<double>(width));
  }
  double misfit_of(double bar) const { return std::fabs(area_ - bar) / std::min(area_, bar); }

  // A lower bound of the misfits of these widths. The area of a bar rises up to the width half_perimeter / 2
  // and falls from there on.
  double bound(int64_t first, int64_t last) const {
    const auto [least, greater] = std::minmax({bar(first), bar(last)});
    const double vertex = half_perimeter_ * 0.5;
    const bool holds_vertex = static_cast<double>(first) < vertex && vertex < static_cast<double>(last);
    const double greatest = holds_vertex ? vertex * vertex : greater;
    if (greatest < 0) return bound_below_0(least, greatest);
    // On each side of the area the misfit is monotonic, rounding included, so the least value is at an end.
    if (least <= area_ && area_ <= greatest) return 0.0;
    return std::min(misfit_of(least), misfit_of(greatest));
  }

  // The same for bars whose areas lie between least and greatest, all below 0.
  double bound_below_0(double least, double greatest) const {
    constexpr double kExact = 2251799813685248.0;  // 2^51: up to here the difference from the area is exact
    if (-least <= kExact || area_ == 0) return std::min(misfit_of(least), misfit_of(greatest));
    // The misfit is -(b + area)/b, with b = -bar. Between two powers of 2 every b is a multiple of one unit.
    // The rounded sum then adds one of two amounts to b, one for even multiples and one for odd ones.
    const double lowest = -greatest;
    const double highest = -least;
    const int exponent = std::ilogb(std::min(lowest, lowest + area_));
    if (std::ilogb(std::max(highest, highest + area_)) != exponent)
      return -std::numeric_limits<double>::infinity();
    const double next = lowest + std::ldexp(1.0, exponent - 52);
    const double added = std::max((lowest + area_) - lowest, (next + area_) - next);
    const double b = area_ > 0 ? lowest : highest;
    return -((b + added) / b);
  }

  const double area_;
  const double half_perimeter_;
  double misfit_ = kNone;
  int32_t width_ = 10000;
};

// ---- area, perimeter and box from one walk ----

// How far a walk is from its start: to the right, down, to the left and up.
#if NUV_HAS_LANES
using Reach = int32_t __attribute__((vector_size(16)));
#else
struct Reach {
  int32_t to[4];

  int32_t operator[](int i) const { return to[i]; }
  void operator+=(const Reach& step) {
    for (int i = 0; i < 4; ++i) to[i] += step.to[i];
  }
};
void keep_greater(Reach& a, const Reach& b) {
  for (int i = 0; i < 4; ++i) a.to[i] = std::max(a.to[i], b.to[i]);
}
#endif

// The reach of one step in each direction.
constexpr Reach kReach[8] = {
    {1, 0, -1, 0}, {1, -1, -1, 1}, {0, -1, 0, 1}, {-1, -1, 1, 1},
    {-1, 0, 1, 0}, {-1, 1, 1, -1}, {0, 1, 0, -1}, {1, 1, -1, -1},
};

// The greatest of one number and of n others.
NUV_ROW_KERNEL int32_t greatest(int32_t number, const int32_t* others, int32_t n) {
  for (int32_t i = 0; i < n; ++i) number = others[i] > number ? others[i] : number;
  return number;
}

}  // namespace

ChainMeasures measures_of(const Chain& chain) {
  Reach at{};
  Reach farthest{};
  int64_t twice_area = 0;
  int32_t y = 0;
  int32_t odd = 0;
  for (int32_t i = 0; i < chain.n; ++i) {
    const int code = direction_of(chain.codes[i]);
    at += kReach[code];
    keep_greater(farthest, at);
    twice_area += static_cast<int64_t>(2 * y + kDy[code]) * kDx[code];
    y += kDy[code];
    odd += is_diagonal(code);
  }
  const double sum = chain.n <= kExactCodes ? static_cast<double>(twice_area)
                                            : twice_polygon_area<double>(chain.codes, chain.n);
  const int32_t perimeter = perimeter_of(chain.n, odd);
  const auto [x0, y0] = chain.start;
  return {area_with_contour(sum, perimeter),
          perimeter,
          {x0 - farthest[2], x0 + farthest[0], y0 - farthest[3], y0 + farthest[1]},
          at[0] == 0 && at[1] == 0};
}

}  // namespace nuv

using namespace nuv;

void NuvRealAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter) {
  *pArea = std::abs(enclosed_area(pChainCode, N));
  *pPerimeter = perimeter_of(pChainCode, N);
}

int32_t NuvRealPixelsEnclosed(uint8_t* pChainCode, int32_t N) {
  return std::abs(enclosed_area(pChainCode, N));
}

void NuvAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter) {
  const double sum = N <= kExactCodes ? static_cast<double>(twice_polygon_area<int64_t>(pChainCode, N))
                                      : twice_polygon_area<double>(pChainCode, N);
  *pPerimeter = perimeter_of(pChainCode, N);
  *pArea = area_with_contour(sum, *pPerimeter);
}

void NuvContourCenter(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY) {
  if (N < 1) {
    *pX = x;
    *pY = y;
    return;
  }
  double sum_x = 0.0;
  double sum_y = 0.0;
  walk_positions({{x, y}, pChainCode, N}, [&](Point p) {
    sum_x += p.x;
    sum_y += p.y;
  });
  *pX = truncated(sum_x / N + 0.5);
  *pY = truncated(sum_y / N + 0.5);
}

void NuvContourRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX1, int32_t* pX2,
                    int32_t* pY1, int32_t* pY2) {
  Region bounds = Region::of({x, y});
  Point p{x, y};
  for (int32_t i = 0; i + 1 < N; ++i) {
    take_step(p, pChainCode[i]);
    // The extremes of a contour fall on its turns.
    if (pChainCode[i] != pChainCode[i + 1]) bounds.take_in(p);
  }
  *pX1 = bounds.x1;
  *pX2 = bounds.x2;
  *pY1 = bounds.y1;
  *pY2 = bounds.y2;
}

void NuvContourRotatedRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, double angle, int32_t* pX1,
                           int32_t* pX2, int32_t* pY1, int32_t* pY2) {
  const double turn = angle * (kPi / 180);
  const int32_t c = truncated(std::cos(turn) * 1024);
  const int32_t s = truncated(std::sin(turn) * 1024);
  const auto turned = [c, s](Point p) { return Point{(c * p.x - s * p.y) >> 10, (s * p.x + c * p.y) >> 10}; };
  Region bounds = Region::of(turned({x, y}));
  walk_positions({{x, y}, pChainCode, N}, [&](Point p) { bounds.take_in(turned(p)); });
  *pX1 = bounds.x1;
  *pX2 = bounds.x2;
  *pY1 = bounds.y1;
  *pY2 = bounds.y2;
}

void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY) {
  int32_t i = 0;
  walk_positions({{x, y}, pChainCode, N}, [&](Point p) {
    pX[i] = p.x;
    pY[i] = p.y;
    ++i;
  });
}

void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY,
                     int32_t* pMaxX, int32_t* pMaxY) {
  NuvChain2Points(x, y, pChainCode, N, pX, pY);
  *pMaxX = greatest(x, pX, N);
  *pMaxY = greatest(y, pY, N);
}

double NuvLineSimilarity(int32_t area, int32_t perimeter, int32_t minWidth, int32_t maxWidth, int32_t* pWidth,
                         int32_t* pLength) {
  // The last width that leaves a length of at least 1. The shift rounds down, for perimeters below 0, too.
  const int64_t last = std::min<int64_t>(maxWidth, (perimeter >> 1) - int64_t{1});
  BarSearch search(area, perimeter * 0.5);
  search.among(minWidth, std::min<int64_t>(last, -1));
  search.among(std::max(minWidth, 0), last);
  *pWidth = search.width();
  if (search.found()) *pLength = truncated(search.length() + 0.5);
  return search.misfit();
}

double NuvLineSimilarity(int32_t /*x*/, int32_t /*y*/, uint8_t* pChainCode, int32_t N, int32_t minWidth,
                         int32_t maxWidth, int32_t* pWidth, int32_t* pLength) {
  int32_t area = 0;
  int32_t perimeter = 0;
  NuvAreaAndPerimeter(pChainCode, N, &area, &perimeter);
  return NuvLineSimilarity(area, perimeter, minWidth, maxWidth, pWidth, pLength);
}
