// Conversions, intersections, distances, angles and overlaps.

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

TEST(Angles, OfLinesToTheAxisAndToEachOther) {
  EXPECT_NEAR(Nuv2PLineAngleDegree2AxisX(0, 0, 5, 5), 45, 1e-4);
  EXPECT_NEAR(Nuv2PLineAngleDegree2AxisX(0, 5, 5, 0), 135, 1e-4);
  EXPECT_EQ(Nuv2PLineAngleDegree2AxisX(3, 3, 3, 3), 90);
  EXPECT_NEAR(NuvABCLineAngleDegree2AxisX(1, -1, 9), 45, 1e-4);
  EXPECT_NEAR(NuvABCLineIntersectAngleDegree(1, -1, 0, 0, 1, 0), 45, 1e-4);
  EXPECT_EQ(NuvABCLineIntersectAngleDegree(1, 2, 0, 2, 4, 9), 0) << "parallel";
}

TEST(HoughForm, OfAChain) {
  std::vector<uint8_t> diagonal(20, 7);
  EXPECT_EQ(NuvCodeLineEstimateTheta(5, 5, diagonal.data(), 20), 134) << "180 - 45.02, truncated";
  EXPECT_EQ(NuvCodeLineEstimateTheta(5, 5, diagonal.data(), 1), INT32_MIN);
}

TEST(Intersection, OfKbLinesForAllFlags) {
  // y = x/2 + 1 and x = y/4 + 6, each in both forms. They meet at (50/7, 32/7).
  const Kb first[] = {{0, 0.5, 1}, {1, 2, -2}};
  const Kb second[] = {{1, 0.25, 6}, {0, 4, -24}};
  for (const Kb& l : first) {
    for (const Kb& m : second) {
      double x = 0;
      double y = 0;
      EXPECT_TRUE(NuvPointOfIntersection(l.is_vertical, l.k, l.b, m.is_vertical, m.k, m.b, &x, &y));
      EXPECT_NEAR(x, 50.0 / 7, 1e-12);
      EXPECT_NEAR(y, 32.0 / 7, 1e-12);
    }
  }
  double x = 77;
  double y = 77;
  EXPECT_FALSE(NuvPointOfIntersection(0, 0.5, 1, 0, 0.5, 9, &x, &y));
  EXPECT_FALSE(NuvPointOfIntersection(0, 0.5, 1, 1, 2.0, 9, &x, &y));
  EXPECT_EQ(x, 77);
}

TEST(Intersection, OfAbcAndHoughLines) {
  double x = 77;
  double y = 77;
  EXPECT_FALSE(NuvPointOfIntersection(1.0, 2.0, 3.0, 2.0, 4.000001, 5.0, &x, &y))
      << "a determinant of 1e-6 counts as parallel";
  EXPECT_EQ(x, 77);
  EXPECT_TRUE(NuvPointOfIntersection(1.0, 0.0, -3.0, 0.0, 1.0, -4.0, &x, &y));
  EXPECT_EQ(x, 3);
  EXPECT_EQ(y, 4);
  EXPECT_TRUE(NuvPointOfIntersection(30, 30, 40, 120, &x, &y));
  EXPECT_NEAR(std::hypot(x, y), 50, 1e-5) << "at a right angle";
  EXPECT_FALSE(NuvPointOfIntersection(30, 45, 40, 45, &x, &y));
  EXPECT_EQ(x, 0);
  EXPECT_TRUE(NuvPointOfIntersection(30, 0, 40, 180, &x, &y)) << "Theta 0 and 180 do not count as parallel";
  EXPECT_FALSE(NuvGetHoughLinePointX(10, 90, 5, &x));
  EXPECT_EQ(x, 0);
}

TEST(Distances, AndSides) {
  EXPECT_EQ(NuvDistBetweenPoint12(1, 2, 4, 6), 5);
  EXPECT_EQ(NuvDistFromPoint3To2PLine(0, 0, 10, 0, 3, -4), 4);
  EXPECT_EQ(NuvDistFromPoint2KBLine(3, 7, 0, 0, 2), 5);
  EXPECT_EQ(NuvDistFromPoint2KBLine(3, 7, 1, 0, 2), 1);
  EXPECT_EQ(NuvWhichSideIsPoint3ToLine(0, 0, 10, 5, 4, 3), 1) << "the point lies below the line";
  EXPECT_EQ(NuvWhichSideIsPoint3ToLine(0, 0, 10, 5, 4, 1), -1);
  EXPECT_EQ(NuvWhichSideIsPoint3ToLine(0, 0, 10, 5, 4, 2), 0);
  EXPECT_EQ(NuvWhichSideIsPoint3ToLine(3, 0, 3, 9, 5, 4), 1) << "the point lies right of a vertical line";
  // 100,000 * 50,000 wraps to 705,032,704: the products are 32-bit.
  EXPECT_EQ(NuvDistFromPoint3To2PLine(0, 100000, 50000, 100000, 0, 100000),
            std::fabs(-5e9 + 705032704.0) / 50000);
}

TEST(Overlaps, OfRangesAndRectangles) {
  int32_t begin = -9;
  int32_t end = -9;
  EXPECT_EQ(NuvLineOverlapLen(5, 1, 9, 3, &begin, &end), 3) << "of 1 to 5 and 3 to 9";
  EXPECT_EQ(begin, 3);
  EXPECT_EQ(end, 5);
  EXPECT_EQ(NuvLineOverlapLen(1, 5, 6, 9, &begin, &end), 0);
  EXPECT_EQ(begin, 0);
  EXPECT_EQ(end, 0);
  EXPECT_EQ(NuvLineOverlapLen(1, 5, 5, 9), 1);
  const tagRECT square{0, 0, 9, 9};
  EXPECT_EQ(NuvRectOverlapArea(square, {12, 12, 8, 7}), 2 * 3);
  EXPECT_EQ(NuvRectOverlapArea(square, {10, 0, 12, 9}), 0);
}

}  // namespace
