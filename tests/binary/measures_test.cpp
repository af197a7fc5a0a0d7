#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TestImage with_runs(int32_t width, std::initializer_list<std::pair<int32_t, int32_t>> runs) {
  TestImage image(width, static_cast<int32_t>(runs.size()));
  int32_t y = 0;
  for (const auto& [first, last] : runs) {
    for (int32_t x = first; x <= last; ++x) image.at(x, y) = 7;  // any value but 0 is object
    ++y;
  }
  return image;
}

TEST(SearchCenterX, FindsTheColumnsInsideMostLongRuns) {
  const struct {
    TestImage image;
    int32_t x1, x2;
    int32_t column;
  } cases[] = {
      // Columns 7..13 lie strictly inside both runs; their middle is 10.
      {with_runs(40, {{2, 14}, {6, 20}}), 0, 39, 10},
      // The ends of a run count once only, so the best columns are 3..13.
      {with_runs(40, {{2, 14}}), 0, 39, 8},
      {with_runs(40, {{2, 14}}), 10, 39, 11},
      // A run of fewer than twelve pixels does not count.
      {with_runs(40, {{2, 12}, {3, 13}}), 5, 30, (40 + 30) / 2},
      {with_runs(40, {{2, 13}}), 0, 39, (3 + 12) / 2},
      // A width above the limit, a width at the limit, and an empty range.
      {with_runs(4097, {{0, 4000}}), 0, 10, 0},
      {with_runs(4096, {{0, 4095}}), 0, 4095, (1 + 4094) / 2},
      {with_runs(40, {{2, 20}}), 9, 8, 40},
  };
  for (auto [image, x1, x2, column] : cases) {
    EXPECT_EQ(NuvBinImgSearchCenterX(image.data(), image.width, image.height, x1, x2), column);
  }
}

TEST(Centroid, IsTheTruncatedMeanOfObjectPixels) {
  TestImage image = draw({"....", ".##.", "..1."});
  int32_t x = -1;
  int32_t y = -1;
  EXPECT_EQ(NuvBinImgCentroid(image.data(), 4, 3, &x, &y), 3);
  EXPECT_EQ(x, 5 / 3);
  EXPECT_EQ(y, 4 / 3);
  TestImage empty(4, 3);
  EXPECT_EQ(NuvBinImgCentroid(empty.data(), 4, 3, &x, &y), 0);
  EXPECT_EQ(x, 5 / 3) << "unchanged";
}

TEST(PixelCounts, AgreeWithEachOther) {
  Random random(1);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.binary(width, height, 40);
    const int32_t black = NuvPixelsInGryImg(image.data(), width, height, 0);
    const int32_t white = NuvPixelsInGryImg(image.data(), width, height, 255);
    EXPECT_EQ(black + white, width * height);
    EXPECT_EQ(NuvGetWhitePixelsNum(image.data(), width, height, -3, width + 5, -1, height), white);
    EXPECT_EQ(NuvGetBlackRatioInBinaryImg(image.data(), width, 0, width - 1, 0, height - 1),
              static_cast<double>(black) / (width * height));
  }
  TestImage flat(333, 100, 9);
  EXPECT_EQ(NuvPixelsInGryImg(flat.data(), 333, 100, 9), 33300) << "more pixels than a byte can count";
  TestImage image(4, 4, 255);
  EXPECT_EQ(NuvPixelsInGryImg(image.data(), 4, 4, 255 + 256), 0);
  EXPECT_EQ(NuvGetWhitePixelsNum(image.data(), 4, 4, -9, -1, 0, 3), 0) << "left of the image";
  EXPECT_EQ(NuvGetWhitePixelsNum(image.data(), 4, 4, 1, 2, 3, 9), 2);
}

}  // namespace
