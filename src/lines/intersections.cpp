// Intersections of lines, form by form.

#include <cmath>

#include "core/arithmetic.h"
#include "lines/line_equations.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

constexpr double kNoCosine = 1e-05;
constexpr double kSmallCosine = 1e-06;

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvPointOfIntersection(int32_t isVertical1, double k1, double b1, int32_t isVertical2, double k2,
                            double b2, double* pX, double* pY) {
  if ((isVertical1 == 0) == (isVertical2 == 0)) {
    if (k1 == k2) return false;
    if (isVertical1 == 0) {
      *pX = (b1 - b2) / (k2 - k1);
      *pY = *pX * k1 + b1;
    } else {
      *pY = (b2 - b1) / (k1 - k2);
      *pX = *pY * k2 + b2;
    }
    return true;
  }
  if (k1 * k2 == 1.0) return false;
  if (isVertical1 == 0) {
    *pY = (k1 * b2 + b1) / (1 - k1 * k2);
    *pX = *pY * k2 + b2;
  } else {
    *pY = (b1 * k2 + b2) / (1 - k1 * k2);
    *pX = *pY * k1 + b1;
  }
  return true;
}

bool NuvPointOfIntersection(double A1, double B1, double C1, double A2, double B2, double C2, double* pX,
                            double* pY) {
  const double determinant = determinant_of(A1, B1, A2, B2);
  if (are_parallel(determinant)) return false;
  *pY = -((A1 * C2 - C1 * A2) / determinant);
  *pX = -((C1 * B2 - B1 * C2) / determinant);
  return true;
}

bool NuvPointOfIntersection(int32_t Thro1, int32_t Theta1, int32_t Thro2, int32_t Theta2, double* pX,
                            double* pY) {
  *pX = 0.0;
  *pY = 0.0;
  if (Theta1 == Theta2) return false;
  const double c1 = std::cos(radians(Theta1));
  const double s1 = std::sin(radians(Theta1));
  const double c2 = std::cos(radians(Theta2));
  const double s2 = std::sin(radians(Theta2));
  if (std::fabs(c1) > kSmallCosine) {
    *pY = (Thro2 * c1 - c2 * Thro1) / (s2 * c1 - c2 * s1);
    *pX = (Thro1 - *pY * s1) / c1;
  } else {
    *pX = (Thro2 * s1 - s2 * Thro1) / (c2 * s1 - s2 * c1);
    *pY = (Thro1 - *pX * c1) / s1;
  }
  return true;
}

bool NuvGetHoughLinePointX(int32_t Thro, int32_t Theta, int32_t y, double* pX) {
  *pX = 0.0;
  const double c = std::cos(radians(Theta));
  if (!(std::fabs(c) > kNoCosine)) return false;
  *pX = (Thro - std::sin(radians(Theta)) * y) / c;
  return true;
}
