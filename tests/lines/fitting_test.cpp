#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

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
  Fit f = Points{{1, 5, 9}, {4, 4, 4}}.fit();
  EXPECT_EQ(f.is_vertical, 0);
  EXPECT_EQ(f.k, 0);
  EXPECT_EQ(f.b, 4);
  EXPECT_EQ(f.angle, 0);
  EXPECT_EQ(f.deviation, 0);
  EXPECT_EQ(f.greatest, 0);
  f = Points{{4, 4, 4}, {1, 5, 9}}.fit();
  EXPECT_EQ(f.is_vertical, 1);
  EXPECT_EQ(f.b, 4);
  EXPECT_EQ(f.angle, 90);
  f = Points{{1, 2, 3}, {1, 2, 3}}.fit();
  EXPECT_EQ(f.is_vertical, 1) << "a tie goes to y";
  EXPECT_EQ(f.k, 1);
  EXPECT_NEAR(f.angle, 45, 1e-5);
  f = Points{{0, 10, 20}, {10, 5, 0}}.fit();
  EXPECT_NEAR(f.angle, 153.435, 1e-3);
}

TEST(FittingLine, MeasuresSpreadByItsOwnDivisor) {
  // y = 0 and four points one off it, in turn: k = 0, so that every r is 1.
  const Fit f = Points{{0, 1, 2, 3}, {1, -1, -1, 1}}.fit();
  EXPECT_EQ(f.k, 0);
  EXPECT_EQ(f.deviation, 1);
  EXPECT_EQ(f.greatest, 1);
  const Fit slanted = Points{{0, 4, 8, 12}, {0, 4, 2, 6}}.fit();
  const double norm = std::sqrt(slanted.k * slanted.k + 1);
  EXPECT_EQ(slanted.k, 0.4);
  EXPECT_NEAR(slanted.deviation, std::sqrt((0.36 + 3.24 + 3.24 + 0.36) / (norm * 4)), 1e-12);
  EXPECT_NEAR(slanted.greatest, 1.8 / norm, 1e-12);
}

TEST(FittingLineTwice, KeepsTheFirstFitWhateverTheOutlier) {
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

TEST(FittingLineTwiceByMean, DropsWhatLiesBeyondTheMeanResidual) {
  Points points{{0, 10, 20, 30, 40, 50}, {5, 5, 5, 45, 5, 5}};
  Fit f;
  EXPECT_TRUE(points.by_mean(f));
  EXPECT_EQ(f.k, 0);
  EXPECT_EQ(f.b, 5);
  EXPECT_EQ(f.angle, 0);
  Points line{{0, 2, 4}, {0, 1, 2}};
  EXPECT_TRUE(line.by_mean(f));
  EXPECT_EQ(f.k, 0.5);
  for (std::size_t n : {3, 4}) {
    Points same{std::vector<int32_t>(n, 7), std::vector<int32_t>(n, 8)};
    EXPECT_TRUE(same.by_mean(f)) << "all residuals are equal";
    EXPECT_TRUE(std::isnan(f.k));
  }
}

TEST(FittingLineTwice, OfTwoPointsWritesNothing) {
  Points points{{1, 2}, {3, 4}};
  Fit f;
  EXPECT_FALSE(points.twice(f));
  EXPECT_FALSE(points.by_mean(f));
  EXPECT_EQ(f.is_vertical, -1);
  EXPECT_EQ(points.work, std::vector<int32_t>(2, -1));
}

}  // namespace
