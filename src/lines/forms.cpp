// Conversions between the forms of a line.

#include <cmath>

#include "core/arithmetic.h"
#include "core/neighbours.h"
#include "lines/line_equations.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

// The mean position of some points; not a number if there are none.
class Centroid {
 public:
  void add(Point p) {
    x_ += p.x;
    y_ += p.y;
    ++count_;
  }
  double x() const { return x_ / count_; }
  double y() const { return y_ / count_; }

 private:
  double x_ = 0.0;
  double y_ = 0.0;
  int32_t count_ = 0;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical, double* pK,
                       double* pB) {
  const double dx = x2 - x1;
  const double dy = y2 - y1;
  if (std::fabs(dy) < std::fabs(dx)) {
    *pIsVertical = 0;
    *pK = dy / dx;
  } else {
    *pIsVertical = 1;
    *pK = dx / dy;
  }
  *pB = NuvGetLineB(*pIsVertical, *pK, x1, y1);
}

void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical, double* pK,
                       double* pB, double* pAngle) {
  NuvLineKBEquation(x1, y1, x2, y2, pIsVertical, pK, pB);
  *pAngle = angle_of_slope(*pIsVertical != 0, *pK);
}

double NuvGetLineB(int32_t isVertical, double k, int32_t x, int32_t y) {
  return isVertical == 0 ? y - x * k : x - y * k;
}

void NuvKBLine2ABCLine(int32_t isVertical, double k, double b, double* pA, double* pB, double* pC) {
  if (isVertical != 0) {
    *pA = 1;
    *pB = -k;
    *pC = -b;
  } else {
    *pA = k;
    *pB = -1;
    *pC = b;
  }
}

void NuvABCLine2KBLine(double A, double B, double C, int32_t* pIsVertical, double* pK, double* pB) {
  if (std::fabs(B) < std::fabs(A)) {
    *pIsVertical = 1;
    *pK = -(B / A);
    *pB = -(C / A);
  } else {
    *pIsVertical = 0;
    *pK = -(A / B);
    *pB = -(C / B);
  }
}

double NuvTwoPoints2ThroTheta(double x1, double y1, double x2, double y2, int32_t* pThro, int32_t* pTheta) {
  const double dx = x2 - x1;
  const double dy = y2 - y1;
  const double cross = y1 * x2 - x1 * y2;
  const double length = std::sqrt(dy * dy + dx * dx);
  const double thro = std::fabs(cross) / length;
  *pThro = truncated(cross * dx <= 0 ? -thro : thro);
  if (std::fabs(dx) > std::fabs(dy)) {
    *pTheta = truncated(degrees(std::atan(dy / dx), kPiTo2Decimals) + 90.0);
  } else if (dx * dy > 0) {
    *pTheta = truncated(180.0 - degrees(std::atan(dx / dy), kPiTo2Decimals));
  } else {
    *pTheta = truncated(std::atan(dx / dy) * -180.0 / kPiTo2Decimals);
  }
  return length;
}

void NuvABC2ThroTheta(double A, double B, double C, int32_t* pThro, int32_t* pTheta) {
  if (std::fabs(B) <= std::fabs(A)) {
    NuvTwoPoints2ThroTheta(-((C - B * 10) / A), -10, -((B * 10 + C) / A), 10, pThro, pTheta);
  } else {
    NuvTwoPoints2ThroTheta(-10, -((C - A * 10) / B), 10, -((A * 10 + C) / B), pThro, pTheta);
  }
}

void NuvThroTheta2ABC(int32_t x0, int32_t y0, int32_t Thro, int32_t Theta, double* pA, double* pB,
                      double* pC) {
  const double c = std::cos(radians(Theta));
  const double s = std::sin(radians(Theta));
  double x1 = 10;
  double y1 = 10;
  double x2 = 20;
  double y2 = 10;
  if (Theta == 0 || Theta == 180) {
    x1 = x2 = Thro / c;
    y2 = 20;
  } else if (Theta == 90) {
    y1 = y2 = Thro;
  } else {
    y1 = (Thro - c * 10) / s;
    x2 = (Thro - s * 10) / c;
  }
  x1 += x0;
  y1 += y0;
  x2 += x0;
  y2 += y0;
  *pA = y2 - y1;
  *pB = x1 - x2;
  *pC = x2 * y1 - x1 * y2;
}

int32_t NuvCodeLineEstimateTheta(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N) {
  Point p{x, y};
  // The positions of the steps from first to the one before last. Calls cover all steps in order.
  const auto centroid_of = [&p, pChainCode](int32_t first, int32_t last) {
    Centroid centroid;
    for (int32_t i = first; i < last; ++i) {
      if (i > 0) take_step(p, pChainCode[i - 1]);
      centroid.add(p);
    }
    return centroid;
  };
  const Centroid first = centroid_of(0, N / 2);
  const Centroid second = centroid_of(N / 2, N);
  int32_t thro = 0;
  int32_t theta = 0;
  NuvTwoPoints2ThroTheta(first.x(), first.y(), second.x(), second.y(), &thro, &theta);
  return theta;
}
