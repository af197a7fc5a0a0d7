#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(Otsu, LeavesTheTopBinOut) {
  const std::pair<std::map<int, int32_t>, int32_t> cases[] = {
      {{}, 0},
      {{{70, 5}}, 0},
      {{{70, 5}, {90, 5}}, 0},
      {{{20, 5}, {90, 5}, {200, 50}}, 20},
      {{{20, 50}, {22, 50}, {120, 50}, {122, 50}, {255, 1}}, 22},
  };
  for (const auto& [counts, expected] : cases) {
    Bins h = bins(counts);
    EXPECT_EQ(NuvGetOtsuThreshold(h.data(), 256), expected);
  }
}

TEST(ThresholdByRatio, ReachesTheShareWhereBinarisingExceedsIt) {
  Bins h = bins({{10, 90}, {200, 10}});
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0.10), 200) << "10 reaches 10";
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0.11), 10);
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0), 255);
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 2), -1);
  std::vector<uint8_t> pixels(90, 10);
  pixels.resize(100, 200);
  EXPECT_EQ(NuvThresholdByRatio(pixels.data(), 10, 10, 0.10), 10) << "10 does not exceed 10";
}

TEST(DifferenceThreshold, IsThreeSigmaOfTheMedian) {
  Bins h = bins({{0, 100}});
  EXPECT_EQ(NuvGetDifImgThreshold(h.data()), 0);
  h = bins({{2, 4}, {6, 10}});
  // Half of 14 is reached in bin 6 with an overshoot of 7 of its 10: the median is 5.3.
  EXPECT_EQ(NuvGetDifImgThreshold(h.data()), static_cast<int32_t>(5.3 / 0.67 * 3 + 0.5));
  h = bins({});
  EXPECT_EQ(NuvGetDifImgThreshold(h.data()), 0);
}

TEST(DifferenceThreshold, FindsTheFirstValleyAndEndsWithoutANeighbour) {
  struct Case {
    std::map<int, int32_t> counts;
    int32_t max, threshold;
  };
  const Case cases[] = {
      {{{1, 9}, {2, 5}, {3, 7}}, 250, 2},         {{{1, 9}, {4, 5}, {5, 5}}, 250, 4},
      {{{0, 9}, {4, 5}, {5, 7}}, 250, 0},          // bin 0 is no neighbour; bin 5 is higher than bin 4
      {{{1, 9}, {4, 5}, {8, 3}, {9, 4}}, 250, 8},  // nothing stands behind 4
      {{{1, 9}, {2, 5}, {3, 7}}, 1, 0},           {{{1, 9}, {2, 5}, {3, 7}}, 0, 0},
  };
  for (Case c : cases) {
    Bins h = bins(c.counts);
    int32_t threshold = -1;
    EXPECT_EQ(NuvGetDifImgThreshold(h.data(), 0, c.max, &threshold), c.threshold > 0);
    EXPECT_EQ(threshold, c.threshold);
  }
}

TEST(Clusters, FindTheirCentresInTheOrderOfTheirStart) {
  Bins h = bins({{10, 5}, {12, 5}, {100, 9}, {104, 9}, {200, 1}});
  double centres[4] = {-1, -1, -1, -1};
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 0.001, centres));
  // They start at 100 (the mode), 104 and 200; the darkest levels join the first at once and carry it off.
  EXPECT_NEAR(centres[0], 11, 0.5);
  EXPECT_NEAR(centres[1], 102, 0.5);
  EXPECT_EQ(centres[2], 200);
  EXPECT_EQ(centres[3], -1);
  EXPECT_FALSE(NuvClusterHistogram(h.data(), 1, 0.001, centres));
  h = bins({{77, 3}});
  double few[3] = {-1, -1, -1};
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 0.001, few));
  EXPECT_THAT(few, ElementsAre(77, -1, -1));
  h = bins({});
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 0.001, few));
  EXPECT_THAT(few, ElementsAre(77, -1, -1));
  h = bins({{1, 3}, {90, 4}, {200, 7}});
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 2, -1, few)) << "ends for a limit that no move keeps";
}

TEST(Threshold, ComparesEveryFormAlike) {
  Random random(21);
  for (const auto& [width, height] : kOddSizes) {
    const TestImage source = random.gray(width, height);
    for (int32_t t : {INT32_MIN, -1, 0, 1, 128, 255, 256, INT32_MAX}) {
      TestImage expected = source;
      for (uint8_t& p : expected.pixels) p = p >= t ? 255 : 0;
      TestImage in_place = source;
      NuvThreshold(in_place.data(), width, height, t);
      ASSERT_EQ(in_place, expected);
      TestImage from = source;
      TestImage into(width, height, 7);
      NuvThreshold(from.data(), width, height, t, into.data());
      ASSERT_EQ(into, expected);
      ASSERT_EQ(from, source);
      TestImage values = source;
      NuvThreshold2V1V2(values.data(), width, height, t, 256 + 3, 9);
      for (std::size_t i = 0; i < values.pixels.size(); ++i) {
        ASSERT_EQ(values.pixels[i], expected.pixels[i] != 0 ? 9 : 3);
      }
      const int32_t x1 = random.between(0, width - 1);
      const int32_t y1 = random.between(0, height - 1);
      const int32_t x2 = random.between(x1 - 1, width - 1);
      const int32_t y2 = random.between(y1 - 1, height - 1);
      TestImage rectangle(width, height, 7);
      NuvThresholdInRect(from.data(), width, x1, x2, y1, y2, t, rectangle.data());
      TestImage rectangle_in_place = source;
      NuvThresholdInRect(rectangle_in_place.data(), width, x1, x2, y1, y2, t);
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          const bool inside = x >= x1 && x <= x2 && y >= y1 && y <= y2;
          ASSERT_EQ(rectangle.at(x, y), inside ? expected.at(x, y) : 7);
          ASSERT_EQ(rectangle_in_place.at(x, y), inside ? expected.at(x, y) : source.at(x, y));
        }
      }
    }
  }
}

TEST(ThresholdAndShrink, PacksMoreThanItTells) {
  TestImage source(10, 10);
  std::iota(source.pixels.begin(), source.pixels.end(), uint8_t{0});
  std::vector<uint8_t> packed(17, 7);
  int32_t width = 0;
  int32_t height = 0;
  NuvThresholdAndShrink(source.data(), 10, 10, 33, 3, packed.data(), &width, &height);
  EXPECT_EQ(width, 3);
  EXPECT_EQ(height, 3);
  EXPECT_THAT(packed, ElementsAre(0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 7));
  std::vector<uint8_t> whole(100);
  NuvThresholdAndShrink(source.data(), 10, 10, 33, 1, whole.data(), &width, &height);
  EXPECT_EQ(width, 10);
  EXPECT_EQ(std::count(whole.begin(), whole.end(), 255), 67);
}

TEST(RatioForms, RaiseAndTellTheirThresholdEachInItsWay) {
  const TestImage black(10, 10);
  TestImage image = black;
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 0.3), 1) << "black is spared";
  EXPECT_EQ(image, black);
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 0.5), 0);
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 7.0), -1) << "clamped to 1";
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  NuvThresholdByPercent(image.data(), 10, 10, 49);
  EXPECT_EQ(image, black);
  NuvThresholdByPercent(image.data(), 10, 10, 50);
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  EXPECT_EQ(NuvThresholdByRatioAndMiniT(image.data(), 10, 10, 0.9, 12), 12);
  EXPECT_EQ(image, black);
  TestImage result(10, 10, 7);
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 2, 5, 2, 5, 0.3, 12, result.data()), 0) << "as found";
  EXPECT_EQ(result.at(3, 3), 0);
  EXPECT_EQ(result.at(1, 3), 7);
}

// A threshold by ratio splits the histogram: at most the share lies above it, and it is the least such one.
TEST(RatioForms, SplitTheHistogram) {
  Random random(22);
  for (int round = 0; round < 100; ++round) {
    TestImage image = random.gray(31, 17);
    const double ratio = random.between(0, 100) / 100.0;
    TestImage result(31, 17);
    const int32_t t = NuvThresholdByRatio(image.data(), 31, 17, ratio, result.data());
    const auto share = static_cast<int64_t>(31 * 17 * ratio);
    const auto from = [&](int32_t level) {
      return std::count_if(image.pixels.begin(), image.pixels.end(), [=](uint8_t p) { return p >= level; });
    };
    EXPECT_LE(from(t + 1), share);
    EXPECT_TRUE(t < 0 || from(t) > share);
    EXPECT_EQ(std::count(result.pixels.begin(), result.pixels.end(), 255), from(t));
  }
}

}  // namespace
