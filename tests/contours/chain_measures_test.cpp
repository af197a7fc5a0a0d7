#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"

namespace {

using testing::ElementsAre;

TEST(ChainMeasures, OfASquare) {
  Square s;
  int32_t area = 0;
  int32_t perimeter = 0;
  NuvAreaAndPerimeter(s.data(), 8, &area, &perimeter);
  EXPECT_EQ(area, 8);
  EXPECT_EQ(perimeter, 8);
  int32_t centre[2];
  NuvContourCenter(s.x, s.y, s.data(), 8, &centre[0], &centre[1]);
  EXPECT_THAT(centre, ElementsAre(2, 2));
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

}  // namespace
