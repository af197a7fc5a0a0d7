#include <gtest/gtest.h>

#include <algorithm>
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

}  // namespace
