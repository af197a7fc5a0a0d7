// What several families compute from the equations of lines.

#ifndef NUV_LINES_LINE_EQUATIONS_H
#define NUV_LINES_LINE_EQUATIONS_H

#include <cmath>
#include <cstdint>

#include "core/arithmetic.h"
#include "core/views.h"

namespace nuv {

// The line y = k*x + b; if is_vertical is not 0, the line x = k*y + b.
struct KbLine {
  int32_t is_vertical;
  double k;
  double b;

  // The distance of a point from the line along its minor axis.
  double residual(Point p) const {
    return std::fabs(is_vertical == 0 ? p.x * k - p.y + b : p.x - p.y * k - b);
  }
  // A residual divided by this is a distance.
  double norm() const { return std::sqrt(k * k + 1); }
};

// The angle to the x axis, in degrees, of a line of slope k along its major axis. It is from 0 to 180.
inline double angle_of_slope(bool is_vertical, double k) {
  const double angle = degrees(std::atan(k));
  return is_vertical ? 90.0 - angle : angle < 0 ? angle + 180.0 : angle;
}

// The determinant of two lines A*x + B*y + C = 0. The lines count as parallel if its magnitude is below
// kParallelDeterminant.
constexpr double kParallelDeterminant = 1e-05;

inline double determinant_of(double A1, double B1, double A2, double B2) {
  return A1 * B2 - B1 * A2;
}
inline bool are_parallel(double determinant) {
  return std::fabs(determinant) < kParallelDeterminant;
}

}  // namespace nuv

#endif
