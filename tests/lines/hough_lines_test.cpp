#include <gmock/gmock.h>

#include <array>

#include "NuvImgSDK2014DLL.h"
#include "lines/points.h"

namespace {

using testing::ElementsAre;

// Points in row 20 and in column 130.
Points row_and_column(int32_t in_row, int32_t in_column) {
  Points p;
  for (int32_t i = 0; i < in_row; ++i) {
    p.x.push_back(30 + 5 * i);
    p.y.push_back(20);
  }
  for (int32_t i = 0; i < in_column; ++i) {
    p.x.push_back(130);
    p.y.push_back(40 + 5 * i);
  }
  return p;
}

// Strength, A, B, C, Thro, Theta; -7 where nothing was written.
using Line = std::array<double, 6>;
constexpr Line kUntouched = {0, -7, -7, -7, -7, -7};
constexpr Line kZeros = {};

template <class Find>
Line line_of(Find find) {
  double abc[] = {-7, -7, -7};
  int32_t hough[] = {-7, -7};
  const int32_t strength = find(&abc[0], &abc[1], &abc[2], &hough[0], &hough[1]);
  return {1.0 * strength, abc[0], abc[1], abc[2], 1.0 * hough[0], 1.0 * hough[1]};
}
Line strongest(Points& p, int32_t theta1, int32_t theta2) {
  return line_of(
      [&](auto... out) { return NuvHoughLines_HT(p.x.data(), p.y.data(), p.n(), theta1, theta2, out...); });
}
Line next(int32_t d_thro, int32_t d_theta) {
  return line_of([=](auto... out) { return NuvHoughLines_GetNextLine(d_thro, d_theta, out...); });
}

// Strength, Thro and Theta.
void expect_line(const Line& line, double strength, double thro, double theta) {
  EXPECT_EQ(line[0], strength);
  EXPECT_EQ(line[4], thro);
  EXPECT_EQ(line[5], theta);
}

TEST(HoughLines, AreFoundInTheOrderOfTheirStrength) {
  ASSERT_TRUE(NuvHoughLines_Initialize(250, 200));
  Points p = row_and_column(20, 12);
  const Points before = p;
  expect_line(strongest(p, 0, 180), 20, 20, 90);
  EXPECT_EQ(p.x, before.x);
  EXPECT_EQ(p.y, before.y);
  expect_line(next(5, 5), 12, -130, 0);  // a vertical line right of column 0 has a negative Thro
  const Line again = next(0, 0);
  expect_line(again, 20, 20, 90);

  EXPECT_EQ(strongest(p, 90, 91), again);
  EXPECT_LT(strongest(p, 80, 90)[0], 20) << "the end of the range is exclusive";
  bool mask[181] = {};
  const auto masked = [&] {
    return line_of(
        [&](auto... out) { return NuvHoughLines_HT(p.x.data(), p.y.data(), p.n(), mask, out...); });
  };
  EXPECT_EQ(masked(), kUntouched);
  mask[89] = mask[90] = true;
  EXPECT_LT(masked()[0], 20) << "the highest Theta of the mask is left out";
  mask[91] = true;
  EXPECT_EQ(masked(), again);
}

TEST(HoughLines, GetOneVoteFromEachPointBesideThem) {
  ASSERT_TRUE(NuvHoughLines_Initialize(250, 200));
  Points p = row_and_column(10, 0);
  for (std::size_t i = 0; i < 10; i += 2) p.y[i] = 22;
  // Thro counts from row 21, and the sine is a little below 1: row 20 has Thro -1, and row 22 has 0. Both get
  // five times 2 votes and five times 1. Ties go to the lowest Thro.
  expect_line(strongest(p, 90, 91), 7, 20, 90);
  EXPECT_EQ(next(1, 1)[4], 21);
  Points apart{{0, 50}, {0, 0}};
  EXPECT_EQ(strongest(apart, 0, 1), kUntouched) << "two votes are not enough";
}

TEST(HoughLines, UseTheThetasOfThePoints) {
  ASSERT_TRUE(NuvHoughLines_Initialize(250, 200));
  Points row = row_and_column(10, 0);
  row.x.push_back(20000);  // after the ten points, and too far away for the memory of the detector
  row.y.push_back(20);
  int32_t theta[] = {90, 90, 85, 84, 95, 96, 90, 90, 90, 90, 90};  // two are too far off
  bool is_excluded[11] = {true, false, false, false, false, false, false, false, false, true, false};
  const Line line = line_of([&](auto... out) {
    return NuvHoughLines_HT(row.x.data(), row.y.data(), theta, is_excluded, 10, 5, out...);
  });
  expect_line(line, 6, 20, 90);
}

TEST(HoughLines, KeepStateBetweenCalls) {
  ASSERT_TRUE(NuvHoughLines_Initialize(100, 100));
  EXPECT_EQ(next(5, 5), kUntouched) << "no line has been found yet";
  Points pair{{30, 30}, {40, 40}};
  EXPECT_EQ(strongest(pair, 40, 40), kUntouched);
  EXPECT_EQ(strongest(pair, 0, 180)[0], 2);
  EXPECT_EQ(next(1000, 1000), kZeros);
  // A window of 0 leaves out nothing: the same line is found again until the list is full.
  for (int i = 0; i < 1023; ++i) ASSERT_EQ(next(0, 0)[0], 2);
  EXPECT_EQ(next(0, 0), kUntouched);

  // The diagonal of 405 by 405 is 572, and 186 rows of 578 cells make 181 rows of 593. Points s apart take rows of
  // s + 6 cells.
  ASSERT_TRUE(NuvHoughLines_Initialize(400, 400));
  Points farthest{{0, 587}, {40, 40}};
  EXPECT_EQ(strongest(farthest, 0, 180)[0], 2);
  Points too_far{{0, 588}, {40, 40}};
  EXPECT_EQ(strongest(too_far, 0, 180), kUntouched);

  // Points too far apart are refused and stay moved.
  ASSERT_TRUE(NuvHoughLines_Initialize(1, 1500));
  Points wide{{0, 3000}, {10, 20}};
  EXPECT_EQ(strongest(wide, 0, 180), kUntouched);
  EXPECT_THAT(wide.x, ElementsAre(-1500, 1500));
  EXPECT_EQ(next(1, 1), kUntouched);
}

}  // namespace
