#include <gmock/gmock.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

TEST(TwoEdgePoints, PerColumn) {
  TestImage image = draw({"9..", "5.7", "...", "3.7", "4.9", "9.."});
  int32_t first[3] = {-7, -7, -7};
  int32_t second[3] = {-7, -7, -7};
  NuvExtractTwoEdgePointPerCol(image.data(), 3, 2, 0, 1, 0, 5, first, second);
  EXPECT_THAT(first, ElementsAre(1, 0, 0)) << "an empty column and one outside give 0";
  EXPECT_THAT(second, ElementsAre(4, 0, 0));
  NuvExtractTwoEdgePointPerCol(image.data(), 3, 9, 0, 2, 0, 5, first, second);
  EXPECT_THAT(first, ElementsAre(1, 0, 4));
  EXPECT_THAT(second, ElementsAre(1, 0, 4)) << "no second pixel is far enough from the first";
}

TEST(EdgePointsInRect, NeedMoreThanTenPixelsBetween) {
  TestImage image(40, 3);
  image.at(5, 0) = 9;
  image.at(15, 0) = 8;
  image.at(5, 1) = 9;
  image.at(16, 1) = 8;
  std::vector<int32_t> left(3, -7);
  std::vector<int32_t> right(3, -7);
  std::vector<int32_t> top(40, -7);
  std::vector<int32_t> bottom(40, -7);
  bottom[2] = 33;
  NuvExtractEdgePointInRect(image.data(), 40, 0, 0, 39, 2, left.data(), right.data(), top.data(),
                            bottom.data());
  EXPECT_THAT(left, ElementsAre(5, 5, 33)) << "a row of zeros receives the entry of pBottom";
  EXPECT_THAT(right, ElementsAre(5, 16, -1));
  EXPECT_EQ(top[5], 0);
  EXPECT_EQ(top[6], -1);
}

TEST(EdgePointsInCircle, AreFoundPerRowAndColumn) {
  TestImage image(41, 41);
  image.at(8, 20) = image.at(33, 20) = 9;
  image.at(1, 14) = 9;  // outside the ellipse
  std::vector<int32_t> left(41, -7), right(41, -7), top(41, -7), bottom(41, -7);
  NuvExtractEdgePointInCircle(image.data(), 41, 20, 20, 15, 15, left.data(), right.data(), top.data(),
                              bottom.data());
  EXPECT_TRUE(left[20] == 8 && right[20] == 33 && top[8] == 20);
  EXPECT_EQ(right[14], -1);
  EXPECT_EQ(right[4], -7) << "above the ellipse";
}

TEST(ThresholdByEdge, CountsVotesAroundEdges) {
  TestImage gray(10, 10, 50);
  TestImage edges(10, 10);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 0), 0);
  edges.at(4, 5) = 1;
  gray.at(5, 5) = 60;  // a sample
  gray.at(4, 6) = 90;  // not a sample
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 0), 50);
  gray.at(4, 5) = 55;
  edges.at(5, 5) = 1;
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 1), 50);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 2), 60);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 4, 9, 0, 9, 2), 60)
      << "the edge pixel in column x1 does not vote";
}

TEST(ThresholdByEdge, CountsEachVoteOfALongRow) {
  constexpr int32_t kWidth = 1100;
  TestImage gray(kWidth, 6, 50);
  TestImage edges(kWidth, 6);
  gray.at(1, 4) = 40;  // votes for 40 to 50
  edges.at(1, 4) = 1;
  for (int32_t x = 5; x < kWidth - 2; ++x) {
    gray.at(x, 4) = 45;  // votes for 45 to 50
    edges.at(x, 4) = 1;
    EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), kWidth, 0, kWidth, 0, 6, 2), 45) << x;
    gray.at(x, 4) = 50;
    edges.at(x, 4) = 0;
  }
}

}  // namespace
