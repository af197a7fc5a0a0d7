#include <gtest/gtest.h>

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

}  // namespace
