#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "NuvImgSDK2014DLL.h"

namespace {

struct Fit {
  int32_t is_vertical = -1;
  double k = 0;
  double b = 0;
  double angle = 0;
  double deviation = 0;
  double greatest = 0;
};

struct Points {
  std::vector<int32_t> x;
  std::vector<int32_t> y;
  std::vector<int32_t> work = std::vector<int32_t>(x.size(), -1);

  int32_t n() const { return static_cast<int32_t>(x.size()); }
  Fit fit() {
    Fit f;
    NuvFittingLine(x.data(), y.data(), n(), &f.is_vertical, &f.k, &f.b, &f.angle, &f.deviation, &f.greatest);
    return f;
  }
  bool twice(Fit& f) {
    return NuvFittingLineTwice(x.data(), y.data(), work.data(), n(), &f.is_vertical, &f.k, &f.b, &f.angle);
  }
  bool by_mean(Fit& f) {
    return NuvFittingLineTwiceByMean(x.data(), y.data(), work.data(), n(), &f.is_vertical, &f.k, &f.b,
                                     &f.angle);
  }
};

TEST(FittingLine, OfExactLines) {
  const struct {
    Points points;
    int32_t is_vertical;
    double k, b, angle;
  } cases[] = {
      {{{1, 5, 9}, {4, 4, 4}}, 0, 0, 4, 0},
      {{{4, 4, 4}, {1, 5, 9}}, 1, 0, 4, 90},
      {{{1, 2, 3}, {1, 2, 3}}, 1, 1, 0, 45},  // a tie goes to y
      {{{0, 10, 20}, {10, 5, 0}}, 0, -0.5, 10, 153.435},
  };
  for (const auto& c : cases) {
    Points points = c.points;
    const Fit f = points.fit();
    EXPECT_EQ(f.is_vertical, c.is_vertical);
    EXPECT_EQ(f.k, c.k);
    EXPECT_EQ(f.b, c.b);
    EXPECT_NEAR(f.angle, c.angle, 1e-3);
    EXPECT_EQ(f.deviation, 0);
    EXPECT_EQ(f.greatest, 0);
  }
}

TEST(FittingLine, MeasuresSpreadByItsOwnDivisor) {
  const Fit f = Points{{0, 4, 8, 12}, {0, 4, 2, 6}}.fit();
  const double norm = std::sqrt(f.k * f.k + 1);
  EXPECT_EQ(f.k, 0.4);
  EXPECT_NEAR(f.deviation, std::sqrt((0.36 + 3.24 + 3.24 + 0.36) / (norm * 4)), 1e-12);
  EXPECT_NEAR(f.greatest, 1.8 / norm, 1e-12);
}

TEST(FittingLine, AddsCoordinatesAsReals) {
  // Above 2^53 a sum of reals is rounded at each step.
  constexpr int32_t kGreatest = std::numeric_limits<int32_t>::max();
  constexpr std::size_t kCount = 3 << 21;
  Points points{std::vector<int32_t>(kCount), std::vector<int32_t>(kCount, kGreatest)};
  for (std::size_t i = 0; i < kCount; i += 2) points.x[i] = 1;
  double sum = 0;
  for (int32_t y : points.y) sum += y;
  const Fit f = points.fit();
  EXPECT_EQ(f.k, 0);
  EXPECT_EQ(f.b, sum / kCount);
  EXPECT_NE(f.b, kGreatest);
}

TEST(FittingLineTwice, ReturnsTheFirstFitDespiteTheOutlier) {
  Points points{{0, 1, 2, 3}, {0, 0, 0, 60}};
  const Fit first = points.fit();
  Fit f;
  EXPECT_TRUE(points.twice(f));
  EXPECT_EQ(f.k, first.k);
  EXPECT_EQ(points.work, std::vector<int32_t>(4, 1));
  Points same{{7, 7, 7}, {8, 8, 8}};
  EXPECT_FALSE(same.twice(f));
  EXPECT_EQ(same.work, std::vector<int32_t>(3, 100));
}

TEST(FittingLineTwiceByMean, DropsPointsBeyondTheMeanResidual) {
  Points points{{0, 10, 20, 30, 40, 50}, {5, 5, 5, 45, 5, 5}};
  Fit f;
  EXPECT_TRUE(points.by_mean(f));
  EXPECT_EQ(f.k, 0);
  EXPECT_EQ(f.b, 5);
  Points same{{7, 7, 7}, {8, 8, 8}};
  EXPECT_TRUE(same.by_mean(f));
  EXPECT_TRUE(std::isnan(f.k));
}

TEST(FittingLineMsk, LeavesMaskedPointsOut) {
  Points p{{0, 10, 20, 30}, {5, 5, 90, 5}};
  bool mask[] = {true, true, false, true};
  Fit f;
  NuvFittingLineMsk(p.x.data(), p.y.data(), mask, 4, &f.is_vertical, &f.k, &f.b, &f.angle);
  EXPECT_TRUE(f.is_vertical == 0 && f.k == 0 && f.b == 5);
}

}  // namespace
