#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(CrossPoints, AreCountedBeforeAnyPixelChanges) {
  TestImage plus = draw({".......", "...#...", "...#...", ".#####.", "...#...", "...#...", "......."});
  NuvEdgeDeleteNoiseAndCrossPoints(plus.data(), 7, 7, 2);
  EXPECT_EQ(plus, draw({".......", "...#...", ".......", ".#...#.", ".......", "...#...", "......."}))
      << "pixels beside the centre have more than two neighbours";
  TestImage border = draw({"###", "###", "###"});
  border.at(1, 1) = 128;
  NuvEdgeDeleteNoiseAndCrossPoints(border.data(), 3, 3, 8);
  EXPECT_EQ(border, TestImage(3, 3)) << "a pixel of 128 is always deleted";
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

TEST(TwoEdgePoints, PerColumn) {
  TestImage image = draw({"9..", "5.7", "...", "3.7", "4.9", "9.."});
  int32_t first[3] = {-7, -7, -7};
  int32_t second[3] = {-7, -7, -7};
  NuvExtractTwoEdgePointPerCol(image.data(), 3, 2, 0, 1, 0, 5, first, second);
  EXPECT_THAT(first, ElementsAre(1, 0, 0)) << "an empty column and one outside give 0";
  EXPECT_THAT(second, ElementsAre(4, 0, 0));
  NuvExtractTwoEdgePointPerCol(image.data(), 3, 9, 0, 2, 0, 5, first, second);
  EXPECT_THAT(first, ElementsAre(1, 0, 4));
  EXPECT_THAT(second, ElementsAre(1, 0, 4)) << "no second pixel is far enough from the first";
}

TEST(EdgePointsInRect, NeedMoreThanTenPixelsBetween) {
  TestImage image(40, 3);
  image.at(5, 0) = 9;
  image.at(15, 0) = 8;
  image.at(5, 1) = 9;
  image.at(16, 1) = 8;
  std::vector<int32_t> left(3, -7);
  std::vector<int32_t> right(3, -7);
  std::vector<int32_t> top(40, -7);
  std::vector<int32_t> bottom(40, -7);
  bottom[2] = 33;
  NuvExtractEdgePointInRect(image.data(), 40, 0, 0, 39, 2, left.data(), right.data(), top.data(),
                            bottom.data());
  EXPECT_THAT(left, ElementsAre(5, 5, 33)) << "a row of zeros receives the entry of pBottom";
  EXPECT_THAT(right, ElementsAre(5, 16, -1));
  EXPECT_EQ(top[5], 0);
  EXPECT_EQ(top[6], -1);
}

TEST(EdgePointsInCircle, AreFoundPerRowAndColumn) {
  TestImage image(41, 41);
  image.at(8, 20) = image.at(33, 20) = 9;
  image.at(1, 14) = 9;  // outside the ellipse
  std::vector<int32_t> left(41, -7), right(41, -7), top(41, -7), bottom(41, -7);
  NuvExtractEdgePointInCircle(image.data(), 41, 20, 20, 15, 15, left.data(), right.data(), top.data(),
                              bottom.data());
  EXPECT_TRUE(left[20] == 8 && right[20] == 33 && top[8] == 20);
  EXPECT_EQ(right[14], -1);
  EXPECT_EQ(right[4], -7) << "above the ellipse";
}

TEST(ThresholdByEdge, CountsVotesAroundEdges) {
  TestImage gray(10, 10, 50);
  TestImage edges(10, 10);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 0), 0);
  edges.at(4, 5) = 1;
  gray.at(5, 5) = 60;  // a sample
  gray.at(4, 6) = 90;  // not a sample
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 0), 50);
  gray.at(4, 5) = 55;
  edges.at(5, 5) = 1;
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 1), 50);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 0, 9, 0, 9, 2), 60);
  EXPECT_EQ(NuvGetThresholdByEdge(gray.data(), edges.data(), 10, 4, 9, 0, 9, 2), 60)
      << "the edge pixel in column x1 does not vote";
}

TEST(LocalRange, EqualsThePlainWindows) {
  Random random(36);
  for (int round = 0; round < 300; ++round) {
    const int32_t width = random.between(1, 60);
    const int32_t height = random.between(1, 20);
    const int32_t m = random.between(0, 9);
    const int32_t n = random.between(0, 9);
    TestImage source = random.gray(width, height);
    TestImage expected(width, height);
    std::array<int32_t, 256> bins{};
    for (int32_t y = 0; y < height; ++y) {
      const int32_t top = std::max(y - n, 0);
      const int32_t bottom = std::min(top + 2 * n, height - 1);
      for (int32_t x = 0; x < width; ++x) {
        const int32_t left = x < m ? x : x >= width - m - 1 ? x - 2 * m : x - m;
        std::vector<uint8_t> window;
        for (int32_t wy = top; wy <= bottom; ++wy) {
          for (int32_t wx = std::max(left, 0); wx <= std::min(left + 2 * m, width - 1); ++wx) {
            window.push_back(source.at(wx, wy));
          }
        }
        const auto [least, most] = std::minmax_element(window.begin(), window.end());
        expected.at(x, y) = static_cast<uint8_t>(*most - *least);
        ++bins[expected.at(x, y)];
      }
    }
    TestImage result(width, height);
    std::array<int32_t, 256> histogram;
    ASSERT_TRUE(NuvEdgeTripeDetection(source.data(), width, height, m, n, result.data(), histogram.data()));
    ASSERT_EQ(result, expected) << m << ' ' << n;
    ASSERT_EQ(histogram, bins);
  }
}

}  // namespace
