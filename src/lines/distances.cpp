// Distances, sides, angles and overlaps.

#include <algorithm>
#include <cmath>
#include <utility>

#include "lines/line_equations.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

struct Range {
  int32_t low;
  int32_t high;
};

Range sorted(int32_t begin, int32_t end) {
  return {std::min(begin, end), std::max(begin, end)};
}

Range common(Range first, Range second) {
  return {std::max(first.low, second.low), std::min(first.high, second.high)};
}

// The number of values in a range, 0 if its ends are out of order.
int32_t size_of(Range range) {
  return range.low > range.high ? 0 : range.high - range.low + 1;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

double NuvDistBetweenPoint12(double x1, double y1, double x2, double y2) {
  return std::sqrt((y1 - y2) * (y1 - y2) + (x1 - x2) * (x1 - x2));
}

double NuvDistFromPoint2KBLine(int32_t x, int32_t y, int32_t isVertical, double k, double b) {
  const KbLine line{isVertical, k, b};
  return line.residual({x, y}) / line.norm();
}

double NuvDistFromPoint3To2PLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3, int32_t y3) {
  const double dx = x2 - x1;
  const double dy = y2 - y1;
  const double y1x2 = y1 * x2;  // in 32 bits
  const double x1y2 = x1 * y2;
  return std::fabs(x3 * dy - y3 * dx + y1x2 - x1y2) / std::sqrt(dx * dx + dy * dy);
}

int32_t NuvWhichSideIsPoint3ToLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3, int32_t y3) {
  double d = 0.0;
  if (x2 == x1) {
    d = x3 - x2;
  } else {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double y1x2 = y1 * x2;  // in 32 bits
    const double x1y2 = x1 * y2;
    d = y3 - ((y1x2 - x1y2) / dx + dy / dx * x3);
  }
  return d > 0 ? 1 : d < 0 ? -1 : 0;
}

double Nuv2PLineAngleDegree2AxisX(double x1, double y1, double x2, double y2) {
  const double dx = x1 - x2;
  const double dy = y1 - y2;
  if (std::fabs(dx) <= std::fabs(dy)) return angle_of_slope(true, dy == 0 ? 0.0 : dx / dy);
  return angle_of_slope(false, dx == 0 ? 0.0 : dy / dx);
}

double NuvABCLineAngleDegree2AxisX(double A, double B, double /*C*/) {
  const double angle =
      std::fabs(B) <= std::fabs(A) ? angle_of_slope(true, -(B / A)) : angle_of_slope(false, -(A / B));
  return angle >= 180.0 ? angle - 180.0 : angle;
}

double NuvABCLineIntersectAngleDegree(double A1, double B1, double C1, double A2, double B2, double C2) {
  if (are_parallel(determinant_of(A1, B1, A2, B2))) return 0.0;
  const double between =
      std::fabs(NuvABCLineAngleDegree2AxisX(A1, B1, C1) - NuvABCLineAngleDegree2AxisX(A2, B2, C2));
  const double other = 180.0 - between;
  return other <= between ? other : between;
}

int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2, int32_t* pBegin,
                          int32_t* pEnd) {
  *pBegin = 0;
  *pEnd = 0;
  const Range both = common(sorted(begin1, end1), sorted(begin2, end2));
  if (both.low > both.high) return 0;
  *pBegin = both.low;
  *pEnd = both.high;
  return size_of(both);
}

int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2) {
  const Range first = sorted(begin1, end1);
  const Range second = sorted(begin2, end2);
  const int32_t lengths = (first.high - first.low) + (second.high - second.low);
  const int32_t spanned = std::max(first.high, second.high) - std::min(first.low, second.low);
  return std::max(lengths - spanned + 1, 0);
}

int32_t NuvRectOverlapArea(tagRECT rect1, tagRECT rect2) {
  const Range columns = common(sorted(rect1.left, rect1.right), sorted(rect2.left, rect2.right));
  const Range rows = common(sorted(rect1.top, rect1.bottom), sorted(rect2.top, rect2.bottom));
  return size_of(columns) * size_of(rows);
}
