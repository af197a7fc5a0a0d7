#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(CrossPoints, AreCountedBeforeAnyPixelChanges) {
  TestImage plus = draw({".......", "...#...", "...#...", ".#####.", "...#...", "...#...", "......."});
  NuvEdgeDeleteNoiseAndCrossPoints(plus.data(), 7, 7, 2);
  EXPECT_EQ(plus, draw({".......", "...#...", ".......", ".#...#.", ".......", "...#...", "......."}))
      << "pixels beside the centre have more than two neighbours";
  TestImage border = draw({"###", "###", "###"});
  border.at(1, 1) = 128;
  NuvEdgeDeleteNoiseAndCrossPoints(border.data(), 3, 3, 8);
  EXPECT_EQ(border, TestImage(3, 3)) << "a pixel of 128 is always deleted";
  for (const int32_t most : {0, -1}) {
    TestImage pair = draw({"......", ".##.#.", "......"});
    NuvEdgeDeleteNoiseAndCrossPoints(pair.data(), 6, 3, most);
    EXPECT_EQ(pair, draw({"......", "....#.", "......"})) << "a pixel without neighbours stays";
  }
}

TEST(ShortContours, AreDeleted) {
  TestImage edges =
      draw({"..........", ".##.......", ".....####.", ".....#..#.", ".....####.", ".........."});
  TestImage expected = edges;
  expected.at(1, 1) = expected.at(2, 1) = 0;
  TestImage result(10, 6, 9);
  NuvEdgeDeleteNoiseByLength(edges.data(), 10, 6, 5, result.data());
  EXPECT_EQ(result, expected);
}

TEST(WeakPoints, AreDeleted) {
  TestImage gray(5, 3);
  for (int32_t y = 0; y < 3; ++y) gray.at(3, y) = gray.at(4, y) = 40;
  TestImage edges(5, 3, 255);
  NuvRemoveEdgePointsByGrd(edges.data(), gray.data(), 5, 3, 40);
  EXPECT_EQ(edges, draw({"#####", "#.###", "#####"})) << "40 is not below 40; the border stays";
}

// The plain form: collects the ends of every window and tests every pair.
void plain_connect(TestImage& e, const TestImage& mask, int32_t gap) {
  for (int32_t y = 1; y < e.height - 1; ++y) {
    for (int32_t x = 1; x < e.width - 1; ++x) {
      int count = -1;
      for (int32_t i = 0; i < 9; ++i) count += e.at(x - 1 + i % 3, y - 1 + i / 3) != 0;
      if (e.at(x, y) != 0 && count < 2) e.at(x, y) = 200;
    }
  }
  const int32_t r = gap / 2 + 1;
  if (r < 1) return;
  for (int32_t y = r; y <= e.height - r - 1; ++y) {
    for (int32_t x = r; x <= e.width - r - 1; ++x) {
      if (mask.at(x, y) == 0 || e.at(x, y) != 0) continue;
      std::vector<std::pair<int32_t, int32_t>> points;
      for (int32_t i = 0; i < 4 * r * r; ++i) {
        const int32_t px = x - r + i % (2 * r);
        const int32_t py = y - r + i / (2 * r);
        if (e.at(px, py) == 200) points.emplace_back(px, py);
      }
      for (const auto& [ax, ay] : points) {
        for (const auto& [bx, by] : points) {
          if (x >= ax && x <= bx && y >= std::min(ay, by) && y <= std::max(ay, by)) e.at(x, y) = 100;
        }
      }
    }
  }
}

TEST(ConnectEdge, EqualsThePlainForm) {
  Random random(35);
  for (int round = 0; round < 400; ++round) {
    const int32_t width = random.between(1, 40);
    const int32_t height = random.between(1, 25);
    TestImage edges = random.binary(width, height, random.between(1, 25));
    for (uint8_t& p : edges.pixels) {
      if (random.between(1, 50) == 1) p = 200;  // ends that the caller has marked
    }
    TestImage mask = random.binary(width, height, 80);
    TestImage expected = edges;
    const int32_t gap = random.between(-5, 9);
    plain_connect(expected, mask, gap);
    NuvConnectEdge(edges.data(), mask.data(), width, height, gap);
    ASSERT_EQ(edges, expected) << gap;
  }
}

TEST(ConnectEdge, UsesAtMostAThousandEndPoints) {
  for (const int32_t ends : {999, 1000}) {
    // That many ends lie above (40, 40) at its right. One more, the last in raster order, lies below at its
    // left.
    TestImage edges(81, 81);
    for (int32_t i = 0; i < ends; ++i) edges.at(41 + i % 35, 8 + i / 35) = 200;
    edges.at(8, 60) = 200;
    TestImage mask(81, 81);
    mask.at(40, 40) = 255;
    NuvConnectEdge(edges.data(), mask.data(), 81, 81, 70);
    EXPECT_EQ(edges.at(40, 40), ends == 999 ? 100 : 0);
  }
}

}  // namespace
