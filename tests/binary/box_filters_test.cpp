#include <gmock/gmock.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

int32_t sum_of(const TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
  int32_t sum = 0;
  for (int32_t y = y1; y <= y2; ++y) {
    for (int32_t x = x1; x <= x2; ++x) sum += image.at(x, y);
  }
  return sum;
}

TEST(BinImgFilter, ThresholdsWholeWindowsAndRepeatsTheNearestResult) {
  Random random(51);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    const int32_t m = random.between(0, std::min((width - 1) / 2, 9));
    const int32_t n = random.between(0, std::min((height - 1) / 2, 9));
    const auto threshold = static_cast<uint32_t>((2 * m + 1) * (2 * n + 1) * random.between(100, 150));
    TestImage expected(width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        const int32_t cx = std::clamp(x, m, width - 1 - m);
        const int32_t cy = std::clamp(y, n, height - 1 - n);
        const int32_t sum = sum_of(image, cx - m, cx + m, cy - n, cy + n);
        expected.at(x, y) = static_cast<uint32_t>(sum) > threshold ? 255 : 0;
      }
    }
    TestImage result(width, height, 7);
    EXPECT_TRUE(NuvBinImgFilter(image.data(), width, height, m, n, threshold, result.data()));
    EXPECT_EQ(result, expected);
  }
}

TEST(BinImgRemoveMskAndFilter, ShrinksItsWindowAtTheSides) {
  // After masking, the pixels are 90, which is not above the threshold. The middle is 91, and the corners of
  // the last column are 127 and 126.
  TestImage image(5, 3, 255);
  TestImage mask(5, 3, static_cast<uint8_t>(~90));
  mask.at(2, 1) = static_cast<uint8_t>(~91);
  mask.at(4, 0) = static_cast<uint8_t>(~127);
  mask.at(4, 2) = static_cast<uint8_t>(~126);
  TestImage result(5, 3, 7);
  EXPECT_TRUE(NuvBinImgRemoveMskAndFilter(image.data(), mask.data(), 5, 3, 2, 1, 90, result.data()));
  EXPECT_EQ(result, draw({"..###", ".###.", "..##."}));
}

TEST(BinImgRemoveMskAndFilter, UseLUTClearsPixelsWhoseMaskIsAbove128) {
  TestImage image(4, 1, 200);
  TestImage mask(4, 1);
  mask.pixels = {127, 128, 129, 0};
  TestImage result(4, 1);
  EXPECT_TRUE(NuvBinImgRemoveMskAndFilterUseLUT(image.data(), mask.data(), 4, 1, 0, 0, 199, result.data()));
  EXPECT_EQ(result, draw({"##.#"}));
}

TEST(BinImgRemoveMskAndFilter, TakesUpTo4095Columns) {
  for (auto filter : {NuvBinImgRemoveMskAndFilter, NuvBinImgRemoveMskAndFilterUseLUT}) {
    TestImage image(4096, 1, 255);
    TestImage mask(4096, 1);
    TestImage result(4096, 1, 7);
    EXPECT_FALSE(filter(image.data(), mask.data(), 4096, 1, 1, 0, 200, result.data()));
    EXPECT_EQ(result, TestImage(4096, 1, 7));
    EXPECT_TRUE(filter(image.data(), mask.data(), 4095, 1, 1, 0, 200, result.data()));
    EXPECT_EQ(NuvPixelsInGryImg(result.data(), 4096, 1, 255), 4095);
  }
}

}  // namespace
