#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"
#include "images.h"

namespace {

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

TEST(EdgeModel, TakesWindowsOfAnyWidth) {
  // A window of 2M + 1 pixels. In so wide an image the result holds the edges on entry.
  constexpr int32_t kWidth = 8194;
  for (int32_t half_size : {4096, 4097, std::numeric_limits<int32_t>::max()}) {
    TestImage image(kWidth, 1);
    image.at(8193, 0) = 100;
    TestImage marks(kWidth, 1);
    marks.at(0, 0) = 255;
    Bins h;
    NuvEdgeModelHistogram(image.data(), kWidth, 1, half_size, 50, h.data(), marks.data());
    EXPECT_EQ(h[100], half_size == 4096 ? 1 : 0) << half_size;
  }
}

}  // namespace
