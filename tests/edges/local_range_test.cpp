#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

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

TEST(LocalRange, TakesUpTo4096Columns) {
  TestImage source(4097, 1);
  source.at(0, 0) = 9;
  TestImage result(4097, 1, 7);
  std::array<int32_t, 256> histogram{};
  EXPECT_FALSE(NuvEdgeTripeDetection(source.data(), 4097, 1, 1, 0, result.data(), histogram.data()));
  EXPECT_EQ(result, TestImage(4097, 1, 7));
  EXPECT_TRUE(NuvEdgeTripeDetection(source.data(), 4096, 1, 1, 0, result.data(), histogram.data()));
  // The windows of columns 0 to 2 begin at columns 0, 0 and 1.
  EXPECT_EQ(histogram[9], 2);
  EXPECT_EQ(histogram[0], 4094);
}

}  // namespace
