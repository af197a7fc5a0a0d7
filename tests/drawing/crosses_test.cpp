#include <gtest/gtest.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "drawing/drawn.h"
#include "images.h"

namespace {

// The values that a drawing in an RGB image sets in one channel.
template <class Draw>
TestImage drawn_channel(int32_t width, int32_t height, std::size_t channel, Draw draw_into) {
  TestImage image(width, height);
  std::vector<uint8_t> rgb(image.pixels.size() * 3);
  draw_into(rgb.data(), width, height);
  for (std::size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = rgb[3 * i + channel];
  return image;
}

TEST(Cross, LeavesOutABorderOfTwoPixels) {
  const auto cross = [](int32_t x, int32_t y) {
    return drawn(8, 7, [=](uint8_t* p, int32_t w, int32_t h) { NuvDrawGryCross(p, w, h, x, y, 3, 255); });
  };
  EXPECT_EQ(cross(4, 3),
            draw({"........", "........", "....#...", "..####..", "....#...", "........", "........"}));
  EXPECT_EQ(cross(-7, 0),
            draw({"........", "..###...", ".#......", ".#......", ".#......", "........", "........"}));
}

TEST(Cross, InColourHasItsHorizontalArmInRowX) {
  const auto cross = [](uint8_t* p, int32_t w, int32_t h) { NuvDrawRGBCross(p, w, h, 4, 1, 5, 255, 0, 0); };
  EXPECT_EQ(drawn_channel(9, 6, 2, cross),
            draw({"....#....", "....#....", "....#....", "....#....", "..#####..", "........."}));
}

}  // namespace
