#include <gtest/gtest.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

TEST(Channels, AreSplitAndJoined) {
  Random random(8);
  const int32_t width = 37;
  const int32_t height = 5;
  const auto n = static_cast<std::size_t>(width * height);
  const Bytes original = random.bytes(3 * n);
  Bytes rgb = original;
  Bytes planes[3];
  for (int32_t channel = 0; channel < 3; ++channel) {
    planes[channel].resize(n);
    NuvSelectRGB2Gry(rgb.data(), width, height, channel, planes[channel].data());
  }
  Bytes joined(3 * n);
  NuvGry2RGBImg(planes[2].data(), planes[1].data(), planes[0].data(), width, height, joined.data());
  EXPECT_EQ(joined, original);

  // Channels are not tested: 3 is the blue of the next pixel, and -1 the red of the one before.
  for (int32_t channel : {-1, 3}) {
    Bytes row(35);
    NuvSelectRGBRect2Gry(rgb.data(), width, height, 1, 35, 2, 2, channel, row.data());
    for (std::size_t i = 0; i < 35; ++i) {
      ASSERT_EQ(row[i], channel == 3 ? planes[0][2 * 37 + i + 2] : planes[2][2 * 37 + i]);
    }
  }

  NuvReplaceOneChannelInRGB(rgb.data(), width, height, 1, planes[0].data());
  NuvOROneChannelInRGB(rgb.data(), width, height, 2, planes[1].data());
  for (std::size_t i = 0; i < n; ++i) {
    ASSERT_EQ(rgb[3 * i], original[3 * i]);
    ASSERT_EQ(rgb[3 * i + 1], original[3 * i]);
    ASSERT_EQ(rgb[3 * i + 2], original[3 * i + 2] | original[3 * i + 1]);
  }
}

}  // namespace
