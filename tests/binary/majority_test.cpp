#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

TEST(Majority3x3, AgreesWithCounting) {
  Random random(56);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    for (uint8_t& pixel : image.pixels) pixel = random.between(0, 2) == 0 ? 0 : pixel;
    const int32_t threshold = random.between(-20, 280);
    TestImage majority(width, height);
    TestImage thresholded(width, height);
    for (int32_t y = 1; y < height - 1; ++y) {
      for (int32_t x = 1; x < width - 1; ++x) {
        int32_t white = 0;
        int32_t reaching = 0;
        for (int d = 0; d < 8; ++d) {
          const uint8_t neighbour = image.at(x + kStepX[d], y + kStepY[d]);
          white += neighbour != 0 ? 1 : 0;
          reaching += neighbour >= threshold ? 1 : 0;
        }
        if (white >= 5) majority.at(x, y) = 255;
        if (reaching >= 4 && image.at(x, y) >= threshold) thresholded.at(x, y) = 255;
      }
    }
    TestImage result(width, height, 7);
    NuvBinImgMedFilter3x3(image.data(), width, height, result.data());
    EXPECT_EQ(result, majority);
    EXPECT_EQ(NuvThresholdAndMedFilter3x3(image.data(), width, height, threshold, result.data()),
              NuvPixelsInGryImg(thresholded.data(), width, height, 255));
    EXPECT_EQ(result, thresholded);
  }
}

TEST(MajorityOfGrowingWindow, UsesOneRowInTheSideColumns) {
  // Five of nine pixels make a majority. In the first and the last row the window covers the three outermost
  // rows. In the first column and the last two columns, two of three pixels of the row make a majority.
  TestImage image = draw({".##.....", "##......", ".##.....", "...###..", "......##", "...##.#."});
  TestImage result(8, 6, 7);
  NuvBinImgMedFilter(image.data(), 8, 6, 1, 1, 1, 1, result.data());
  EXPECT_EQ(result, draw({"###.....", "###.....", "#.......", "......#.", "....##.#", "....###."}));
}

TEST(MajorityOfGrowingWindow, WidthChangesFromRowToRow) {
  TestImage image = draw({"....###...", "....###...", "....###...", "....###..."});
  const auto filtered = [&](double ratio) {
    TestImage result(10, 4, 7);
    NuvBinImgMedFilter(image.data(), 10, 4, 1, 0, ratio, 1, result.data());
    return result;
  };
  // The windows have widths of 3, 5, 5 and 7.
  EXPECT_EQ(filtered(3), draw({"....###...", "....#####.", "....#####.", ".........."}));
  EXPECT_EQ(filtered(0.2), draw({"....###...", "....###...", "....###...", "7777777777"}))
      << "the half width of row 3 rounds to 0";
}

TEST(MajorityOfGrowingWindow, NeedsASumAboveTheLimit) {
  for (const uint8_t level : {127, 128}) {
    TestImage image(7, 5, level);
    TestImage result(7, 5, 7);
    NuvBinImgMedFilter(image.data(), 7, 5, 1, 1, 1, 1, result.data());
    EXPECT_EQ(result, TestImage(7, 5, level == 128 ? 255 : 0));
  }
}

TEST(LittleWhiteMajority, ConsidersOnlyPixelsNearInnerWhitePixels) {
  // Four of eight neighbours make a majority. White pixels of row 1 and column 1 have five but are not
  // considered.
  TestImage image =
      draw({"........", "####....", "####....", ".....#..", "...#.#..", "....#...", "........", "........"});
  TestImage result(8, 8, 7);
  NuvBinImgLittleWhitePixelsMed3x3Filter(image.data(), 8, 8, result.data());
  EXPECT_EQ(result, draw({"........", "........", "..#.....", "..#.#...", "....#...", "........", "........",
                          "........"}));
  image.at(3, 4) = 254;  // three of the pixels now have a sum of 1019
  NuvBinImgLittleWhitePixelsMed3x3Filter(image.data(), 8, 8, result.data());
  EXPECT_EQ(result, draw({"........", "........", "..#.....", "........", "........", "........", "........",
                          "........"}));
}

}  // namespace
