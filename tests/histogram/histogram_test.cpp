#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"
#include "images.h"

namespace {

template <class Test>
Bins plain_histogram(const TestImage& image, Test counts_pixel) {
  Bins h{};
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) {
      if (counts_pixel(x, y)) ++h[image.at(x, y)];
    }
  }
  return h;
}

TEST(HistogramCapture, CountsTheSelectedPixels) {
  Random random(2);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    TestImage mask = random.binary(width, height, 50);
    Bins got;
    NuvGetHistogram(image.data(), width, height, got.data());
    EXPECT_EQ(got, plain_histogram(image, [](int32_t, int32_t) { return true; }));

    const int32_t x1 = random.between(0, width - 1);
    const int32_t x2 = random.between(0, width - 1);
    const int32_t y1 = random.between(0, height - 1);
    const int32_t y2 = random.between(0, height - 1);
    const auto inside = [=](int32_t x, int32_t y) { return x >= x1 && x <= x2 && y >= y1 && y <= y2; };
    NuvGetHistogramInRect(image.data(), width, x1, x2, y1, y2, got.data());
    EXPECT_EQ(got, plain_histogram(image, inside));
    NuvGetHistogramByMasked(image.data(), mask.data(), width, x1, x2, y1, y2, got.data());
    EXPECT_EQ(got,
              plain_histogram(image, [&](int32_t x, int32_t y) { return inside(x, y) && mask.at(x, y); }));

    std::vector<int32_t> left(static_cast<std::size_t>(height));
    std::vector<int32_t> right(left.size());
    for (auto& l : left) l = random.between(0, width);
    for (auto& r : right) r = random.between(0, width);
    NuvGetHistogramByLimited(image.data(), width, y1, y2, left.data(), right.data(), got.data());
    EXPECT_EQ(got, plain_histogram(image, [&](int32_t x, int32_t y) {
                const auto row = static_cast<std::size_t>(y);
                return y >= y1 && y <= y2 && x >= left[row] && x < right[row];
              }));
  }
}

TEST(HistogramCapture, OfAnEmptyRectangleReadsNothing) {
  TestImage image(10, 1);
  for (int32_t x2 : {1, INT32_MIN}) {
    Bins got = bins({{3, 3}});
    NuvGetHistogramInRect(image.data(), 10, 2, x2, 0, 0, got.data());
    EXPECT_EQ(got, Bins{});
  }
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

TEST(HistogramMoments, OfAnEmptyHistogramLeaveWhatEachFormLeaves) {
  Bins h{};
  double avr = 7;
  double dev = 8;
  double dif = 9;
  EXPECT_EQ(NuvGetImageAvrAndDevAndDif(h.data(), &avr, &dev, &dif), 0);
  EXPECT_EQ(avr, 8);
  EXPECT_EQ(dev, 8);
  EXPECT_EQ(dif, 9);
  avr = 7;
  EXPECT_EQ(NuvGetImageAvrAndDevFast(h.data(), &avr, &dev), 0);
  EXPECT_EQ(avr, 7);
  EXPECT_EQ(dev, 0);
  dev = 8;
  EXPECT_EQ(NuvGetImageAvrAndDev(h.data(), &avr, &dev), 0);
  EXPECT_EQ(avr, 0);
  EXPECT_EQ(dev, 0);
}

TEST(HistogramMoments, FormsOverflowWhereTheyAreDefinedTo) {
  double avr = 0;
  double dev = 0;
  // 255 * 255 * 33,026 is 32,003 beyond 2^31 - 1.
  Bins h = bins({{255, 33026}});
  NuvGetImageAvrAndDevFast(h.data(), &avr, &dev);
  EXPECT_TRUE(std::isnan(dev));
  h = bins({{255, 33025}});
  NuvGetImageAvrAndDevFast(h.data(), &avr, &dev);
  EXPECT_EQ(dev, 0);
  // 255 * 8,421,505 wraps; the product is formed in 32 bits also where the sum is floating.
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
      {bins({{3, 10}, {7, 10}}), 4, 3, 7, 4},
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
  Bins h = bins({{10, 5}, {20, 90}, {30, 5}});
  EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), 0.0499), 10);
  EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), 0.05), 20) << "5 does not exceed 5";
  EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), 0.0499), 30);
  EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), 0.05), 20);
  EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), 1.0), 256);
  EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), 1.0), -1);
  EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), -0.5), 0);
  EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), -0.5), 255);
  h = bins({{0, 5}, {255, 5}});
  for (double ratio : {-3e8, -1e300, 1e300, std::nan("")}) {
    EXPECT_EQ(NuvGetMinValueInHistogram(h.data(), ratio), 0) << ratio;
    EXPECT_EQ(NuvGetMaxValueInHistogram(h.data(), ratio), 255) << ratio;
  }
}

}  // namespace
