#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

struct Kb {
  int32_t is_vertical = -1;
  double k = 0;
  double b = 0;
};

// In both forms a line through two random points contains them, and converting back gives the same line.
TEST(KbForm, RoundTripThroughAbc) {
  Random random(17);
  for (int i = 0; i < 2000; ++i) {
    const int32_t x1 = random.between(-50, 50);
    const int32_t y1 = random.between(-50, 50);
    const int32_t x2 = random.between(51, 200);
    const int32_t y2 = random.between(-90, 190);
    Kb line;
    NuvLineKBEquation(x1, y1, x2, y2, &line.is_vertical, &line.k, &line.b);
    EXPECT_EQ(line.is_vertical, std::abs(y2 - y1) < x2 - x1 ? 0 : 1);
    EXPECT_NEAR(NuvDistFromPoint2KBLine(x2, y2, line.is_vertical, line.k, line.b), 0, 1e-9);
    EXPECT_EQ(NuvGetLineB(line.is_vertical, line.k, x1, y1), line.b);
    double a = 0, b = 0, c = 0;
    NuvKBLine2ABCLine(line.is_vertical, line.k, line.b, &a, &b, &c);
    EXPECT_NEAR(a * x1 + b * y1 + c, 0, 1e-9);
    Kb back;
    NuvABCLine2KBLine(a, b, c, &back.is_vertical, &back.k, &back.b);
    if (std::fabs(line.k) == 1) continue;
    EXPECT_EQ(back.is_vertical, line.is_vertical);
    EXPECT_EQ(back.k, line.k);
    EXPECT_EQ(back.b, line.b);
  }
  Kb tie;
  NuvABCLine2KBLine(1, -1, 0, &tie.is_vertical, &tie.k, &tie.b);
  EXPECT_EQ(tie.is_vertical, 0) << "at 45 degrees, unlike NuvLineKBEquation";
}

TEST(HoughForm, OfTwoPoints) {
  struct Case {
    double x1, y1, x2, y2;
    int32_t thro, theta;
    double length;
  };
  const Case cases[] = {
      {5, 0, 5, 9, -5, 0, 9.0},
      {0, 7, 9, 7, 7, 90, 9.0},
      {0, 10, 10, 0, 7, 45, std::sqrt(200.0)},
      {3, 3, 3, 3, INT32_MIN, INT32_MIN, 0.0},
  };
  for (const Case& c : cases) {
    int32_t thro = 0;
    int32_t theta = 0;
    EXPECT_EQ(NuvTwoPoints2ThroTheta(c.x1, c.y1, c.x2, c.y2, &thro, &theta), c.length);
    EXPECT_EQ(thro, c.thro);
    EXPECT_EQ(theta, c.theta);
  }
}

TEST(HoughForm, RoundTripThroughAbc) {
  for (const auto& [thro, theta] : {std::pair{20, 90}, {7, 30}, {-5, 120}, {40, 135}}) {
    double a = 0, b = 0, c = 0;
    NuvThroTheta2ABC(100, 50, thro, theta, &a, &b, &c);
    const double angle = theta * 3.1415926 / 180;
    // The foot of the perpendicular lies on the line.
    const double distance = a * (100 + thro * std::cos(angle)) + b * (50 + thro * std::sin(angle)) + c;
    EXPECT_NEAR(distance / std::hypot(a, b), 0, 1e-5) << theta;
  }
  int32_t thro = 0;
  int32_t theta = 0;
  NuvABC2ThroTheta(0, 2, -14, &thro, &theta);
  EXPECT_TRUE(thro == 7 && theta == 90);
}

TEST(HoughForm, OfAChain) {
  std::vector<uint8_t> diagonal(20, 7);
  EXPECT_EQ(NuvCodeLineEstimateTheta(5, 5, diagonal.data(), 20), 134) << "180 - 45.02, truncated";
  EXPECT_EQ(NuvCodeLineEstimateTheta(5, 5, diagonal.data(), 1), INT32_MIN);
}

}  // namespace
