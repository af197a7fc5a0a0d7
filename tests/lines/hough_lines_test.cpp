#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

struct Points {
  std::vector<int32_t> x;
  std::vector<int32_t> y;

  int32_t n() const { return static_cast<int32_t>(x.size()); }
};

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
  int32_t theta[] = {90, 90, 85, 84, 95, 96, 90, 90, 90, 90};  // two are too far off
  bool is_excluded[10] = {true, false, false, false, false, false, false, false, false, true};
  const Line line = line_of([&](auto... out) {
    return NuvHoughLines_HT(row.x.data(), row.y.data(), theta, is_excluded, row.n(), 5, out...);
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

  // Points too far apart are refused and stay moved.
  ASSERT_TRUE(NuvHoughLines_Initialize(1, 1500));
  Points wide{{0, 3000}, {10, 20}};
  EXPECT_EQ(strongest(wide, 0, 180), kUntouched);
  EXPECT_THAT(wide.x, ElementsAre(-1500, 1500));
  EXPECT_EQ(next(1, 1), kUntouched);
}

// ---- key points ----

TEST(KeyPoints, SplitAtTheFarthestPoint) {
  // A curve with corners at (10, 10) and (0, 30). Its points come from the bottom up.
  std::vector<int32_t> x, y;
  for (int32_t i = 40; i >= 0; --i) {
    y.push_back(i);
    x.push_back(i <= 10 ? i : i <= 30 ? 15 - i / 2 : i - 30);
  }
  std::vector<int32_t> kx(4), ky(4);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 41, 4, kx.data(), ky.data()), 4);
  EXPECT_THAT(ky, ElementsAre(0, 10, 30, 40));
  EXPECT_THAT(kx, ElementsAre(0, 10, 0, 10));
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 41, 1, kx.data(), ky.data()), 1);
  EXPECT_EQ(ky[0], 40);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 3, 4, kx.data(), ky.data()), 3);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 3, 0, kx.data(), ky.data()), 0);
  // On a straight run all distances are 0. The first stretch has no inner points and gives its end again.
  std::vector<int32_t> sx = {0, 0, 0, 0, 0}, sy = {0, 1, 2, 3, 4}, tx(5), ty(5);
  EXPECT_EQ(NuvLineKeyPoints(sx.data(), sy.data(), 5, 5, tx.data(), ty.data()), 5);
  EXPECT_THAT(ty, ElementsAre(0, 1, 1, 1, 4));
}

void exchange_sort(Points& p) {
  for (std::size_t i = 0; i < p.x.size(); ++i) {
    for (std::size_t j = i + 1; j < p.x.size(); ++j) {
      if (p.y[j] >= p.y[i]) continue;
      std::swap(p.x[i], p.x[j]);
      std::swap(p.y[i], p.y[j]);
    }
  }
}

// The plain form scans every stretch anew for each key point.
Points plain_key_points(Points& p, int32_t m) {
  exchange_sort(p);
  std::vector<std::pair<int32_t, int32_t>> stretches = {{0, p.n() - 1}};
  std::vector<int32_t> places = {0};
  while (static_cast<int32_t>(places.size()) < m - 1) {
    double greatest = -10;
    std::pair<std::size_t, int32_t> best = {0, 0};
    for (std::size_t s = 0; s < stretches.size(); ++s) {
      const auto [low, high] = stretches[s];
      double farthest = high - low < 2 ? 0.0 : -10.0;
      int32_t place = high;
      for (int32_t k = low + 1; k < high; ++k) {
        const double distance =
            NuvDistFromPoint3To2PLine(p.x[low], p.y[low], p.x[high], p.y[high], p.x[k], p.y[k]);
        if (distance > farthest) farthest = distance, place = k;
      }
      if (s == 0 || farthest > greatest) greatest = farthest, best = {s, place};
    }
    places.push_back(best.second);
    stretches.emplace_back(best.second, stretches[best.first].second);
    stretches[best.first].second = best.second;
  }
  places.push_back(p.n() - 1);
  Points keys;
  for (const int32_t place : places) {
    keys.x.push_back(p.x[place]);
    keys.y.push_back(p.y[place]);
  }
  exchange_sort(keys);
  return keys;
}

TEST(KeyPoints, EqualThePlainForm) {
  Random random(41);
  for (int round = 0; round < 120; ++round) {
    // Few levels give many points of one y. Points on two walls split unevenly, so that the scans add up.
    const bool walls = round % 3 == 0;
    const int32_t n = walls ? random.between(500, 900) : random.between(2, 300);
    const int32_t levels = walls ? n : random.between(1, n);
    const int32_t m = walls ? random.between(300, 500) : random.between(2, std::min(n, 60));
    Points p;
    for (int32_t i = 0; i < n; ++i) {
      p.x.push_back(walls ? i % 2 * 100 + random.between(0, round % 2) : random.between(-90, 90));
      p.y.push_back(random.between(1, levels));
    }
    Points expected_points = p;
    const Points expected = plain_key_points(expected_points, m);
    Points keys{std::vector<int32_t>(m), std::vector<int32_t>(m)};
    NuvLineKeyPoints(p.x.data(), p.y.data(), n, m, keys.x.data(), keys.y.data());
    ASSERT_EQ(p.x, expected_points.x) << n << " points, " << levels << " levels";
    ASSERT_EQ(p.y, expected_points.y);
    ASSERT_EQ(keys.x, expected.x);
    ASSERT_EQ(keys.y, expected.y);
  }
}

TEST(Poly4, HasADiagonalAndACornerOnEachSide) {
  std::vector<int32_t> x = {0, 5, 10, 10, 10, 5, 0, 0};
  std::vector<int32_t> y = {0, 0, 0, 5, 10, 10, 10, 5};
  std::vector<int32_t> px(4, -1), py(4, -1);
  EXPECT_TRUE(NuvContour2Poly4(x.data(), y.data(), 8, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 0, 10, 10));
  EXPECT_THAT(py, ElementsAre(0, 10, 10, 0));
  std::vector<int32_t> same(5, 3);
  EXPECT_FALSE(NuvContour2Poly4(same.data(), same.data(), 5, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 0, 10, 10));
  // All points are on one line: the corner of each side is halfway along the contour.
  std::vector<int32_t> line = {0, 1, 2, 3, 4};
  EXPECT_TRUE(NuvContour2Poly4(line.data(), line.data(), 5, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 2, 4, 4));
}

TEST(Poly4, TiesGoToTheFirstPair) {
  // Points on small grids and on lines, so that pairs tie and points repeat, and points far apart.
  Random random(1);
  for (int32_t round = 0; round < 300; ++round) {
    const int32_t n = random.between(33, 90);
    const int32_t side = random.between(0, 9) == 0 ? 1000000000 : random.between(1, 12);
    std::vector<int32_t> x, y, px(4), py(4);
    for (int32_t i = 0; i < n; ++i) {
      x.push_back(random.between(-side, side));
      y.push_back(round % 3 == 0 ? x.back() : random.between(-side, side));
    }
    uint32_t farthest = 0;
    std::size_t first = 0, second = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      for (std::size_t j = i + 1; j < x.size(); ++j) {
        const auto dx = static_cast<uint32_t>(x[i]) - static_cast<uint32_t>(x[j]);
        const auto dy = static_cast<uint32_t>(y[i]) - static_cast<uint32_t>(y[j]);
        const uint32_t distance = dx * dx + dy * dy;
        if (static_cast<int32_t>(distance) <= static_cast<int32_t>(farthest)) continue;
        farthest = distance;
        first = i;
        second = j;
      }
    }
    if (!NuvContour2Poly4(x.data(), y.data(), n, px.data(), py.data())) {
      EXPECT_EQ(farthest, 0U);
      continue;
    }
    EXPECT_EQ(std::vector<int32_t>({px[0], py[0], px[2], py[2]}),
              std::vector<int32_t>({x[first], y[first], x[second], y[second]}));
  }
}

}  // namespace
