#include <gtest/gtest.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"

namespace {

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

TEST(Angles, OfLinesToTheAxisAndToEachOther) {
  EXPECT_NEAR(Nuv2PLineAngleDegree2AxisX(0, 0, 5, 5), 45, 1e-4);
  EXPECT_NEAR(Nuv2PLineAngleDegree2AxisX(0, 5, 5, 0), 135, 1e-4);
  EXPECT_EQ(Nuv2PLineAngleDegree2AxisX(3, 3, 3, 3), 90);
  EXPECT_NEAR(NuvABCLineAngleDegree2AxisX(1, -1, 9), 45, 1e-4);
  EXPECT_NEAR(NuvABCLineIntersectAngleDegree(1, -1, 0, 0, 1, 0), 45, 1e-4);
  EXPECT_EQ(NuvABCLineIntersectAngleDegree(1, 2, 0, 2, 4, 9), 0) << "parallel";
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
