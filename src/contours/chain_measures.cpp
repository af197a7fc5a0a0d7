// What a chain measures: areas, perimeters, centre, boxes, points, and how well it fits a bar.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "contours/chain.h"
#include "frame/arithmetic.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

int32_t perimeter_of(const uint8_t* codes, int32_t n) {
  int32_t odd = 0;
  for (int32_t i = 0; i < n; ++i) odd += is_diagonal(codes[i]);
  const int32_t even = std::max(n, 0) - odd;
  return truncated(even + std::sqrt(2.0) * odd + 0.5);
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

// By the code before, down, and the code itself, across.
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

}  // namespace
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
  double sum = 0.0;
  int32_t y = 0;
  for (int32_t i = 0; i < N; ++i) {
    const int code = direction_of(pChainCode[i]);
    sum += (kDy[code] * 0.5 + y) * kDx[code];
    y += kDy[code];
  }
  *pPerimeter = perimeter_of(pChainCode, N);
  const int32_t half_perimeter = *pPerimeter / 2;
  *pArea = truncated(std::fabs(sum) + 0.5 + half_perimeter);
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
    p = stepped(p, pChainCode[i]);
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
  *pMaxX = N < 1 ? x : *std::max_element(pX, pX + N);
  *pMaxY = N < 1 ? y : *std::max_element(pY, pY + N);
}

double NuvLineSimilarity(int32_t area, int32_t perimeter, int32_t minWidth, int32_t maxWidth, int32_t* pWidth,
                         int32_t* pLength) {
  double best = 10000.0;
  *pWidth = 10000;
  for (int32_t width = minWidth; width <= maxWidth; ++width) {
    const double length = perimeter * 0.5 - width;
    if (length < 1.0) break;
    const double bar = width * length;
    const double misfit = std::fabs(area - bar) / std::min<double>(area, bar);
    if (misfit < best) {
      best = misfit;
      *pWidth = width;
      *pLength = truncated(length + 0.5);
    }
  }
  return best;
}

double NuvLineSimilarity(int32_t /*x*/, int32_t /*y*/, uint8_t* pChainCode, int32_t N, int32_t minWidth,
                         int32_t maxWidth, int32_t* pWidth, int32_t* pLength) {
  int32_t area = 0;
  int32_t perimeter = 0;
  NuvAreaAndPerimeter(pChainCode, N, &area, &perimeter);
  return NuvLineSimilarity(area, perimeter, minWidth, maxWidth, pWidth, pLength);
}
