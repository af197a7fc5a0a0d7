#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

TEST(OrderStatistics, OfDrawnHistograms) {
  struct Case {
    Bins h;
    int32_t median, min, max, peak;
  };
  const Case cases[] = {
      {bins({}), 0, 256, -1, 128},
      {bins({{40, 1}}), 41, 40, 40, 41},
      {bins({{40, 5}}), 40, 40, 40, 41},
      {bins({{10, 4}, {11, 4}, {12, 4}, {200, 4}}), 12, 10, 200, 12},
      {bins({{255, 1}}), 256, 255, 255, 256},
      {bins({{254, 2}, {255, 2}}), 255, 254, 255, 255},
  };
  for (Case c : cases) {
    EXPECT_EQ(NuvGetMedianInHistogram(c.h.data()), c.median);
    EXPECT_EQ(NuvGetMinValueInHistogram(c.h.data(), 0), c.min);
    EXPECT_EQ(NuvGetMaxValueInHistogram(c.h.data(), 0), c.max);
    EXPECT_EQ(NuvGetPeakInHistogram(c.h.data()), c.peak);
  }
}

TEST(OrderStatistics, TailsExceedTheTruncatedShare) {
  const std::pair<double, std::pair<int32_t, int32_t>> cases[] = {
      {0.0499, {10, 30}}, {0.05, {20, 20}},  // 5 does not exceed 5
      {1.0, {256, -1}},   {-0.5, {0, 255}}, {-3e8, {0, 255}}, {1e300, {0, 255}}, {std::nan(""), {0, 255}},
  };
  Bins h = bins({{10, 5}, {20, 90}, {30, 5}});
  for (const auto& [ratio, tails] : cases) {
    EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), ratio), tails.first) << ratio;
    EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), ratio), tails.second) << ratio;
  }
}

TEST(OrderStatistics, ModesRanksAndLimits) {
  Bins h = bins({{0, 5}, {7, 9}, {9, 9}});
  int32_t count = 0;
  EXPECT_EQ(NuvGetMostInHistogram(h.data(), &count), 7) << "ties go to the lowest";
  EXPECT_EQ(count, 9);
  Bins order;
  EXPECT_EQ(NuvHistogramOrder(h.data(), order.data()), 3);
  EXPECT_EQ(order[2], 0);
  Bins means;
  NuvHistogramAverageSmooth(h.data(), 1, means.data());
  EXPECT_TRUE(means[0] == 5 / 2 && means[8] == 18 / 3 && means[9] == 3);
  h = bins({{10, 1}, {30, 1}});
  int32_t low = 0;
  int32_t high = 0;
  NuvGetThresholdLimit(h.data(), 1.5, &low, &high);
  EXPECT_TRUE(low == 5 && high == 35);
  NuvGetThresholdLimit(h.data(), 99, &low, &high);
  EXPECT_TRUE(low == 0 && high == 255);
}

}  // namespace
