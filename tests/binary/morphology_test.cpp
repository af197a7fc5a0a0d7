#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

// The rule as it is documented: visits pixels one by one and writes to their neighbours.
struct Growing {
  bool white;  // grows white, or black
  TestImage result;

  void visit(const TestImage& image, int32_t x, int32_t y) {
    bool beside_black = false;
    for (int d = 0; d < 8; ++d) {
      const int32_t ny = y + kStepY[d];
      if (ny < image.height) beside_black |= image.at(x + kStepX[d], ny) == 0;
    }
    if ((image.at(x, y) != 0) != white || !beside_black) return;
    for (int d = 0; d < 8; ++d) {
      const int32_t ny = y + kStepY[d];
      if (ny < image.height) result.at(x + kStepX[d], ny) = white ? 255 : 0;
    }
  }
};

using WholeForm = void(uint8_t*, int32_t, int32_t, uint8_t*);
constexpr WholeForm* min_filter = NuvBinImgMinFilter3x3;
constexpr WholeForm* max_filter = NuvBinImgMaxFilter3x3;

TEST(Growing3x3, IsTheRuleAppliedPixelByPixel) {
  Random random(53);
  std::vector<std::pair<int32_t, int32_t>> sizes(std::begin(kOddSizes), std::end(kOddSizes));
  sizes.emplace_back(9001, 19);  // three strips
  for (const auto& [width, height] : sizes) {
    TestImage image = random.binary(width, height, random.between(2, 98));
    for (uint8_t& pixel : image.pixels) pixel &= static_cast<uint8_t>(random.between(1, 255));
    for (bool white : {false, true}) {
      Growing whole{white, image};
      for (int32_t y = 1; y < height - 1; ++y) {
        for (int32_t x = 1; x < width - 1; ++x) whole.visit(image, x, y);
      }
      TestImage result(width, height, 7);
      (white ? max_filter : min_filter)(image.data(), width, height, result.data());
      EXPECT_EQ(result, whole.result) << image;

      const int32_t x1 = random.between(0, width - 1);
      const int32_t x2 = random.between(x1, width - 1);
      const int32_t y1 = random.between(0, height - 1);
      const int32_t y2 = random.between(y1, height - 1);
      Growing region{white, TestImage(width, height, 7)};
      for (int32_t y = y1; y <= y2; ++y) {
        for (int32_t x = x1; x <= x2; ++x) region.result.at(x, y) = image.at(x, y);
      }
      // The width limits the rows as well as the columns.
      for (int32_t y = std::max(y1, 1); y <= std::min({y2 + 1, width - 2, height - 1}); ++y) {
        for (int32_t x = std::max(x1, 1); x <= std::min(x2 + 1, width - 2); ++x) region.visit(image, x, y);
      }
      result = TestImage(width, height, 7);
      if (white) {
        NuvBinImgMaxFilter3x3(image.data(), width, height, x1, x2, y1, y2, result.data());
      } else {
        NuvBinImgMinFilter3x3(image.data(), width, height, x1, x2, y1, y2, result.data());
      }
      EXPECT_EQ(result, region.result) << image << x1 << ' ' << x2 << ' ' << y1 << ' ' << y2;
    }
  }
}

TEST(Growing3x3, IgnoresALonePixelInTheLastRow) {
  // The form for regions visits the last row, too. A lone black pixel there does not grow in any strip.
  for (int32_t x : {4095, 8191, 8192}) {
    TestImage lone(12300, 4, 255);
    TestImage result(12300, 4);
    lone.at(x, 3) = 0;
    NuvBinImgMinFilter3x3(lone.data(), 12300, 4, 0, 12299, 0, 3, result.data());
    EXPECT_TRUE(result == lone) << x;
  }
}

TEST(Growing3x3, ToColorReplacesMarksAndExactValues) {
  const auto with_mark = [](TestImage image) {
    image.at(5, 4) = 200;
    return image;
  };
  // Neighbours of interior pixels change, those on the sides included. A 9 is neither 255 nor black.
  TestImage black = with_mark(draw({"######", "##.###", "###9##", "####.#", ".#####"}));
  NuvBinImgMinFilter3x3ToColor(black.data(), 6, 5, 7);
  EXPECT_EQ(black, draw({"#777##", "#7.7##", "#77977", "###7.7", ".##777"}));
  TestImage white = with_mark(draw({"......", "..#...", "...9..", "....#.", "#....."}));
  NuvBinImgMaxFilter3x3ToColor(white.data(), 6, 5, 7);
  EXPECT_EQ(white, draw({".777..", ".7#7..", ".77977", "...7#7", "#..777"}));
}

}  // namespace
