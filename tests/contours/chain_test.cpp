// Measures and queries of a single chain.

#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

// The 3 by 3 square from (1, 1).
struct Square {
  std::vector<uint8_t> codes = {6, 6, 0, 0, 2, 2, 4, 4};
  int32_t x = 1;
  int32_t y = 1;
  uint8_t* data() { return codes.data(); }
};

TEST(ChainMeasures, OfASquare) {
  Square s;
  int32_t area = 0;
  int32_t perimeter = 0;
  NuvAreaAndPerimeter(s.data(), 8, &area, &perimeter);
  EXPECT_EQ(area, 8);
  EXPECT_EQ(perimeter, 8);
  int32_t center[2];
  NuvContourCenter(s.x, s.y, s.data(), 8, &center[0], &center[1]);
  EXPECT_THAT(center, ElementsAre(2, 2));
  int32_t box[4];
  NuvContourRect(s.x, s.y, s.data(), 8, &box[0], &box[1], &box[2], &box[3]);
  EXPECT_THAT(box, ElementsAre(1, 3, 1, 3));
  NuvContourRotatedRect(s.x, s.y, s.data(), 8, 90, &box[0], &box[1], &box[2], &box[3]);
  // 1024 times the sine of nearly 90 degrees truncates to 1023, and the shift rounds down.
  EXPECT_THAT(box, ElementsAre(-3, -1, 0, 2));
  int32_t xs[8];
  int32_t ys[8];
  int32_t greatest[2];
  NuvChain2Points(s.x, s.y, s.data(), 8, xs, ys, &greatest[0], &greatest[1]);
  EXPECT_THAT(xs, ElementsAre(1, 1, 1, 2, 3, 3, 3, 2));
  EXPECT_THAT(ys, ElementsAre(1, 2, 3, 3, 3, 2, 1, 1));
  EXPECT_THAT(greatest, ElementsAre(3, 3));
}

TEST(ChainMeasures, LineSimilarityFindsTheBar) {
  int32_t width = 0;
  int32_t length = 77;
  EXPECT_EQ(NuvLineSimilarity(60, 32, 1, 7, &width, &length), 0) << "a bar of 6 by 10 fits exactly";
  EXPECT_EQ(width, 6);
  EXPECT_EQ(length, 10);
  EXPECT_EQ(NuvLineSimilarity(60, 32, 16, 20, &width, &length), 10000.0);
  EXPECT_EQ(width, 10000);
  EXPECT_EQ(length, 10) << "unchanged";
  Square s;
  EXPECT_EQ(NuvLineSimilarity(s.x, s.y, s.data(), 8, 1, 3, &width, &length), 1.0);
  EXPECT_EQ(width, 2) << "area 8 against bars of 3, 4 and 3";
  // Below 0 the misfit is -(1 + area/-bar), which is least for a width of -1. From 1 on two widths fit, and
  // 31000 is the narrower one.
  EXPECT_EQ(NuvLineSimilarity(64, 1000000, INT32_MIN, INT32_MAX, &width, &length), -500065.0 / 500001);
  EXPECT_EQ(width, -1);
  EXPECT_EQ(NuvLineSimilarity(31000 * 69000, 200000, 1, INT32_MAX, &width, &length), 0.0);
  EXPECT_EQ(width, 31000);
  EXPECT_EQ(length, 69000);
}

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

TEST(ChainMarks, DrawSolidDashedAndCounting) {
  Square s;
  TestImage image(5, 5);
  NuvMarkChainByColor(image.data(), 5, s.x, s.y, s.data(), 8, 255 + 256);
  EXPECT_EQ(image, draw({".....", ".###.", ".#.#.", ".###.", "....."}));
  image = TestImage(5, 5);
  NuvMarkChainByColor(image.data(), 5, s.x, s.y, s.data(), 8, 255, 0);
  EXPECT_EQ(image, draw({".....", ".#...", ".#.#.", ".###.", "....."})) << "steps 0 to 4, and the start";
  image = TestImage(5, 5, 254);
  image.at(1, 1) = 255;
  for (int i = 0; i < 2; ++i) NuvMarkChainByInc(image.data(), 5, s.x, s.y, s.data(), 8);
  EXPECT_EQ(image.at(1, 1), 3) << "255 becomes 0 at the start; it is passed again at the end";
  EXPECT_EQ(image.at(2, 1), 255);
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
