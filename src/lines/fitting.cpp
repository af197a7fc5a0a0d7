// Line fitting: one least-squares step for all exports.
//
// The exports differ in the source of the points, in the type of the coordinate sums, and in what follows the
// first fit.

#include <cmath>
#include <type_traits>

#include "contours/chain.h"
#include "core/arithmetic.h"
#include "lines/line_equations.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

void store(const KbLine& line, int32_t* is_vertical, double* k, double* b, double* angle) {
  *is_vertical = line.is_vertical;
  *k = line.k;
  *b = line.b;
  *angle = angle_of_slope(line.is_vertical != 0, line.k);
}

template <class Sum>
struct Sums {
  Sum x = 0;
  Sum y = 0;
  int32_t n = 0;
};

template <class Sum, class ForPoints>
Sums<Sum> sums_of(ForPoints for_points) {
  Sums<Sum> sums;
  for_points([&](Point p, int32_t weight) {
    sums.x += p.x * weight;
    sums.y += p.y * weight;
    sums.n += weight;
  });
  return sums;
}

// Fits the points for which for_points(visit) calls visit(point, 1). Other points are visited with a weight of 0
// and do not count. A branch instead would be mispredicted where they come in no order. Sum is the type that
// coordinates are summed in.
template <class Sum, class ForPoints>
KbLine fit_line(ForPoints for_points) {
  // The sum of so few integers is exact in a double, so a sum in 64 bits, which vectors compute, equals it.
  constexpr int32_t kExact = 1 << 22;
  constexpr bool kIsFloating = std::is_floating_point_v<Sum>;
  const auto sums = sums_of<std::conditional_t<kIsFloating, int64_t, Sum>>(for_points);
  const int32_t n = sums.n;
  double mx = static_cast<double>(sums.x) / n;
  double my = static_cast<double>(sums.y) / n;
  if (kIsFloating && n > kExact) {
    const auto rounded = sums_of<Sum>(for_points);
    mx = static_cast<double>(rounded.x) / n;
    my = static_cast<double>(rounded.y) / n;
  }
  double sxx = 0.0;
  double syy = 0.0;
  double sxy = 0.0;
  for_points([&](Point p, int32_t weight) {
    const double dx = (p.x - mx) * weight;
    const double dy = (p.y - my) * weight;
    sxx += dx * dx;
    syy += dy * dy;
    sxy += dx * dy;
  });
  const bool is_vertical = !(syy < sxx);
  const double k = sxy / (is_vertical ? syy : sxx);
  const double b = is_vertical ? mx - k * my : my - k * mx;
  return {is_vertical ? 1 : 0, k, b};
}

// The points of two arrays. Those at the places i for which keep(i) holds have the weight 1.
template <class Keep>
auto points_where(const int32_t* x, const int32_t* y, int32_t n, Keep keep) {
  return [=](auto visit) {
    for (int32_t i = 0; i < n; ++i) visit(Point{x[i], y[i]}, keep(i) ? 1 : 0);
  };
}

auto all_points(const int32_t* x, const int32_t* y, int32_t n) {
  return points_where(x, y, n, [](int32_t) { return true; });
}

// What NuvFittingLineTwice() leaves in the work array of its caller.
constexpr int32_t kKept = 1;
constexpr int32_t kLeftOut = 100;

struct Misfit {
  double deviation;
  double greatest_distance;
};

// Every point has the weight 1.
template <class ForPoints>
Misfit misfit_of(const KbLine& fit, int32_t n, ForPoints for_points) {
  double greatest = 0.0;
  double sum_of_squares = 0.0;
  for_points([&](Point p, int32_t /*weight*/) {
    const double r = fit.residual(p);
    if (r > greatest) greatest = r;
    sum_of_squares += r * r;
  });
  // The divisor under the root is the norm, not its square. The result is therefore near the root mean square
  // distance, but not equal to it.
  return {std::sqrt(sum_of_squares / (fit.norm() * n)), greatest / fit.norm()};
}

template <class ForPoints>
void fit_and_measure(int32_t n, ForPoints for_points, int32_t* pIsVertical, double* pK, double* pB,
                     double* pAngle, double* pDev, double* pMaxDist) {
  const KbLine fit = fit_line<double>(for_points);
  store(fit, pIsVertical, pK, pB, pAngle);
  const Misfit misfit = misfit_of(fit, n, for_points);
  *pDev = misfit.deviation;
  *pMaxDist = misfit.greatest_distance;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvFittingLine(int32_t* pX, int32_t* pY, int32_t N, int32_t* pIsVertical, double* pK, double* pB,
                    double* pAngle, double* pDev, double* pMaxDist) {
  fit_and_measure(N, all_points(pX, pY, N), pIsVertical, pK, pB, pAngle, pDev, pMaxDist);
}

void NuvFittingLine(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pIsVertical, double* pK,
                    double* pB, double* pAngle, double* pDev, double* pMaxDist) {
  const Chain chain{{x, y}, pChainCode, N};
  const auto positions = [=](auto visit) { walk_positions(chain, [&](Point p) { visit(p, 1); }); };
  fit_and_measure(N, positions, pIsVertical, pK, pB, pAngle, pDev, pMaxDist);
}

void NuvFittingLineMsk(int32_t* pX, int32_t* pY, bool* pMask, int32_t N, int32_t* pIsVertical, double* pK,
                       double* pB, double* pAngle) {
  // Hosts may store any byte but 0 as true.
  const auto* mask = reinterpret_cast<const uint8_t*>(pMask);
  const auto kept = points_where(pX, pY, N, [mask](int32_t i) { return mask[i] != 0; });
  store(fit_line<double>(kept), pIsVertical, pK, pB, pAngle);
}

bool NuvFittingLineTwice(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N, int32_t* pIsVertical,
                         double* pK, double* pB, double* pAngle) {
  if (N < 3) return false;
  const KbLine first = fit_line<int32_t>(all_points(pX, pY, N));
  store(first, pIsVertical, pK, pB, pAngle);

  // A point passes if one of the two comparisons holds. Every finite residual therefore passes.
  const double gate = first.norm();
  int32_t count = 0;
  for (int32_t i = 0; i < N; ++i) {
    const double d = pX[i] - pY[i] * first.k - first.b;
    const bool keep = gate > d || gate > -d;
    pWork[i] = keep ? kKept : kLeftOut;
    count += keep;
  }
  if (count * 2 < N) return false;
  if (count * 3 > N * 2 + 2) return true;
  const auto kept = points_where(pX, pY, N, [pWork](int32_t i) { return pWork[i] == kKept; });
  store(fit_line<int32_t>(kept), pIsVertical, pK, pB, pAngle);
  return true;
}

bool NuvFittingLineTwiceByMean(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N, int32_t* pIsVertical,
                               double* pK, double* pB, double* pAngle) {
  if (N < 3) return false;
  const KbLine first = fit_line<int32_t>(all_points(pX, pY, N));
  store(first, pIsVertical, pK, pB, pAngle);

  int32_t sum = 0;
  for (int32_t i = 0; i < N; ++i) {
    pWork[i] = truncated(first.residual({pX[i], pY[i]}) * 100.0);
    sum += pWork[i];
  }
  const int32_t mean = sum / N;
  int32_t count = 0;
  for (int32_t i = 0; i < N; ++i) count += pWork[i] <= mean;
  if (count < 2) return false;
  const auto kept = points_where(pX, pY, N, [=](int32_t i) { return pWork[i] <= mean; });
  store(fit_line<int32_t>(kept), pIsVertical, pK, pB, pAngle);
  return true;
}
