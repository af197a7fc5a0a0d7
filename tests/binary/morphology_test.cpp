#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

// Visits pixels one by one and writes to their neighbours, as the rule is told.
struct Growing {
  bool white;  // grows white, or black
  TestImage result;

  bool grows(const TestImage& image, int32_t x, int32_t y) const {
    bool beside_black = false;
    for (int d = 0; d < 8; ++d) {
      const int32_t ny = y + kStepY[d];
      if (ny < image.height) beside_black |= image.at(x + kStepX[d], ny) == 0;
    }
    return (image.at(x, y) != 0) == white && beside_black;
  }
  void visit(const TestImage& image, int32_t x, int32_t y) {
    if (!grows(image, x, y)) return;
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
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.binary(width, height, random.between(2, 98));
    if (random.between(0, 1) != 0) {
      for (uint8_t& pixel : image.pixels)
        pixel = pixel != 0 ? static_cast<uint8_t>(random.between(1, 255)) : 0;
    }
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
      // The width limits the rows, too.
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

TEST(Growing3x3, PassesStripsOfWideImages) {
  Random random(54);
  for (bool white : {false, true}) {
    TestImage image = random.binary(9001, 19, white ? 60 : 95);
    TestImage result(9001, 19);
    (white ? max_filter : min_filter)(image.data(), 9001, 19, result.data());
    Growing plain{white, image};
    for (int32_t y = 1; y < 18; ++y) {
      for (int32_t x = 1; x < 9000; ++x) plain.visit(image, x, y);
    }
    EXPECT_TRUE(result == plain.result) << white;
  }

  // Visited to the last row, below which nothing is black: a lone pixel stays alone, in every strip.
  for (int32_t x : {4095, 8191, 8192}) {
    TestImage lone(12300, 4, 255);
    lone.at(x, 3) = 0;
    TestImage copied(12300, 4);
    NuvBinImgMinFilter3x3(lone.data(), 12300, 4, 0, 12299, 0, 3, copied.data());
    EXPECT_TRUE(copied == lone) << x;
  }
}

TEST(Growing3x3, ReplacesMarksAndPixelsBesideTheGrowing) {
  Random random(56);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image(width, height);
    for (uint8_t& pixel : image.pixels)
      pixel = std::array<uint8_t, 6>{0, 255, 255, 0, 200, 9}[random.between(0, 5)];
    for (bool white : {false, true}) {
      const uint8_t growing = white ? 255 : 0;
      TestImage expected = image;
      for (int32_t y = 1; y < height - 1; ++y) {
        for (int32_t x = 1; x < width - 1; ++x) {
          if (image.at(x, y) != growing) continue;
          for (int32_t d = 0; d < 8; ++d) {
            uint8_t& beside = expected.at(x + kStepX[d], y + kStepY[d]);
            if (beside == 255 - growing) beside = 200;
          }
        }
      }
      std::replace(expected.pixels.begin(), expected.pixels.end(), uint8_t{200}, uint8_t{7});
      TestImage result = image;
      (white ? NuvBinImgMaxFilter3x3ToColor : NuvBinImgMinFilter3x3ToColor)(result.data(), width, height, 7);
      EXPECT_EQ(result, expected) << image << white;
    }
  }
}

TEST(Growing3x3, SparesALonePixelInBlackOnly) {
  TestImage lone = draw({"#####", "#####", "##.##", "#####", "#####"});
  TestImage result(5, 5);
  NuvBinImgMinFilter3x3(lone.data(), 5, 5, result.data());
  EXPECT_EQ(result, lone);
  NuvBinImgMinFilter3x3ToColor(lone.data(), 5, 5, 0);
  EXPECT_EQ(lone, draw({"#####", "#...#", "#...#", "#...#", "#####"}));
  TestImage white = draw({".....", ".....", "..#..", ".....", "....."});
  NuvBinImgMaxFilter3x3ToColor(white.data(), 5, 5, 9);
  EXPECT_EQ(white, draw({".....", ".999.", ".9#9.", ".999.", "....."}));
}

TEST(MaxSizeOfMinFilter, EndsForEveryImage) {
  const auto size_of = [](TestImage image) {
    TestImage tmp = image;
    TestImage work = image;
    int32_t size = 99;
    EXPECT_EQ(
        NuvGetMaxSizeofMinFilter(image.data(), tmp.data(), work.data(), image.width, image.height, &size),
        size);
    return size;
  };
  EXPECT_EQ(size_of(TestImage(9, 9)), -1);
  EXPECT_EQ(size_of(draw({".....", ".###.", ".....", "....."})), 1);
  EXPECT_EQ(size_of(TestImage(1, 1, 255)), 1);
  // Distances 1, 2 and 3: one erosion of half size 1 leaves 3 by 3, a second one the middle.
  EXPECT_EQ(size_of(draw({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."})), 5);
  // Nothing black to grow: the first erosion changes nothing.
  EXPECT_EQ(size_of(TestImage(3, 3, 255)), 2);
}

TEST(FillHolesByNearNeighbor, LooksRightLeftDownUpAtEachDistance) {
  Random random(55);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    for (uint8_t& pixel : image.pixels) pixel = random.between(0, 9) == 0 ? pixel : 0;
    TestImage mask = random.binary(width, height, 70);
    const int32_t max_distance = random.between(-1, 12);
    TestImage expected(width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        if (mask.at(x, y) == 0) continue;
        uint8_t value = image.at(x, y);
        for (int32_t d = 1; value == 0 && d <= max_distance; ++d) {
          if (x + d < width) value = image.at(x + d, y);
          const int32_t left = y * width + x - d;
          if (value == 0 && left >= 0) value = image.pixels[static_cast<std::size_t>(left)];
          if (value == 0 && y + d < height) value = image.at(x, y + d);
          if (value == 0 && y - d > 0) value = image.at(x, y - d);
        }
        expected.at(x, y) = value;
      }
    }
    TestImage result(width, height, 7);
    NuvFillHolesByNearNeighbor(image.data(), mask.data(), width, height, max_distance, result.data());
    EXPECT_EQ(result, expected);
  }
}

}  // namespace
