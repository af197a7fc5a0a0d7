#include <gtest/gtest.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"

namespace {

TEST(Intersection, OfKbLinesForAllFlags) {
  // y = x/2 + 1 and x = y/4 + 6, each in both forms. They meet at (50/7, 32/7).
  const struct Kb {
    int32_t is_vertical;
    double k, b;
  } first[] = {{0, 0.5, 1}, {1, 2, -2}}, second[] = {{1, 0.25, 6}, {0, 4, -24}};
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
  EXPECT_TRUE(NuvPointOfIntersection(4, 90, 10, 45, &x, &y)) << "row 4 and x + y = 10*sqrt(2)";
  EXPECT_NEAR(x, 10 * std::sqrt(2.0) - 4, 1e-4);
  EXPECT_NEAR(y, 4, 1e-4);
  EXPECT_FALSE(NuvPointOfIntersection(30, 45, 40, 45, &x, &y));
  EXPECT_EQ(x, 0);
  EXPECT_TRUE(NuvPointOfIntersection(30, 0, 40, 180, &x, &y)) << "Theta 0 and 180 do not count as parallel";
  EXPECT_FALSE(NuvGetHoughLinePointX(10, 90, 5, &x));
  EXPECT_EQ(x, 0);
}

}  // namespace
