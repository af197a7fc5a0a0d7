#include <gtest/gtest.h>

#include <array>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(PixelsOnAbcLine, CountTheLine) {
  TestImage image = draw({"#...", ".#..", "..1.", "...."});
  const auto expect = [&](double a, double b, double c, int32_t expected_white, int32_t expected_black) {
    int32_t white = 0;
    int32_t black = 0;
    NuvPixlesOnABCLine(image.data(), 4, 4, a, b, c, &white, &black);
    EXPECT_EQ(white, expected_white) << a << ' ' << b << ' ' << c;
    EXPECT_EQ(black, expected_black) << a << ' ' << b << ' ' << c;
  };
  expect(1, -1, 0, 3, 1);
  expect(0, 0, 5, 0, 0);                                      // no line
  for (double x : {-1.4, -0.6, 0.4}) expect(1, 0, -x, 1, 3);  // truncates to column 0
  std::array<int32_t, 256> bins;
  NuvABCLineHistogram(image.data(), 4, 4, 0, 1, -2, bins.data());
  EXPECT_EQ(bins[0], 3);
  EXPECT_EQ(bins[1], 1);
}

TEST(PixelsOn2PLine, CountRunsColumnByColumn) {
  TestImage image(8, 8, 5);
  const struct {
    int32_t x1, y1, x2, y2, visited;
  } cases[] = {
      {2, 2, 2, 2, 1},
      {2, 6, 2, 1, 6},
      {6, 3, 1, 3, 6},
      {2, 2, 5, 5, 6},  // (3, 2), (3, 3), (4, 3) ...
      {5, 5, 2, 2, 6},
      {0, 0, 1, 7, 8},
      {0, 0, 7, 1, 8},
      // The last column ends at row 0.99999994, truncated: (2, 2), (2, 1), (3, 1), (4, 1), (4, 0).
      {4, 1, 1, 2, 5},
  };
  for (const auto& c : cases) {
    int32_t equal = 0;
    int32_t other = 0;
    NuvPixelsOn2PLine(image.data(), 8, c.x1, c.y1, c.x2, c.y2, 5, &equal, &other);
    EXPECT_EQ(equal, c.visited) << c.x1 << ' ' << c.y1;
    EXPECT_EQ(other, 0);
    NuvPixelsOn2PLine(image.data(), 8, c.x1, c.y1, c.x2, c.y2, 5 + 256, &equal, &other);
    EXPECT_EQ(other, c.visited);
  }
}

}  // namespace
