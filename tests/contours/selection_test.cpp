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

TEST(MarkContours, ShowsPixelsBesideTheBackground) {
  TestImage image = draw({"###......", "####.###.", ".###.###.", ".....###.", "..#......", "........."});
  const TestImage before = image;
  TestImage result(9, 6, 7);
  NuvMarkContours(image.data(), 9, 6, result.data());
  EXPECT_EQ(result, draw({".........", ".###.###.", ".###.#.#.", ".....###.", "..#......", "........."}));
  EXPECT_EQ(image, before);
}

TEST(SelectContours, ByPerimeterDrawsEachOnce) {
  Buffers b(scene());
  // Two contours are in the range: the rim of the hole, of 8 straight and 4 diagonal steps, and the square.
  // The outline of the ring has 16.
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
  // The one contour is drawn at the first pair and at every pair that its marks leave.
  trace(traced, 1, 1, true);
  int32_t pairs = 0;
  for (int32_t y = 1; y < 5; ++y) {
    for (int32_t x = 1; x < 6; ++x) pairs += traced.at(x, y) != traced.at(x - 1, y) ? 1 : 0;
  }
  EXPECT_EQ(count, pairs);
  EXPECT_EQ(b.result.at(1, 1), 255);
}

// pixel(x, y) is the picture from (2, 1) on, where its one contour starts.
template <class Pixel>
void expect_long_chain_from_every_pair(int32_t width, Pixel pixel) {
  constexpr int32_t kHeight = 90;
  TestImage picture(width, kHeight);
  for (int32_t y = 1; y < kHeight - 1; ++y) {
    for (int32_t x = 2; x < width - 1; ++x) picture.at(x, y) = static_cast<uint8_t>(pixel(x, y));
  }
  Buffers b(picture);
  const int32_t count = NuvSelectContoursByArea(b.image.data(), b.codes.data(), width, kHeight, 1, 1,
                                                width * kHeight, b.result.data());

  TestImage traced = picture;
  std::vector<uint8_t> codes(picture.pixels.size());
  const int32_t n = NuvTraceContour(traced.data(), width, 2, 1, codes.data(), width * kHeight, true);
  TestImage plain(width, kHeight);
  int32_t pairs = 0;
  const auto stamp = [&](int32_t x, int32_t y) {
    ++pairs;
    for (int32_t i = 0;; ++i) {
      if (x >= 0 && x < width && y >= 0 && y < kHeight) plain.at(x, y) = 255;
      if (i == n) return;
      constexpr int32_t kDx[8] = {1, 1, 0, -1, -1, -1, 0, 1};
      constexpr int32_t kDy[8] = {0, -1, -1, -1, 0, 1, 1, 1};
      x += kDx[codes[static_cast<std::size_t>(i)]];
      y += kDy[codes[static_cast<std::size_t>(i)]];
    }
  };
  stamp(2, 1);
  for (int32_t y = 1; y < kHeight; ++y) {
    for (int32_t x = y == 1 ? 3 : 1; x < width; ++x) {
      if (traced.at(x, y) != traced.at(x - 1, y)) stamp(traced.at(x, y) == 255 ? x : x - 1, y);
    }
  }
  EXPECT_EQ(count, pairs);
  EXPECT_EQ(b.result, plain);
}

TEST(SelectContours, ByAreaDrawsALongChainFromEveryPair) {
  // A comb gives one chain of thousands of codes, and thousands of pairs. A rectangle gives few pairs. A line gives a
  // chain of one row, and the background below it many pairs.
  expect_long_chain_from_every_pair(121, [](int32_t x, int32_t y) { return x % 4 == 2 || y == 1 ? 255 : 0; });
  expect_long_chain_from_every_pair(121, [](int32_t, int32_t) { return 255; });
  expect_long_chain_from_every_pair(161, [](int32_t x, int32_t y) {
    return y == 1 ? 255 : y == 2 ? 0 : x % 2 * 9;
  });
}

TEST(RemoveRegions, DependsOnTheEnclosedPixels) {
  const auto expect = [](auto remove, int32_t min_area, int32_t max_area, int32_t count,
                         const TestImage& result) {
    Buffers b(scene());
    EXPECT_EQ(remove(b.image.data(), b.codes.data(), 14, 7, min_area, max_area, b.result.data()), count);
    EXPECT_EQ(b.result, result);
    EXPECT_EQ(b.image, scene());
  };
  expect(NuvRemoveWhiteRegionsByArea, 9, 9, 1,
         draw({"..............", ".#####........", ".#...#........", ".#...#......#.", ".#...#........",
               ".#####........", ".............."}));
  expect(NuvRemoveWhiteRegionsByArea, 10, 24, 0, scene());
  expect(NuvRemoveWhiteRegionsByArea, 0, 0, 1, scene());  // the lone pixel stays
  expect(NuvRemoveBlackRegionsByArea, 9, 9, 1,
         draw({"..............", ".#####..###...", ".#####..###...", ".#####..###.#.", ".#####........",
               ".#####........", ".............."}));
  expect(NuvRemoveBlackRegionsByArea, 10, 24, 0, scene());
}

TEST(LargestRegions, ArePaintedIfLargerThanTheNth) {
  for (const auto& [n, painted] : {std::pair{0, 0}, {1, 0}, {2, 1}, {3, 2}, {1000000000, 2}}) {
    Buffers b(scene());
    EXPECT_EQ(Nuv255NRegionsWithMaxArea(b.image.data(), 14, 7, n, 4, b.result.data()), painted) << n;
    EXPECT_EQ(NuvPixelsInGryImg(b.result.data(), 14, 7, 255), painted == 0 ? 0 : painted == 1 ? 16 : 25);
  }
}

TEST(LargestRegions, AreComparedByTheAreaWithHalfThePerimeter) {
  // A row of seven pixels has a perimeter of 12 and a slanted line of six one of 14, so their areas are 6 and 7.
  Buffers b(draw({"................", ".#######.#......", "..........#.....", "...........#....",
                  "............#...", ".............#..", "..............#.", "................"}));
  EXPECT_EQ(Nuv255NRegionsWithMaxArea(b.image.data(), 16, 8, 2, 4, b.result.data()), 1);
  EXPECT_EQ(NuvPixelsInGryImg(b.result.data(), 16, 8, 255), 6);
}

TEST(LargestHole, IsOutlined) {
  Buffers b(scene());
  EXPECT_EQ(NuvMarkMaxAreaHoleContour(b.image.data(), b.codes.data(), 14, 7, 99), 9);
  EXPECT_EQ(NuvPixelsInGryImg(b.image.data(), 14, 7, 99), 12);
  Buffers none(TestImage(5, 5));
  EXPECT_EQ(NuvMarkMaxAreaHoleContour(none.image.data(), none.codes.data(), 5, 5, 99), 0);
  EXPECT_EQ(none.image.at(0, 0), 99);
  // Outside the image is background. The chains have 20 codes, more than the buffer holds.
  Buffers full(draw({"####", "#..#", "#..#", "####"}));
  EXPECT_EQ(NuvMarkMaxAreaHoleContour(full.image.data(), full.codes.data(), 4, 4, 99), 4);
  EXPECT_EQ(NuvPixelsInGryImg(full.image.data(), 4, 4, 99), 8);
}

TEST(DeleteShortContour, ClearsTheStartPixelsOfOtherContoursToo) {
  Buffers b(draw({"........", ".####...", ".####...", ".####...", "........"}));
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, 4, b.result.data());
  EXPECT_EQ(b.result, draw({"........", "..###...", ".####...", ".####...", "........"}));
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, -1, b.result.data());
  EXPECT_EQ(b.result, b.image);
  NuvDeleteShortContour(b.image.data(), b.codes.data(), 8, 5, 100, b.result.data());
  EXPECT_EQ(b.result, draw({"........", "........", "..##....", "........", "........"}));
}

TEST(Squares, AreSelectedByShapeAndReplacedByLaterOnes) {
  TestImage image(60, 30);
  NuvFillGryRect(image.data(), 60, 30, 3, 13, 3, 13, 255);
  NuvFillGryRect(image.data(), 60, 30, 20, 40, 3, 8, 255);
  NuvFillGryRect(image.data(), 60, 30, 45, 55, 10, 20, 255);
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
  for (uint8_t ground : {1, 2}) {
    image = TestImage(60, 30, ground);
    NuvFillGryRect(image.data(), 60, 30, 3, 13, 3, 13, 255);
    Buffers b(image);
    int32_t x, y;
    double error;
    EXPECT_EQ(NuvGetNSquaresCenter(b.image.data(), b.codes.data(), 60, 30, 2, true, 0.1, &x, &y, &error, 1),
              ground == 1 ? 1 : 0);
  }
}

TEST(Squares, ReplaceTheFirstOneOfGreatestError) {
  constexpr int32_t kWidth = 400;
  constexpr int32_t kHeight = 60;
  TestImage image(kWidth, kHeight);
  for (int32_t i = 0; i < 3 * 20; ++i) {
    const int32_t x = 20 * (i % 20) + 2;
    const int32_t y = 20 * (i / 20) + 2;
    NuvFillGryRect(image.data(), kWidth, kHeight, x, x + 7 + i % 3, y, y + 7 + i * 7 % 5, 255);
  }
  struct Squares {
    std::vector<int32_t> x = std::vector<int32_t>(60);
    std::vector<int32_t> y = std::vector<int32_t>(60);
    std::vector<double> error = std::vector<double>(60);
    int32_t found = 0;
  };
  const auto squares = [&](int32_t n) {
    Buffers b(image);
    Squares s;
    s.found = NuvGetNSquaresCenter(b.image.data(), b.codes.data(), kWidth, kHeight, 1, true, 0.9, s.x.data(),
                                   s.y.data(), s.error.data(), n);
    return s;
  };
  const Squares all = squares(60);
  ASSERT_EQ(all.found, 60);
  for (int32_t n : {1, 2, 7, 30}) {
    Squares expected;
    for (std::size_t i = 0; i < 60; ++i) {
      const auto end = expected.error.begin() + n;
      const auto place = i < static_cast<std::size_t>(n) ? expected.error.begin() + static_cast<int32_t>(i)
                                                         : std::max_element(expected.error.begin(), end);
      const auto at = static_cast<std::size_t>(place - expected.error.begin());
      expected.x[at] = all.x[i];
      expected.y[at] = all.y[i];
      expected.error[at] = all.error[i];
    }
    const Squares kept = squares(n);
    EXPECT_EQ(kept.found, n);
    EXPECT_EQ(kept.x, expected.x);
    EXPECT_EQ(kept.y, expected.y);
    EXPECT_EQ(kept.error, expected.error);
  }
}

}  // namespace
