#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

TEST(NoiseEstimate, EqualsThePlainConvolution) {
  Random random(56);
  const int mask[3][3] = {{1, -2, 1}, {-2, 4, -2}, {1, -2, 1}};
  for (const auto& [width, height] : kOddSizes) {
    TestImage source = random.gray_in_a_range(width, height);
    TestImage expected(width, height, kSentinel);
    uint32_t sum = 0;
    for (int32_t y = 1; y < height - 1; ++y) {
      for (int32_t x = 1; x < width - 1; ++x) {
        int d = 0;
        for (int i = 0; i < 9; ++i) d += mask[i / 3][i % 3] * source.at(x + i % 3 - 1, y + i / 3 - 1);
        sum += static_cast<uint32_t>(d * d);
        expected.at(x, y) = static_cast<uint8_t>(std::min(d * d / 36, 250));
      }
    }
    TestImage result(width, height, kSentinel);
    const double estimate = NuvEstimateNoiseDelta(source.data(), width, height, result.data());
    ASSERT_EQ(result, expected) << width << 'x' << height;
    if (width == 2 || height == 2) {
      EXPECT_TRUE(std::isnan(estimate));
    } else {
      EXPECT_EQ(estimate, std::sqrt(sum / (36.0 * (width - 2) * (height - 2))));
    }
  }
}

}  // namespace
