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
      // Strictly inside both runs: 7..13, the middle of which is 10.
      {with_runs(40, {{2, 14}, {6, 20}}), 0, 39, 10},
      // The ends of a run count once only: inside are 3..13.
      {with_runs(40, {{2, 14}}), 0, 39, 8},
      {with_runs(40, {{2, 14}}), 10, 39, 11},
      // A run has twelve pixels or does not count.
      {with_runs(40, {{2, 12}, {3, 13}}), 5, 30, (40 + 30) / 2},
      {with_runs(40, {{2, 13}}), 0, 39, (3 + 12) / 2},
      // Widths beyond the limit, and an empty range.
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
  EXPECT_EQ(x, 5 / 3) << "left alone";
}

}  // namespace
