#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

TEST(ChainQueries, CountTheStartOncePerVisit) {
  Square s;
  TestImage image(5, 5, 9);
  EXPECT_EQ(NuvPixelsPassedByChain(image.data(), 5, s.x, s.y, s.data(), 8, 9), 9);
  EXPECT_EQ(NuvWhitePixlePassedByChain(image.data(), 5, s.x, s.y, s.data(), 8), 8);
  EXPECT_EQ(NuvContourPosPoints(s.x, s.y, s.data(), 8, 1), 2) << "the start does not count";
  image.at(1, 1) = 4;
  EXPECT_TRUE(NuvHasPixelsOnChain(image.data(), 5, s.x, s.y, s.data(), 0, 4));
  EXPECT_FALSE(NuvHasPixelsOnChain(image.data(), 5, s.x, s.y, s.data(), 8, 5));
}

TEST(ChainQueries, PointsAndLines) {
  Square s;
  EXPECT_TRUE(NuvIsPointOnContour(s.x, s.y, s.data(), 8, 2, 1));
  EXPECT_FALSE(NuvIsPointOnContour(s.x, s.y, s.data(), 8, 2, 2));
  for (int32_t i = 0; i < 5; ++i) {
    EXPECT_EQ(NuvIsHorizontalLineIntersectContour(s.y, s.data(), 8, i), i >= 1 && i <= 3);
    EXPECT_EQ(NuvIsVerticalLineIntersectContour(s.x, s.data(), 8, i), i >= 1 && i <= 3);
  }
  int32_t curve[] = {1, 2, 2, 4, 1};
  EXPECT_TRUE(NuvIsVerticalLineIntersectContour(s.x, s.y, s.data(), 8, curve))
      << "the curve meets the contour at (2, 1)";
  curve[1] = 0;
  EXPECT_FALSE(NuvIsVerticalLineIntersectContour(s.x, s.y, s.data(), 8, curve));
}

TEST(ContourMean, CountsTheStartTwice) {
  TestImage image(5, 5, 100);
  uint8_t square[] = {6, 0, 2, 4};
  EXPECT_EQ(NuvContourGryAvr(image.data(), 5, 1, 1, square, 4), 125.0);
  EXPECT_EQ(NuvContourGryAvr(image.data(), 5, 1, 1, square, 0), 100.0);
}

// The number of enclosed pixels is the exact area, and the point query holds for just these pixels.
TEST(Chain, EnclosesWhatTheOutsideDoesNotReach) {
  Random random(12);
  for (int round = 0; round < 120; ++round) {
    TestImage image = random_blobs(random, 24, 18);
    for (TracedChain& chain : trace_all(image)) {
      if (!chain.is_outer || chain.n() == 0) continue;
      TestImage region = enclosed_by(chain, 24, 18).region;
      ASSERT_EQ(real_measure(chain).area, NuvPixelsInGryImg(region.data(), 24, 18, 255)) << region;
      int32_t box[4];
      NuvContourRect(chain.x, chain.y, chain.data(), chain.n(), &box[0], &box[1], &box[2], &box[3]);
      for (int32_t y = 0; y < 18; ++y) {
        for (int32_t x = 0; x < 24; ++x) {
          const bool inside = region.at(x, y) != 0;
          ASSERT_EQ(NuvIsPointIncludedByChain(x, y, chain.x, chain.y, chain.data(), chain.n()), inside)
              << x << ' ' << y << region;
          ASSERT_TRUE(!inside || (x >= box[0] && x <= box[1] && y >= box[2] && y <= box[3]));
        }
      }
    }
  }
}

}  // namespace
