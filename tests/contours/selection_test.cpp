#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

// A ring of 5 by 5, and a square of 3 by 3 with a lone pixel beside it.
TestImage scene() {
  return draw({"..............", ".#####..###...", ".#...#..###...", ".#...#..###.#.", ".#...#........",
               ".#####........", ".............."});
}

struct Buffers {
  TestImage image;
  std::vector<uint8_t> codes;
  TestImage result;

  explicit Buffers(const TestImage& source)
      : image(source), codes(source.pixels.size()), result(source.width, source.height) {}
};

TEST(MarkContours, ShowsRimsAlone) {
  Random random(73);
  for (int round = 0; round < 100; ++round) {
    TestImage image = random.binary(random.between(1, 40), random.between(1, 40), random.between(5, 95));
    TestImage inner = image;
    for (int32_t y = 0; y < image.height; ++y) {
      for (int32_t x = 0; x < image.width; ++x) {
        if (x == 0 || y == 0 || x == image.width - 1 || y == image.height - 1) inner.at(x, y) = 0;
      }
    }
    // A rim pixel has a direct neighbour in the background.
    TestImage expected(image.width, image.height);
    for (int32_t y = 1; y < image.height - 1; ++y) {
      for (int32_t x = 1; x < image.width - 1; ++x) {
        bool rim = false;
        for (int d = 0; d < 8; d += 2) rim |= inner.at(x + kStepX[d], y + kStepY[d]) == 0;
        expected.at(x, y) = inner.at(x, y) != 0 && rim ? 255 : 0;
      }
    }
    const TestImage before = image;
    TestImage result(image.width, image.height, 7);
    NuvMarkContours(image.data(), image.width, image.height, result.data());
    EXPECT_EQ(result, expected) << image;
    EXPECT_EQ(image, before);
  }
}

TEST(SelectContours, ByPerimeterDrawsEachOnce) {
  Buffers b(scene());
  // The rim of the hole, 8 straight and 4 diagonal steps, and the square; the ring's outline has 16.
  EXPECT_EQ(NuvSelectContoursByPerimeter(b.image.data(), b.codes.data(), 14, 7, 0, 8, 14, b.result.data()),
            2);
  EXPECT_EQ(b.result, draw({"..............", "..###...###...", ".#...#..#.#...", ".#...#..###...",
                            ".#...#........", "..###.........", ".............."}));
  EXPECT_EQ(b.image, scene());
}

TEST(SelectContours, ByAreaDrawsAgainAtEveryPair) {
  TestImage traced = draw({"......", ".###..", ".###..", ".###..", "......"});
  Buffers b(traced);
  const int32_t count =
      NuvSelectContoursByArea(b.image.data(), b.codes.data(), 6, 5, 1, 8, 8, b.result.data());
  // Of the one contour, the first pair included: every pair that its marks leave.
  trace(traced, 1, 1, true);
  int32_t pairs = 0;
  for (int32_t y = 1; y < 5; ++y) {
    for (int32_t x = 1; x < 6; ++x) pairs += traced.at(x, y) != traced.at(x - 1, y) ? 1 : 0;
  }
  EXPECT_EQ(count, pairs);
  EXPECT_EQ(b.result.at(1, 1), 255);
}

TEST(RemoveRegions, GoesByTheEnclosedPixels) {
  const TestImage without_square =
      draw({"..............", ".#####........", ".#...#........", ".#...#......#.", ".#...#........",
            ".#####........", ".............."});
  const TestImage without_hole = draw({"..............", ".#####..###...", ".#####..###...", ".#####..###.#.",
                                       ".#####........", ".#####........", ".............."});
  struct Case {
    int32_t min, max, white, black;
    TestImage white_result, black_result;
  };
  for (const Case& c : {Case{9, 9, 1, 1, without_square, without_hole}, Case{10, 24, 0, 0, scene(), scene()},
                        Case{0, 0, 1, 0, scene(), scene()}}) {
    Buffers b(scene());
    EXPECT_EQ(
        NuvRemoveWhiteRegionsByArea(b.image.data(), b.codes.data(), 14, 7, c.min, c.max, b.result.data()),
        c.white);
    EXPECT_EQ(b.result, c.white_result);
    EXPECT_EQ(
        NuvRemoveBlackRegionsByArea(b.image.data(), b.codes.data(), 14, 7, c.min, c.max, b.result.data()),
        c.black);
    EXPECT_EQ(b.result, c.black_result);
    EXPECT_EQ(b.image, scene());
  }
}

TEST(LargestRegions, LeaveOutTheNth) {
  for (const auto& [n, painted] : {std::pair{0, 0}, {1, 0}, {2, 1}, {3, 2}, {1000000000, 2}}) {
    Buffers b(scene());
    EXPECT_EQ(Nuv255NRegionsWithMaxArea(b.image.data(), 14, 7, n, 4, b.result.data()), painted) << n;
    EXPECT_EQ(NuvPixelsInGryImg(b.result.data(), 14, 7, 255), painted == 0 ? 0 : painted == 1 ? 16 : 25);
  }
}

TEST(LargestHole, IsDrawn) {
  Buffers b(scene());
  EXPECT_EQ(NuvMarkMaxAreaHoleContour(b.image.data(), b.codes.data(), 14, 7, 99), 9);
  EXPECT_EQ(NuvPixelsInGryImg(b.image.data(), 14, 7, 99), 12);
  Buffers none(TestImage(5, 5));
  EXPECT_EQ(NuvMarkMaxAreaHoleContour(none.image.data(), none.codes.data(), 5, 5, 99), 0);
  EXPECT_EQ(none.image.at(0, 0), 99);
  // Around the image is background; and more codes than the buffer holds do not matter.
  Random random(74);
  for (int round = 0; round < 60; ++round) {
    TestImage image = random.binary(random.between(3, 30), random.between(3, 30), random.between(30, 70));
    TestImage framed(image.width + 2, image.height + 2);
    for (int32_t y = 0; y < image.height; ++y)
      std::copy_n(&image.at(0, y), image.width, &framed.at(1, y + 1));
    int32_t largest = 0;
    for (const TracedChain& chain : trace_all(framed)) {
      if (!chain.is_outer) largest = std::max(largest, real_measure(chain).area);
    }
    Buffers b(image);
    EXPECT_EQ(NuvMarkMaxAreaHoleContour(b.image.data(), b.codes.data(), image.width, image.height, 99),
              largest);
  }
}

TEST(DeleteShortContour, TakesStartPixelsOfOthersToo) {
  Buffers b(draw({"........", ".####...", ".####...", ".####...", "........"}));
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, 4, b.result.data());
  EXPECT_EQ(b.result, draw({"........", "..###...", ".####...", ".####...", "........"}));
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, -1, b.result.data());
  EXPECT_EQ(b.result, b.image);
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, 100, b.result.data());
  EXPECT_EQ(b.result, draw({"........", "........", "..##....", "........", "........"}));
}

TEST(Squares, AreFoundByShapeAndTheBestPlaceIsNotKept) {
  TestImage image(60, 30);
  const auto fill = [&image](int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
    for (int32_t y = y1; y <= y2; ++y) std::fill(&image.at(x1, y), &image.at(x2, y) + 1, uint8_t{255});
  };
  fill(3, 13, 3, 13);
  fill(20, 40, 3, 8);
  fill(45, 55, 10, 20);
  const auto centres = [&](int32_t n) {
    Buffers b(image);
    std::vector<int32_t> x(3, -1), y(3, -1);
    std::vector<double> error(3);
    const int32_t found = NuvGetNSquaresCenter(b.image.data(), b.codes.data(), 60, 30, 2, true, 0.1, x.data(),
                                               y.data(), error.data(), n);
    EXPECT_EQ(found, std::min(n, 2));
    return x;
  };
  EXPECT_THAT(centres(3), ElementsAre(8, 50, -1));
  EXPECT_THAT(centres(1), ElementsAre(50, -1, -1));
}

TEST(ContourMean, CountsTheStartTwice) {
  TestImage image(5, 5, 100);
  uint8_t square[] = {6, 0, 2, 4};
  EXPECT_EQ(NuvContourGryAvr(image.data(), 5, 1, 1, square, 4), 125.0);
  EXPECT_EQ(NuvContourGryAvr(image.data(), 5, 1, 1, square, 0), 100.0);
}

}  // namespace
