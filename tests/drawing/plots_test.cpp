#include <gtest/gtest.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "drawing/drawn.h"
#include "images.h"

namespace {

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
