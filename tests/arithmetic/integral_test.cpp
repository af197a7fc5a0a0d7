#include <gtest/gtest.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(IntegralImage, EqualsItsPlainForm) {
  Random random(403);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    std::vector<int32_t> sums(image.pixels.size());
    NuvDoSumGryImg(image.data(), width, height, sums.data());
    for (int32_t y = 0; y < height; ++y) {
      int32_t sum = 0;
      for (int32_t x = 0; x < width; ++x) {
        sum += image.at(x, y);
        const auto i = static_cast<std::size_t>(y * width + x);
        ASSERT_EQ(sums[i], sum + (y > 0 ? sums[i - static_cast<std::size_t>(width)] : 0)) << x << ',' << y;
      }
    }
  }
}

}  // namespace
