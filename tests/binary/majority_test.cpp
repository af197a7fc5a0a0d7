#include <gmock/gmock.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

template <class Test>
int32_t count_around(const TestImage& image, int32_t x, int32_t y, Test test) {
  int32_t count = 0;
  for (int d = 0; d < 8; ++d) count += test(image.at(x + kStepX[d], y + kStepY[d])) ? 1 : 0;
  return count;
}

bool is_white(uint8_t pixel) {
  return pixel != 0;
}

TEST(Majority3x3, AgreesWithCounting) {
  Random random(56);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    for (uint8_t& pixel : image.pixels) pixel = random.between(0, 2) == 0 ? 0 : pixel;
    TestImage majority(width, height);
    TestImage region_only(width, height, 7);
    TestImage thresholded(width, height);
    const int32_t threshold = random.between(-20, 280);
    const int32_t x1 = random.between(0, width - 1);
    const int32_t x2 = random.between(x1, width - 1);
    int32_t white = 0;
    for (int32_t y = 1; y < height - 1; ++y) {
      for (int32_t x = 1; x < width - 1; ++x) {
        majority.at(x, y) = count_around(image, x, y, is_white) >= 5 ? 255 : 0;
        if (x >= x1 && x <= x2) region_only.at(x, y) = majority.at(x, y);
        const auto reaches = [=](uint8_t pixel) { return pixel >= threshold; };
        if (!reaches(image.at(x, y)) || count_around(image, x, y, reaches) < 4) continue;
        thresholded.at(x, y) = 255;
        ++white;
      }
    }
    TestImage result(width, height, 7);
    NuvBinImgMedFilter3x3(image.data(), width, height, result.data());
    EXPECT_EQ(result, majority);
    result = TestImage(width, height, 7);
    NuvBinImgMedFilter3x3(image.data(), width, height, x1, x2, 0, height - 1, result.data());
    EXPECT_EQ(result, region_only);
    EXPECT_EQ(NuvThresholdAndMedFilter3x3(image.data(), width, height, threshold, result.data()), white);
    EXPECT_EQ(result, thresholded);
  }
}

TEST(MajorityOfGrowingWindow, SumsTheWindowOfEachRow) {
  Random random(57);
  for (const auto& [w, h] : kOddSizes) {
    const int32_t width = w;
    const int32_t height = h;
    TestImage image = random.binary(width, height, 50);
    const int32_t half_m = random.between(0, 3);
    const int32_t half_n = random.between(0, 3);
    const double ratio_x = random.between(5, 30) / 10.0;
    const double ratio_y = random.between(5, 30) / 10.0;
    TestImage expected(width, height, 7);
    for (int32_t y = 0; y < height; ++y) {
      const auto m = static_cast<int32_t>(((y * (ratio_x - 1.0)) / height + 1.0) * half_m + 0.5);
      const auto n = static_cast<int32_t>(((y * (ratio_y - 1.0)) / height + 1.0) * half_n + 0.5);
      if ((m < 1 && n < 1) || 2 * m + 1 > width) continue;
      int32_t y1 = std::max(y - 2 * n, 0);
      int32_t y2 = y;
      if (y < n) {
        y1 = y;
        y2 = std::min(y + 2 * n, height - 1);
      } else if (y + n <= height - 1) {
        y1 = y - n;
        y2 = y + n;
      }
      const auto sum = [&](int32_t xa, int32_t xb, int32_t ya, int32_t yb) {
        int32_t total = 0;
        for (int32_t j = ya; j <= yb; ++j) {
          for (int32_t i = std::max(xa, 0); i <= std::min(xb, width - 1); ++i) total += image.at(i, j);
        }
        return total;
      };
      for (int32_t x = 0; x < width; ++x) {
        bool white = sum(x - m, x + m, y1, y2) > (y2 - y1 + 1) * (2 * m + 1) * 127;
        if (x < m) white = sum(x, x + 2 * m, y, y) > m * 254 + 127;
        if (x >= width - m - 1) white = sum(x - 2 * m, x, y, y) > m * 254 + 127;
        expected.at(x, y) = white ? 255 : 0;
      }
    }
    TestImage result(width, height, 7);
    NuvBinImgMedFilter(image.data(), width, height, half_m, half_n, ratio_x, ratio_y, result.data());
    EXPECT_EQ(result, expected);
  }
}

TEST(LittleWhiteMajority, IsTheMajorityNearWhitePixels) {
  Random random(58);
  TestImage image = random.binary(60, 50, 40);
  TestImage result(60, 50, 7);
  NuvBinImgLittleWhitePixelsMed3x3Filter(image.data(), 60, 50, result.data());
  for (int32_t y = 0; y < 50; ++y) {
    for (int32_t x = 0; x < 60; ++x) {
      // Where a white pixel inside is at hand: each pixel or one of its neighbours in columns 2..57, rows
      // 2..47.
      const auto inside = [&](int32_t i, int32_t j) { return i >= 2 && i <= 57 && j >= 2 && j <= 47; };
      bool near_white = inside(x, y) && image.at(x, y) != 0;
      for (int d = 0; d < 8 && image.at(x, y) == 0; ++d) {
        const int32_t i = x + kStepX[d];
        const int32_t j = y + kStepY[d];
        near_white |= inside(i, j) && image.at(i, j) != 0 && count_around(image, i, j, is_white) < 8;
      }
      const bool white = near_white && count_around(image, x, y, is_white) >= 4;
      ASSERT_EQ(result.at(x, y), white ? 255 : 0) << x << ' ' << y;
    }
  }
}

TEST(DeletePoints, AreDeletedForTheirCompany) {
  // The first and the last column meet the neighbouring rows: the end of row 1 lies beside the start of row
  // 2.
  TestImage isolated = draw({".......", "..#...#", "#...#..", "...#...", "......#"});
  NuvBinImgDeleteIsolatedPoints(isolated.data(), 7, 5);
  EXPECT_EQ(isolated, draw({".......", "......#", "#...#..", "...#...", "......#"}));

  TestImage block = draw({".....", ".###.", ".###.", ".###.", "....."});
  NuvBinImgDeletePointsLessThanN(block.data(), 5, 5, 255, 4);
  // A corner has three, and what is turned no longer counts: then the next one has four, and so on.
  EXPECT_EQ(block, draw({".....", "..#..", ".###.", "..#..", "....."}));
  NuvBinImgDeletePointsMoreThanN(block.data(), 5, 5, 255, 3);
  EXPECT_EQ(block, draw({".....", "..#..", ".#.#.", "..#..", "....."}));
}

}  // namespace
