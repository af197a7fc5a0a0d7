#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

// The tagRECT with a given corner and size.
tagRECT rect(int32_t left, int32_t top, int32_t columns, int32_t rows) {
  return {left, top, left + columns - 1, top + rows - 1};
}

TEST(DifferenceInRect, OfEqualSizesLeavesOutTheLastRowAndColumn) {
  Random random(404);
  for (const auto& [width, height] : kOddSizes) {
    TestImage a = random.gray(width, height);
    TestImage b = random.gray(width, height);
    int32_t sum = 0;
    for (int32_t y = 0; y < height - 1; ++y) {
      for (int32_t x = 0; x < width - 1; ++x) sum += std::abs(a.at(x, y) - b.at(x, y));
    }
    const tagRECT whole = rect(0, 0, width, height);
    EXPECT_EQ(NuvImgDifferenceInRect(a.data(), b.data(), false, width, whole, whole),
              sum / std::max((width - 1) * (height - 1), 1));
  }
}

TEST(DifferenceInRect, OfTwoSizesWalksTheRectangleWithFewerRows) {
  TestImage a = draw({"1234", "....", "5678", "...."});
  TestImage b(4, 4, 9);
  const auto of = [&](tagRECT r1, tagRECT r2) {
    const int32_t result = NuvImgDifferenceInRect(a.data(), b.data(), false, 4, r1, r2);
    EXPECT_EQ(NuvImgDifferenceInRect(b.data(), a.data(), false, 4, r2, r1), result);
    return result;
  };
  // Rows 0 and 2 of the other rectangle are read; each of its columns twice, or every second column.
  EXPECT_EQ(of(rect(0, 0, 2, 4), rect(0, 0, 4, 2)), (8 + 8 + 7 + 7 + 4 + 4 + 3 + 3) / 8);
  EXPECT_EQ(of(rect(0, 0, 4, 4), rect(0, 0, 2, 2)), (8 + 6 + 4 + 2) / 4);
  // If the numbers of rows are equal, the first rectangle is walked.
  EXPECT_EQ(NuvImgDifferenceInRect(b.data(), a.data(), false, 4, rect(0, 0, 2, 1), rect(0, 0, 4, 1)),
            (8 + 6) / 2);
}

TEST(CenterBlock, IsComparedWithItsRing) {
  TestImage image = draw({"99999", "91119", "91#19", "91119", "99999"});
  const auto of = [&](int32_t margin) {
    return NuvCenterBlockMeanDif(image.data(), 5, 5, 2, 2, 2, 2, margin);
  };
  EXPECT_EQ(of(0), 0);
  EXPECT_EQ(of(1), 255 - 1);
  EXPECT_EQ(of(2), 255 - (8 * 1 + 16 * 9) / 24);
  EXPECT_EQ(of(3), of(2));
}

TEST(RectangleStatistics, MeanRangeAndBox) {
  TestImage image = draw({"12345", "67899", "....."});
  EXPECT_EQ(NuvGryRectAvr(image.data(), 5, 3, 1, 3, 0, 1), (2 + 3 + 4 + 7 + 8 + 9) / 6);
  EXPECT_EQ(NuvGryRectAvr(image.data(), 5, 3, 3, 1, 0, 1), 0);
  const auto range = [&](double ratio) {
    std::pair<int32_t, int32_t> limits;
    NuvGryMinMaxInRect(image.data(), 5, 0, 4, 0, 1, ratio, &limits.first, &limits.second);
    return limits;
  };
  EXPECT_EQ(range(0), std::pair(1, 9));
  EXPECT_EQ(range(0.2), std::pair(3, 8));
  EXPECT_EQ(range(1), std::pair(256, 0));
  int32_t xs[] = {4, -7, 9};
  int32_t ys[] = {1, 1, -3};
  int32_t box[4];
  NuvPointsRect(xs, ys, 3, &box[0], &box[1], &box[2], &box[3]);
  EXPECT_THAT(box, ElementsAre(-7, 9, -3, 1));
  NuvPointsRect(xs, ys, 0, &box[0], &box[1], &box[2], &box[3]);
  EXPECT_THAT(box, ElementsAre(4, 4, 1, 1));
}

TEST(BrightestWindow, EqualsThePlainSearch) {
  Random random(413);
  for (int round = 0; round < 200; ++round) {
    TestImage image = random.gray(random.between(1, 20), random.between(1, 20));
    for (uint8_t& p : image.pixels) p = static_cast<uint8_t>(p / 86);  // many windows tie
    const int32_t m = random.between(1, image.width + 1);
    const int32_t n = random.between(1, image.height + 1);
    int32_t best = 0;
    std::pair<int32_t, int32_t> place(image.width / 2, image.height / 2);
    for (int32_t y = 0; y < image.height - n; ++y) {
      for (int32_t x = 0; x < std::max(image.width - m, 1) && m <= image.width; ++x) {
        int32_t sum = 0;
        for (int32_t i = 0; i < m * n; ++i) sum += image.at(x + i % m, y + i / m);
        if (sum > best) {
          best = sum;
          place = {m / 2 + x, n / 2 + y};
        }
      }
    }
    std::pair<int32_t, int32_t> found;
    ASSERT_EQ(NuvMaxBrightRect(image.data(), image.width, image.height, m, n, &found.first, &found.second),
              static_cast<double>(best) / (m * n));
    ASSERT_EQ(found, place);
  }
  TestImage image(9, 7, 5);
  std::pair<int32_t, int32_t> found;
  EXPECT_EQ(NuvMaxBrightRect(image.data(), 9, 7, 0, 3, &found.first, &found.second), 0.0);
  EXPECT_EQ(found, std::pair(4, 3)) << "an empty window";
}

TEST(EstimateStdev, IsTheMedianOfTheWindows) {
  TestImage image(64, 64);
  for (int32_t i = 0; i < 64 * 64; ++i) image.at(i % 64, i / 64) = (i + i / 64) % 2 == 0 ? 90 : 110;
  TestImage mask(64, 64, 1);
  const auto of = [&](int32_t m, int32_t n) {
    return NuvEstimateImgStdev(image.data(), mask.data(), 64, 64, m, n);
  };
  EXPECT_EQ(of(8, 8), 10);
  EXPECT_EQ(of(1, 1), 10);
  EXPECT_EQ(of(0, 8), 0);
  mask = TestImage(64, 64);
  EXPECT_EQ(of(8, 8), 0);
}

// The rule as the header states it, with the deviation as a sum over bins.
int32_t stdev_by_the_rule(const TestImage& image, const TestImage& mask, int32_t m, int32_t n) {
  std::array<int32_t, 256> entries{};
  for (int32_t y1 = 0; y1 < image.height; y1 += std::max(n / 2, 1)) {
    for (int32_t x1 = 0; x1 < image.width; x1 += std::max(m / 2, 1)) {
      std::array<int32_t, 256> bins{};
      int32_t count = 0;
      for (int32_t y = y1; y <= std::min(y1 + n, image.height - 1); ++y) {
        for (int32_t x = x1; x <= std::min(x1 + m, image.width - 1); ++x) {
          if (mask.at(x, y) == 0) continue;
          ++bins[image.at(x, y)];
          ++count;
        }
      }
      if (count == 0 || 3 * count <= m * n) continue;
      double sum = 0.0;
      double squares = 0.0;
      for (int32_t v = 0; v < 256; ++v) sum += static_cast<double>(bins[v]) * v;
      const double mean = sum / count;
      for (int32_t v = 0; v < 256; ++v) squares += (v - mean) * (v - mean) * bins[v];
      const double rounded_up = std::sqrt(squares / count) + 0.5;
      entries[static_cast<std::size_t>(rounded_up)] += 4 * count / (m * n);
    }
  }
  return NuvGetMedianInHistogram(entries.data());
}

TEST(EstimateStdev, EqualsTheRule) {
  Random random(5);
  for (int i = 0; i < 60; ++i) {
    const bool is_wide = i % 4 == 0;  // wider than a strip
    TestImage image = random.noise(is_wide ? 2100 : 40 + i, is_wide ? 9 : 30);
    TestImage mask = random.binary(image.width, image.height, 70);
    if (i % 3 == 0) {
      // Two neighbouring levels in equal parts deviate by exactly a half, which lies between two results.
      for (uint8_t& pixel : image.pixels) pixel = static_cast<uint8_t>(90 + pixel % 2);
    }
    const int32_t m = is_wide && i % 8 == 0 ? 1100 : 1 + i % 9;
    const int32_t n = 1 + i % 7;
    ASSERT_EQ(NuvEstimateImgStdev(image.data(), mask.data(), image.width, image.height, m, n),
              stdev_by_the_rule(image, mask, m, n));
  }
}

}  // namespace
