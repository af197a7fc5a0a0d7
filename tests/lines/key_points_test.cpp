#include <gmock/gmock.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"
#include "lines/points.h"

namespace {

using testing::ElementsAre;

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
