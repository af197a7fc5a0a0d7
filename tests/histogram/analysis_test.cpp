#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

Bins run_of(int32_t first, int32_t last, int32_t count) {
  Bins h{};
  std::fill(h.begin() + first, h.begin() + last + 1, count);
  return h;
}

TEST(GaussianSmooth, KeepsTheEndsAndAmplifiesTheMiddle) {
  Bins h = run_of(0, 255, 100);
  Bins smoothed;
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 255);
  EXPECT_THAT(std::vector<int32_t>(&smoothed[250], &smoothed[0] + 256),
              ElementsAre(142, 142, 142, 100, 100, 100));
  h = bins({});
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 0);
  EXPECT_THAT(smoothed, Each(0));
  h = bins({{100, 1000}});
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 0);
  // K = 1024, 621, 139. Bin 100 is the whole middle of the stretch, and bin 99 belongs to its lower end.
  EXPECT_EQ(smoothed[100], 1000 * 1024 / (1024 + 621 + 139));
  EXPECT_EQ(smoothed[99], 621 * 1000 / (1024 + 2 * (621 + 139)));
  EXPECT_EQ(smoothed[96], 0);
}

TEST(PeaksAndValleys, AreMarkedAtTheLastRiseOrFlat) {
  const std::pair<std::vector<int32_t>, std::vector<int32_t>> cases[] = {
      {{1, 5, 2}, {-1, -100, 100}},
      {{3, 3, 5, 5, 5, 2, 4}, {0, 0, 1, 100, 0, -100, 100}},
      {{4}, {0}},
  };
  for (auto [data, expected] : cases) {
    std::vector<int32_t> marks(data.size());
    NuvSetPeakTo100ValleyTo_100(data.data(), static_cast<int32_t>(data.size()), marks.data());
    EXPECT_THAT(marks, ElementsAreArray(expected));
  }
}

TEST(TwoPeaks, AreFarEnoughApartOrEqual) {
  Bins h = bins({{0, 1}, {1, 1}, {39, 2}, {40, 9}, {41, 3}, {60, 7}, {200, 5}});
  int32_t first = -1;
  int32_t second = -1;
  NuvFindTwoPeaks(h.data(), 30, &first, &second);
  EXPECT_EQ(first, 40);
  EXPECT_EQ(second, 200);
  NuvFindTwoPeaks(h.data(), 10, &first, &second);
  EXPECT_EQ(second, 60);
  NuvFindTwoPeaks(h.data(), 250, &first, &second);
  EXPECT_EQ(second, first);
}

TEST(Equalising, SpreadsValuesByTheirCounts) {
  const struct {
    std::vector<uint8_t> pixels, fast, standard;
  } cases[] = {
      {{10, 20, 20, 30, 30, 30}, {42, 127, 127, 255, 255, 255}, {0, 42, 42, 127, 127, 127}},
      {{10, 10, 20, 30}, {127, 127, 191, 255}, {42, 42, 172, 172}},  // spans 2..-10 and -10..2: -340
      {{80, 80}, {255, 255}, {0, 0}},
  };
  for (const auto& c : cases) {
    const auto count = static_cast<int32_t>(c.pixels.size());
    std::vector<uint8_t> pixels = c.pixels;
    NuvHistogramEqualizeFast(pixels.data(), count, 1);
    EXPECT_EQ(pixels, c.fast);
    pixels = c.pixels;
    NuvHistogramEqualizeStandard(pixels.data(), count, 1);
    EXPECT_EQ(pixels, c.standard);
  }
}

TEST(Normalization, MapsToTheCentreOfTheTargetBins) {
  const std::pair<Bins, std::vector<uint8_t>> cases[] = {
      {bins({{100, 2}, {150, 1}, {200, 1}}), {124, 124, 174, 200}},  // spans 100..149, 150..199 and 200
      {bins({}), {10, 10, 20, 30}},
      {bins({{9, 1}}), {132, 132, 246, 0}},  // spans 9..255, -10..-10 and -10..9
      {bins({{9, 1000}}), {9, 9, 9, 9}},     // holds more pixels than the image
  };
  for (auto [target, expected] : cases) {
    std::vector<uint8_t> pixels = {10, 10, 20, 30};
    NuvHistogramNormalization(pixels.data(), 4, 1, target.data());
    EXPECT_EQ(pixels, expected);
  }
}

TEST(HighContrast, NeedsTwoPeaksAndADeepValley) {
  Bins h{};
  for (int i = -10; i <= 10; ++i)
    h[static_cast<std::size_t>(60 + i)] = h[static_cast<std::size_t>(190 + i)] = 110 - 10 * std::abs(i);
  int32_t left = -1;
  int32_t right = -1;
  double contrast = -1;
  EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 120, 1, 50, 2.0, &left, &right, &contrast));
  EXPECT_EQ(left, 60);
  EXPECT_EQ(right, 190);
  EXPECT_GT(contrast, 5);
  EXPECT_FALSE(NuvIsHighContrastImg(h.data(), 120, 1, 131, 2.0, &left, &right, &contrast));
  EXPECT_EQ(contrast, 0);

  // A window longer than the histogram smooths nothing. The contrast is (0.5*(3 + 5)*119 - 8) / 8.
  h = bins({{10, 3}, {128, 5}});
  for (int32_t M : {256, INT32_MAX}) {
    EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 100, M, 50, 2.0, &left, &right, &contrast));
    EXPECT_EQ(left, 10);
    EXPECT_EQ(right, 128);
    EXPECT_EQ(contrast, 58.5);
  }
  h = bins({{128, 5}});
  EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 100, 256, 50, 2.0, &left, &right, &contrast));
  EXPECT_EQ(left, 256 - 257);
  EXPECT_EQ(contrast, (0.5 * (0 + 5) * 130 - 5) / 5);
}

TEST(EdgeModel, TakesTheTwoSidesOfAnEdge) {
  TestImage image(40, 6);
  for (int32_t i = 0; i < 40 * 6; ++i) image.at(i % 40, i / 40) = i % 40 < 20 ? 200 : 60;
  TestImage marks(40, 6);
  Bins h;
  NuvEdgeModelHistogram(image.data(), 40, 6, 2, 50, h.data(), marks.data());
  EXPECT_GT(h[200], 0);
  EXPECT_EQ(h[200], h[60]) << "samples come in pairs";
  EXPECT_EQ(std::accumulate(h.begin(), h.end(), 0), h[200] + h[60]);
  EXPECT_EQ(marks.at(18, 3), 201) << "one end of the edge";
  // A rising edge gives at most one sample on each side of its middle.
  for (int32_t y = 0; y < 6; ++y) std::reverse(&image.at(0, y), &image.at(39, y) + 1);
  NuvEdgeModelHistogram(image.data(), 40, 6, 2, 50, h.data(), marks.data());
  EXPECT_EQ(h[200] + h[60], 2 * 6);
}

TEST(MainGrayLevels, AreDenserWhereTheHistogramHasPixels) {
  Bins h = run_of(0, 9, 1);
  std::fill(h.begin() + 200, h.begin() + 210, 1);
  std::vector<int32_t> table(256 + 16, -7);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 2, 16, table.data()), 16);
  const std::pair<std::size_t, int32_t> expected[] = {{0, 0},    {9, 4},    {10, 5},   {48, 6},  {199, 9},
                                                      {200, 10}, {209, 14}, {210, 15}, {255, 15}};
  for (const auto& [level, number] : expected) EXPECT_EQ(table[level], number) << level;
  EXPECT_EQ(table[256], -7);

  h = run_of(0, 255, 1);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 2, 16, table.data()), 16);
  for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(table[i], static_cast<int32_t>(i) / 16);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 0, 16, table.data()), 0);
}

}  // namespace
