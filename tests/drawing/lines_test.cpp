#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "drawing/drawn.h"
#include "images.h"

namespace {

TestImage line(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  return drawn(7, 7, [=](uint8_t* p, int32_t w, int32_t h) { NuvGryLine(p, w, h, x1, y1, x2, y2, 255); });
}

TEST(GryLine, IsConnectedAndLeavesOutItsLeftColumn) {
  const TestImage diagonal =
      draw({".......", ".......", "...#...", "...##..", "....##.", ".....#.", "......."});
  EXPECT_EQ(line(2, 2, 5, 5), diagonal);
  EXPECT_EQ(line(5, 5, 2, 2), diagonal);
  EXPECT_EQ(line(2, 2, 2, 2),
            draw({".......", ".......", "..#....", ".......", ".......", ".......", "......."}));
  EXPECT_EQ(line(5, 0, 3, 0),
            draw({"...###.", ".......", ".......", ".......", ".......", ".......", "......."}));
  EXPECT_EQ(line(1, 6, 1, 3),
            draw({".......", ".......", ".......", ".#.....", ".#.....", ".#.....", ".#....."}));
}

TEST(GryLine, ClampsItsEndsToTheImage) {
  EXPECT_EQ(line(-4, 3, 90, 3), line(0, 3, 6, 3));
  EXPECT_EQ(line(1, -50, 20, 5), line(1, 0, 6, 5));
  TestImage one(1, 1);
  NuvGryLine(one.data(), 1, 1, -5, 9, 7, -3, 511);
  EXPECT_EQ(one.at(0, 0), 255) << "the low byte of the colour";
}

TestImage degree_line(int32_t x0, int32_t y0, double degree) {
  return drawn(7, 5,
               [=](uint8_t* p, int32_t w, int32_t h) { NuvDrawDegreeLine(p, w, h, x0, y0, degree, 255); });
}

TEST(DegreeLine, LeavesOutItsPoint) {
  EXPECT_EQ(degree_line(3, 2, 0), draw({".......", ".......", ".##.###", ".......", "......."}));
  EXPECT_EQ(degree_line(3, 2, 90), draw({".......", "...#...", ".......", "...#...", "...#..."}));
  EXPECT_EQ(degree_line(1, 0, 44), draw({"..#....", "...#...", "....#..", ".....#.", "......#"}))
      << "rows 0.97, 1.93, 2.90 ... truncated";
  EXPECT_EQ(degree_line(-3, 2, 0), draw({".......", ".......", "#######", ".......", "......."}))
      << "from a point outside the image";
}

TEST(EquationLines, RoundAsTheirFormsPrescribe) {
  const auto kb = [](int32_t is_vertical, double k, double b) {
    return drawn(4, 4,
                 [=](uint8_t* p, int32_t w, int32_t h) { NuvDrawKBLine(p, w, h, is_vertical, k, b, 255); });
  };
  EXPECT_EQ(kb(0, 0, 1.5), draw({"....", "....", "####", "...."}));
  EXPECT_EQ(kb(1, 0.5, 0.4), draw({"#...", ".#..", ".#..", "..#."}));
  EXPECT_EQ(kb(0, 0, -1.4), draw({"####", "....", "....", "...."})) << "-0.9 truncates to 0";

  const auto abc = [](double a, double b, double c) {
    return drawn(4, 4,
                 [=](uint8_t* p, int32_t w, int32_t h) { NuvDrawABCLineByColor(p, w, h, a, b, c, 255); });
  };
  EXPECT_EQ(abc(1, -1, 0), draw({"#...", ".#..", "..#.", "...#"}));
  EXPECT_EQ(abc(0, 0, 1), TestImage(4, 4));

  const auto hough = [](int32_t thro, int32_t theta) {
    return drawn(4, 4,
                 [=](uint8_t* p, int32_t w, int32_t h) { NuvDrawHoughLine(p, w, h, thro, theta, 255); });
  };
  EXPECT_EQ(hough(2, 0), draw({"..#.", "..#.", "..#.", "..#."}));
  EXPECT_EQ(hough(2, 90), draw({"....", ".###", "#...", "...."}))
      << "the constant for pi is too small, so y falls below 2 after column 0";
  EXPECT_EQ(hough(1, 45), draw({".##.", "#...", "....", "...."})) << "by columns, 1.41 - x truncated";
  EXPECT_EQ(hough(1, 44), draw({".#..", "#...", "#...", "...."})) << "by rows, 1.39 - 0.97 y truncated";
  EXPECT_EQ(hough(0, 125), draw({"##..", "..#.", "...#", "...."})) << "by columns, 0.70 x";
  EXPECT_EQ(hough(0, 126), draw({"#...", ".#..", "..#.", "...."})) << "by rows, 1.38 y";
}

}  // namespace
