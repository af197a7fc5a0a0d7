#include <gtest/gtest.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

template <class Draw>
TestImage drawn(int32_t width, int32_t height, Draw draw_into, uint8_t ground = 0) {
  TestImage image(width, height, ground);
  draw_into(image.data(), width, height);
  return image;
}

// The values that a drawing in an RGB image sets in one channel.
template <class Draw>
TestImage drawn_channel(int32_t width, int32_t height, std::size_t channel, Draw draw_into) {
  TestImage image(width, height);
  Bytes rgb(image.pixels.size() * 3);
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

// The lines that an arrow consists of: x1, y1, x2, y2 of each.
using Lines = std::vector<int32_t>;

TestImage of_lines(int32_t width, int32_t height, const Lines& lines) {
  TestImage image(width, height);
  for (std::size_t i = 0; i < lines.size(); i += 4) {
    NuvGryLine(image.data(), width, height, lines[i], lines[i + 1], lines[i + 2], lines[i + 3], 255);
  }
  return image;
}

TEST(BlockArrow, IsSixLines) {
  TestImage up(40, 35);
  NuvDrawUpArrow(up.data(), 40, 35, 15, 24, 5, 30, 255);
  EXPECT_EQ(up, of_lines(40, 35, {5,  15, 19, 5,  34, 15, 19, 5,  5,  15, 34, 15,
                                  15, 15, 15, 30, 24, 15, 24, 30, 15, 30, 24, 30}));
  TestImage left(40, 35);  // shorter than its head, and its wings are cut at the image
  NuvDrawLeftArrow(left.data(), 40, 35, 5, 12, 3, 28, 255);
  EXPECT_EQ(left, of_lines(40, 35, {12, 0, 5, 15, 12, 34, 5, 15, 12, 0, 12, 34}));
}

TEST(Plot, BarsBeginAtTheLastRowAndAtColumn0) {
  const auto plot_x = [](auto... a) { NuvDrawPrjX(a...); };  // both forms
  int32_t sums[] = {10, 20, 30, 40, 90};
  const auto columns = [&](auto plot, auto... range) {
    return drawn(4, 6, [&](uint8_t* p, int32_t w, int32_t h) { plot(p, w, h, sums, range..., 255); });
  };
  // (v - 10) * 6 / 32 + 0.5 = 0.5, 2.4, 4.3, 6.1
  const TestImage four = draw({"....", "...#", "..##", "..##", ".###", ".###"});
  EXPECT_EQ(columns(plot_x, 4), four);
  EXPECT_EQ(columns(plot_x, -9, 3), four) << "there are no entries before column 0";
  // (v - 20) * 6 / 12 + 0.5 = 0.5, 5.5
  EXPECT_EQ(columns(plot_x, 1, 2), draw({"....", "..#.", "..#.", "..#.", "..#.", "..#."}));
  // (v - 10) * 6 / 82 + 0.5 = 0.5, 1.2, just below 2.0, 2.7
  const TestImage five = draw({"....", "....", "....", "....", "...#", ".###"});
  EXPECT_EQ(columns(plot_x, 5), five) << "entries beyond the image set the scale";
  EXPECT_EQ(columns(plot_x, 0, 4), five);
  // v * 6 / 42 + 0.5 = 1.9, 3.4, 4.8, 6.2
  EXPECT_EQ(columns(NuvDrawPrjXMinV0, 4), draw({"....", "...#", "..##", ".###", ".###", "####"}));

  const auto rows = [&](auto plot) {
    return drawn(6, 4, [&](uint8_t* p, int32_t w, int32_t h) { plot(p, w, h, sums, 5, 255); });
  };
  EXPECT_EQ(rows(NuvDrawPrjY), draw({"......", "##....", "####..", "#####."})) << "only rows set the scale";
  EXPECT_EQ(rows(NuvDrawPrjYMinV0), draw({"#.....", "###...", "####..", "#####."}));

  int32_t negative[] = {-30, -2};  // the scale reaches from -30 to 0: 28 * 100 / 32 + 0.5
  const TestImage tall =
      drawn(2, 100, [&](uint8_t* p, int32_t w, int32_t h) { NuvDrawPrjX(p, w, h, negative, 2, 255); });
  EXPECT_EQ(std::count(tall.pixels.begin(), tall.pixels.end(), 255), 88);
}

}  // namespace
