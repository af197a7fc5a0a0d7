#include <gtest/gtest.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

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

}  // namespace
