#include <gmock/gmock.h>

#include <map>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

using testing::ElementsAre;

TEST(Otsu, LeavesOutTheTopBin) {
  const std::pair<std::map<int, int32_t>, int32_t> cases[] = {
      {{}, 0},
      {{{70, 5}, {90, 5}}, 0},
      {{{20, 5}, {90, 5}, {200, 50}}, 20},
      {{{10, 1}, {20, 1}, {30, 1}, {99, 1}}, 10},  // ties go to the first
      {{{20, 50}, {22, 50}, {120, 50}, {122, 50}, {255, 1}}, 22},
  };
  for (const auto& [counts, expected] : cases) {
    Bins h = bins(counts);
    EXPECT_EQ(NuvGetOtsuThreshold(h.data(), 256), expected);
  }
}

TEST(ThresholdByRatio, ReachesTheShareAndBinarisingExceedsIt) {
  Bins h = bins({{10, 90}, {200, 10}});
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0.10), 200) << "10 pixels reach a share of 10";
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0.11), 10);
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 0), 255);
  EXPECT_EQ(NuvGetThresholdByRatio(h.data(), 2), -1);
  std::vector<uint8_t> pixels(90, 10);
  pixels.resize(100, 200);
  EXPECT_EQ(NuvThresholdByRatio(pixels.data(), 10, 10, 0.10), 10) << "10 pixels do not exceed a share of 10";
}

TEST(DifferenceThreshold, IsThreeSigmaOfTheMedian) {
  Bins h = bins({{0, 100}});
  EXPECT_EQ(NuvGetDifImgThreshold(h.data()), 0);
  h = bins({{2, 4}, {6, 10}});
  // Half of 14 is reached in bin 6. The sum exceeds it by 7 of the 10 pixels of that bin: the median is 5.3.
  EXPECT_EQ(NuvGetDifImgThreshold(h.data()), static_cast<int32_t>(5.3 / 0.67 * 3 + 0.5));
}

TEST(DifferenceThreshold, FindsTheFirstValleyWithFilledNeighbours) {
  struct Case {
    std::map<int, int32_t> counts;
    int32_t max, threshold;
  };
  const Case cases[] = {
      {{{1, 9}, {2, 5}, {3, 7}}, 250, 2},         {{{1, 9}, {4, 5}, {5, 5}}, 250, 4},
      {{{0, 9}, {4, 5}, {5, 7}}, 250, 0},          // bin 0 is no neighbour; bin 5 is higher than bin 4
      {{{1, 9}, {4, 5}, {8, 3}, {9, 4}}, 250, 8},  // bin 5 is empty
      {{{1, 9}, {2, 5}, {3, 7}}, 1, 0},
  };
  for (Case c : cases) {
    Bins h = bins(c.counts);
    int32_t threshold = -1;
    EXPECT_EQ(NuvGetDifImgThreshold(h.data(), 0, c.max, &threshold), c.threshold > 0);
    EXPECT_EQ(threshold, c.threshold);
  }
}

TEST(Clusters, KeepTheOrderOfTheirFirstCentres) {
  Bins h = bins({{10, 5}, {12, 5}, {100, 9}, {104, 9}, {200, 1}});
  double centres[4] = {-1, -1, -1, -1};
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 0.001, centres));
  // The centres start at 100 (the most frequent level), 104 and 200. The darkest levels join the first one
  // and move it down.
  EXPECT_NEAR(centres[0], 11, 0.5);
  EXPECT_NEAR(centres[1], 102, 0.5);
  EXPECT_EQ(centres[2], 200);
  EXPECT_EQ(centres[3], -1);
  EXPECT_FALSE(NuvClusterHistogram(h.data(), 1, 0.001, centres));
  h = bins({{77, 3}});
  double few[3] = {-1, -1, -1};
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 0.001, few));
  EXPECT_THAT(few, ElementsAre(77, -1, -1));
  h = bins({{1, 3}, {90, 4}, {200, 7}});
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 2, -1, few))
      << "the search ends although no move is below the limit";
  // From the second pass on the third centre is (212 + 228*p)/(p + 1), which moves by less than eps times
  // itself from p = 264906 on.
  h = bins({{86, 1}, {209, 1}, {212, 1}, {228, 1}});
  EXPECT_TRUE(NuvClusterHistogram(h.data(), 3, 1e-12, few));
  EXPECT_NEAR(few[2], 228 - 16.0 / 264907, 1e-7);
}

}  // namespace
