#include <gtest/gtest.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"
#include "images.h"

namespace {

TEST(HistogramCapture, CountsTheSelectedPixels) {
  TestImage image = draw({"1234", "5678", "1234"});
  TestImage mask = draw({"####", "#..1", "#1.#"});
  Bins got;
  NuvGetHistogramInRect(image.data(), 4, 1, 2, 1, 2, got.data());
  EXPECT_EQ(got, bins({{2, 1}, {3, 1}, {6, 1}, {7, 1}}));
  NuvGetHistogramByMasked(image.data(), mask.data(), 4, 1, 3, 1, 2, got.data());
  EXPECT_EQ(got, bins({{2, 1}, {4, 1}, {8, 1}}));
  int32_t left[] = {0, 1, 2};
  int32_t right[] = {4, 3, 2};
  NuvGetHistogramByLimited(image.data(), 4, 1, 2, left, right, got.data());
  EXPECT_EQ(got, bins({{6, 1}, {7, 1}})) << "the right limit is exclusive";
  NuvGetHistogramInRect(image.data(), 4, 2, 1, 0, 0, got.data());
  EXPECT_EQ(got, Bins{});
}

TEST(HistogramMoments, OfTwoValues) {
  Bins h = bins({{10, 3}, {20, 1}});
  double avr = 0;
  double dev = 0;
  double dif = 0;
  EXPECT_EQ(NuvGetImageAvrAndDev(h.data(), &avr, &dev), 4);
  EXPECT_EQ(avr, 12.5);
  EXPECT_EQ(dev, std::sqrt(75.0 / 4));
  EXPECT_EQ(NuvGetImageAvrAndDevFast(h.data(), &avr, &dev), 4);
  EXPECT_EQ(avr, 12.5);
  EXPECT_EQ(dev, std::sqrt(700.0 / 4 - 12.5 * 12.5));
  EXPECT_EQ(NuvGetImageAvrAndDevAndDif(h.data(), &avr, &dev, &dif), 4);
  EXPECT_EQ(dif, (3 * 2.5 + 7.5) / 4);
  int32_t whole_avr = 0;
  int32_t whole_dif = 0;
  NuvGetImageAvrAndDif(h.data(), &whole_avr, &whole_dif);
  EXPECT_EQ(whole_avr, 12);
  EXPECT_EQ(whole_dif, (3 * 2 + 8) / 4);
}

TEST(HistogramMoments, FormsOverflowWhereTheyAreDefinedTo) {
  double avr = 0;
  double dev = 0;
  // 255 * 255 * 33,026 exceeds 2^31 - 1 by 32,003.
  Bins h = bins({{255, 33026}});
  NuvGetImageAvrAndDevFast(h.data(), &avr, &dev);
  EXPECT_TRUE(std::isnan(dev));
  h = bins({{255, 33025}});
  NuvGetImageAvrAndDevFast(h.data(), &avr, &dev);
  EXPECT_EQ(dev, 0);
  // 255 * 8,421,505 wraps, because the product has 32 bits although the sum is floating.
  h = bins({{255, 8421505}});
  NuvGetImageAvrAndDev(h.data(), &avr, &dev);
  EXPECT_EQ(avr, -2147483521.0 / 8421505);
}

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
