#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

class Rectangles : public testing::Test {
 protected:
  static constexpr int32_t kWidth = 53;
  static constexpr int32_t kHeight = 11;
  static constexpr int32_t kX1 = 3, kX2 = 40, kY1 = 2, kY2 = 9;
  static constexpr int32_t kColumns = kX2 - kX1 + 1;
  static constexpr int32_t kRows = kY2 - kY1 + 1;
  static constexpr std::size_t kArea = static_cast<std::size_t>(kColumns) * kRows;

  Bytes rgb = Random(9).bytes(static_cast<std::size_t>(kWidth) * kHeight * 3);

  // Byte i of pixel p of the packed rectangle, taken from the image.
  uint8_t source(std::size_t p, int i) const {
    const std::size_t x = kX1 + p % kColumns;
    const std::size_t y = kY1 + p / kColumns;
    return rgb[(y * kWidth + x) * 3 + static_cast<std::size_t>(i)];
  }
};

TEST_F(Rectangles, AreCopiedPacked) {
  Bytes copy(3 * kArea);
  Bytes gray(kArea);
  Bytes same_gray(kArea);
  Bytes planes[3] = {Bytes(kArea), Bytes(kArea), Bytes(kArea)};
  Bytes channel(kArea);
  NuvCopyRGBRect(rgb.data(), kWidth, kHeight, kX1, kX2, kY1, kY2, copy.data(), gray.data());
  NuvCopyRGBRect2Gry(rgb.data(), kWidth, kHeight, kX1, kX2, kY1, kY2, same_gray.data());
  NuvCopyRGBRect2Gry(rgb.data(), kWidth, kHeight, kX1, kX2, kY1, kY2, planes[2].data(), planes[1].data(),
                     planes[0].data());
  NuvSelectRGBRect2Gry(rgb.data(), kWidth, kHeight, kX1, kX2, kY1, kY2, 2, channel.data());
  for (std::size_t p = 0; p < kArea; ++p) {
    for (int i = 0; i < 3; ++i) {
      ASSERT_EQ(copy[3 * p + static_cast<std::size_t>(i)], source(p, i));
      ASSERT_EQ(planes[i][p], source(p, i));
    }
  }
  EXPECT_EQ(gray, same_gray);
  EXPECT_EQ(channel, planes[2]);
}

TEST(TwoColourSplit, MarksTheNearerColour) {
  // A dark pixel, a bright one, and a middle one of the dark pixel's hue.
  Bytes rgb = {10, 0, 0, 250, 250, 250, 100, 0, 0};
  Bytes gray(3);
  Bytes binary(3);
  int32_t columns = 0;
  int32_t rows = 0;
  NuvCopyRGB2GryBinImg(rgb.data(), 3, 1, 0, 2, 0, 0, true, gray.data(), binary.data(), &columns, &rows);
  EXPECT_THAT(binary, ElementsAre(0, 255, 0));
  NuvCopyRGB2GryBinImg(rgb.data(), 3, 1, 0, 2, 0, 0, false, gray.data(), binary.data(), &columns, &rows);
  EXPECT_THAT(binary, ElementsAre(255, 0, 255));
  EXPECT_EQ(columns, 3);
  EXPECT_EQ(rows, 1);
  NuvCopyRGB2GryBinImg(rgb.data(), 3, 1, 2, 1, 0, 0, true, nullptr, nullptr, &columns, &rows);
  EXPECT_EQ(columns, 0) << "an empty rectangle writes only the two sizes";
}

TEST(RectangleAverage, CountsHitsButReadsTheFirstPixelsOfTheRow) {
  //          pixel:  0           1           2
  Bytes rgb = {10, 20, 30, 40, 50, 60, 70, 80, 90};
  Bytes mask = {0, 0, 255};
  int32_t red = -1;
  int32_t green = -1;
  int32_t blue = -1;
  NuvRGBRectAvr(rgb.data(), mask.data(), 3, 1, 0, 2, 0, 0, &red, &green, &blue);
  EXPECT_THAT((std::vector<int32_t>{red, green, blue}), ElementsAre(30, 20, 10));
  mask = {255, 254, 255};  // only 255 hits
  NuvGetRGBRectAvr(rgb.data(), mask.data(), 3, 1, 0, 2, 0, 0, &red, &green, &blue);
  EXPECT_THAT((std::vector<int32_t>{red, green, blue}), ElementsAre(45, 35, 25));
  NuvRGBRectAvr(rgb.data(), mask.data(), 3, 1, 1, 1, 0, 0, &red, &green, &blue);
  EXPECT_THAT((std::vector<int32_t>{red, green, blue}), Each(0));
}

}  // namespace
