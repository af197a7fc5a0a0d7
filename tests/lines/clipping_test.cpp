#include <gmock/gmock.h>

#include <array>
#include <initializer_list>

#include "NuvImgSDK2014DLL.h"

namespace {

using testing::ElementsAre;
using Ends = std::array<int32_t, 4>;  // x1, y1, x2, y2
constexpr Ends kUntouched = {-9, -9, -9, -9};

// A line by its three numbers, and the ends of its part in 100 by 50 pixels.
struct Case {
  double first, second, third;
  bool found;
  Ends ends;
};

template <class Clip>
void expect_clipped(Clip clip, std::initializer_list<Case> cases) {
  for (const Case& c : cases) {
    Ends e = kUntouched;
    EXPECT_EQ(clip(c.first, c.second, c.third, &e[0], &e[1], &e[2], &e[3]), c.found);
    EXPECT_EQ(e, c.ends) << c.first << ' ' << c.second << ' ' << c.third;
  }
}

TEST(KbLineInImage, TakesTheFirstTwoCrossingsByX) {
  const auto clip = [](double is_vertical, double k, double b, auto... ends) {
    return NuvKBLineImgBoundary(100, 50, static_cast<int32_t>(is_vertical), k, b, ends...);
  };
  expect_clipped(clip, {{0, 0, 5, true, {0, 5, 99, 5}},
                        {1, 0, 99, true, {99, 0, 99, 49}},
                        {0, 0.5, -10, true, {20, 0, 99, 39}},
                        {0, 1, 0, true, {0, 0, 0, 0}},  // the corner is a crossing of two borders
                        {0, 0, 50, false, kUntouched}});
}

TEST(AbcLineInImage, WalksFromBothEndsAndMissesTheLastColumn) {
  const auto clip = [](auto... a) { return NuvABCLineImgBoundary(100, 50, a...); };
  expect_clipped(clip, {{0, 1, -5, true, {0, 5, 99, 5}},
                        {1, 0, -98, true, {98, 0, 98, 49}},
                        {1, 0, -99, false, kUntouched},
                        {0, 0, 1, false, kUntouched},
                        {1, -1, 0, true, {0, 0, 49, 49}},
                        {-0.5, 1, 10, true, {18, 0, 99, 40}}});  // -0.5 in column 18 truncates to row 0
}

TEST(HoughLineInImage, TriesTheBordersInTheirOrder) {
  const struct {
    int32_t thro, theta;
    bool found;
    Ends ends;
  } cases[] = {
      {500, 90, true, {0, 500, 99, 500}},                                   // outside the image, too
      {-7, 0, true, {-7, 0, -7, 49}},     {30, 80, true, {0, 30, 99, 13}},  // left and right
      {10, 150, true, {0, 19, 16, 49}},                                     // left, at 19.99, and bottom
      {30, 60, false, {0, 34, 0, 0}},    // left and top: the top is never second
      {60, 10, true, {60, 0, 52, 49}},   // top and bottom
      {109, 15, false, {99, 49, 0, 0}},  // bottom alone, at 99.7
      {-90, 60, false, {0, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    int32_t x[2];
    int32_t y[2];
    EXPECT_EQ(NuvHoughLineImgBoundary(100, 50, c.thro, c.theta, x, y), c.found);
    EXPECT_EQ((Ends{x[0], y[0], x[1], y[1]}), c.ends) << c.thro << ' ' << c.theta;
  }
}

TEST(KbLineInRectangle, ClampsEachCoordinateSeparately) {
  int32_t x[2];
  int32_t y[2];
  EXPECT_TRUE(NuvKBLineRectBoundary(100, 50, 10, 200, 0, 0, 0, 0.25, 2.4, x, y));
  EXPECT_THAT(x, ElementsAre(10, 99));
  EXPECT_THAT(y, ElementsAre(5, 49)) << "4.9 is rounded to 5, and 52.4 is clamped to 49";
  Ends e = kUntouched;
  NuvKBLineBeginEndPoint(100, 50, 0, 0, -3, 40, 1, 0.5, 1, &e[0], &e[1], &e[2], &e[3]);
  EXPECT_THAT(e, ElementsAre(0, 0, 21, 40));
}

}  // namespace
