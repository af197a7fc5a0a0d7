#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAreArray;

TEST(Arithmetic, OfRgbImages) {
  Random random(402);
  for (const auto& [width, height] : kOddSizes) {
    const auto pixels = static_cast<std::size_t>(width * height);
    std::vector<uint8_t> a = random.bytes(3 * pixels);
    std::vector<uint8_t> b = random.bytes(3 * pixels);
    TestImage result(width, height);
    int32_t bins[256];
    NuvDifferenceImg12(a.data(), b.data(), width, height, true, result.data(), bins);
    int32_t expected_bins[256];
    NuvGetHistogram(result.data(), width, height, expected_bins);
    EXPECT_THAT(bins, ElementsAreArray(expected_bins));
    std::vector<uint8_t> rest(3 * pixels);
    std::vector<uint8_t> most = b;
    std::vector<uint8_t> least = b;
    NuvImg1SubstractImg2(a.data(), b.data(), width, height, true, rest.data());
    NuvRemainMaxMinGry(a.data(), width, height, true, most.data(), least.data());
    for (std::size_t i = 0; i < pixels; ++i) {
      int largest = 0;
      for (std::size_t k = 3 * i; k < 3 * i + 3; ++k) {
        largest = std::max(largest, std::abs(a[k] - b[k]));
        ASSERT_EQ(rest[k], std::max(a[k] - b[k], 0));
        ASSERT_EQ(most[k], std::max(a[k], b[k]));
        ASSERT_EQ(least[k], std::min(a[k], b[k]));
      }
      ASSERT_EQ(result.pixels[i], largest);
    }
  }
}

}  // namespace
