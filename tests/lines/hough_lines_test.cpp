#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
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
  void add(int32_t px, int32_t py) {
    x.push_back(px);
    y.push_back(py);
  }
};

struct Line {
  int32_t strength = 0;
  double a = -7, b = -7, c = -7;
  int32_t thro = -7, theta = -7;

  friend bool operator==(const Line& l, const Line& r) {
    return l.strength == r.strength && l.a == r.a && l.b == r.b && l.c == r.c && l.thro == r.thro &&
           l.theta == r.theta;
  }
  friend std::ostream& operator<<(std::ostream& out, const Line& l) {
    return out << l.strength << ": " << l.a << ' ' << l.b << ' ' << l.c << ' ' << l.thro << ' ' << l.theta;
  }
};

Line strongest(Points& p, int32_t theta1, int32_t theta2) {
  Line l;
  l.strength =
      NuvHoughLines_HT(p.x.data(), p.y.data(), p.n(), theta1, theta2, &l.a, &l.b, &l.c, &l.thro, &l.theta);
  return l;
}
Line next(int32_t d_thro, int32_t d_theta) {
  Line l;
  l.strength = NuvHoughLines_GetNextLine(d_thro, d_theta, &l.a, &l.b, &l.c, &l.thro, &l.theta);
  return l;
}

// Votes of three cells each, as they are told.
struct PlainHough {
  int32_t cx, cy, theta_base, n_thro;
  std::vector<std::vector<int32_t>> rows;
  std::vector<std::pair<int32_t, int32_t>> taken;

  // wanted(point, theta) tells who votes.
  template <class Wanted>
  PlainHough(const Points& p, int32_t theta1, int32_t theta2, Wanted wanted) : theta_base(theta1) {
    const auto [min_x, max_x] = std::minmax_element(p.x.begin(), p.x.end());
    const auto [min_y, max_y] = std::minmax_element(p.y.begin(), p.y.end());
    cx = (*min_x + *max_x) / 2;
    cy = (*min_y + *max_y) / 2;
    n_thro = static_cast<int32_t>(std::hypot(*max_x - *min_x + 1, *max_y - *min_y + 1)) + 5;
    rows.assign(static_cast<std::size_t>(theta2 - theta1 + 1),
                std::vector<int32_t>(static_cast<std::size_t>(n_thro)));
    for (int32_t theta = theta1; theta <= theta2; ++theta) {
      const auto c = static_cast<int32_t>(std::cos(theta * 3.1415926 / 180.0) * 1024.0);
      const auto s = static_cast<int32_t>(std::sin(theta * 3.1415926 / 180.0) * 1024.0);
      for (std::size_t i = 0; i < p.x.size(); ++i) {
        if (!wanted(i, theta)) continue;
        const int32_t t = ((p.x[i] - cx) * c + (p.y[i] - cy) * s) >> 10;
        int32_t* cell =
            &rows[static_cast<std::size_t>(theta - theta1)][static_cast<std::size_t>(n_thro / 2 + t)];
        cell[0] += 2;
        ++cell[1];
        ++cell[-1];
      }
    }
  }

  Line take(int32_t d_thro, int32_t d_theta) {
    int32_t best = 0;
    std::pair<int32_t, int32_t> place;
    for (int32_t r = 0; r < static_cast<int32_t>(rows.size()); ++r) {
      for (int32_t c = 0; c < n_thro; ++c) {
        const int32_t count = rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
        const bool refused = std::any_of(taken.begin(), taken.end(), [&](const auto& t) {
          return std::abs(t.first - r) < d_theta && std::abs(t.second - c) < d_thro;
        });
        if (count <= best || refused) continue;
        best = count;
        place = {r, c};
      }
    }
    if (best < 3) return taken.empty() ? Line{} : Line{0, 0, 0, 0, 0, 0};
    taken.push_back(place);
    Line l{best / 2};
    NuvThroTheta2ABC(cx, cy, place.second - n_thro / 2, place.first + theta_base, &l.a, &l.b, &l.c);
    NuvABC2ThroTheta(l.a, l.b, l.c, &l.thro, &l.theta);
    return l;
  }
};

Points random_points(Random& random) {
  Points p;
  for (int32_t i = random.between(2, 60); i > 0; --i)
    p.add(random.between(-20, 220), random.between(-20, 160));
  for (int32_t i = random.between(0, 40); i > 0; --i) p.add(10 + 3 * i, 20 + 2 * i);
  return p;
}

TEST(HoughLines, AreThoseOfThePlainVotes) {
  Random random(81);
  ASSERT_TRUE(NuvHoughLines_Initialize(250, 200));
  for (int round = 0; round < 40; ++round) {
    Points p = random_points(random);
    const Points before = p;
    const int32_t theta1 = random.between(0, 90);
    const int32_t theta2 = random.between(theta1, 180);
    PlainHough plain(p, theta1, theta2, [=](std::size_t, int32_t theta) { return theta < theta2; });
    EXPECT_EQ(strongest(p, theta1, theta2), plain.take(0, 0));
    for (int i = 0; i < 4 && !plain.taken.empty(); ++i) EXPECT_EQ(next(5, 4), plain.take(5, 4));
    EXPECT_EQ(p.x, before.x);
    EXPECT_EQ(p.y, before.y);

    // A mask enables what is voted, but for the highest.
    bool mask[181] = {};
    for (int32_t theta = theta1; theta <= theta2; ++theta) mask[theta] = random.between(0, 1) != 0;
    mask[theta1] = mask[theta2] = true;
    PlainHough masked(p, theta1, theta2,
                      [&](std::size_t, int32_t theta) { return theta < theta2 && mask[theta]; });
    Line l;
    l.strength = NuvHoughLines_HT(p.x.data(), p.y.data(), p.n(), mask, &l.a, &l.b, &l.c, &l.thro, &l.theta);
    EXPECT_EQ(l, masked.take(0, 0));
  }
}

TEST(HoughLines, TakeThetasOfPoints) {
  Random random(82);
  ASSERT_TRUE(NuvHoughLines_Initialize(250, 200));
  for (int round = 0; round < 40; ++round) {
    Points p = random_points(random);
    std::vector<int32_t> theta(p.x.size());
    const std::unique_ptr<bool[]> excluded(new bool[p.x.size()]());
    for (int32_t& t : theta) t = random.between(0, 179);
    const int32_t d = random.between(0, 20);
    // No point of the box's or the range's ends is left out, so that the plain form may take all.
    const int32_t low = std::max(*std::min_element(theta.begin(), theta.end()) - d, 0);
    const int32_t high = std::min(*std::max_element(theta.begin(), theta.end()) + d, 179);
    excluded[0] = true;
    PlainHough plain(p, low, high,
                     [&](std::size_t i, int32_t t) { return i != 0 && std::abs(theta[i] - t) <= d; });
    Line l;
    l.strength = NuvHoughLines_HT(p.x.data(), p.y.data(), theta.data(), excluded.get(), p.n(), d, &l.a, &l.b,
                                  &l.c, &l.thro, &l.theta);
    EXPECT_EQ(l, plain.take(0, 0));
  }
}

TEST(HoughLines, KeepTheirStateAsTold) {
  ASSERT_TRUE(NuvHoughLines_Initialize(100, 100));
  EXPECT_EQ(next(5, 5), Line{});  // nothing found yet
  Points pair;
  pair.add(30, 40);
  pair.add(30, 40);
  EXPECT_EQ(strongest(pair, 0, 180).strength, 2);
  EXPECT_EQ(strongest(pair, 40, 40).strength, 0);
  EXPECT_EQ(strongest(pair, 0, 180).strength, 2);
  EXPECT_EQ(next(1000, 1000), (Line{0, 0, 0, 0, 0, 0}));
  // A window of 0 refuses nothing: the same line, until the list is full.
  for (int i = 0; i < 1023; ++i) ASSERT_EQ(next(0, 0).strength, 2);
  EXPECT_EQ(next(0, 0), Line{});

  // Too large a set: refused, and left where it was moved.
  ASSERT_TRUE(NuvHoughLines_Initialize(1, 1500));
  Points wide;
  wide.add(0, 10);
  wide.add(3000, 20);
  EXPECT_EQ(strongest(wide, 0, 180).strength, 0);
  EXPECT_THAT(wide.x, ElementsAre(-1500, 1500));
  EXPECT_EQ(next(1, 1), Line{});
}

// ---- key points ----

TEST(KeyPoints, SplitAtTheFarthest) {
  // A curve with corners at (10, 10) and (0, 30); points come in no order.
  std::vector<int32_t> x, y;
  for (int32_t i = 40; i >= 0; --i) {
    y.push_back(i);
    x.push_back(i <= 10 ? i : i <= 30 ? 15 - i / 2 : i - 30);
  }
  std::vector<int32_t> kx(4), ky(4);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 41, 4, kx.data(), ky.data()), 4);
  EXPECT_THAT(ky, ElementsAre(0, 10, 30, 40));
  EXPECT_THAT(kx, ElementsAre(0, 10, 0, 10));
  EXPECT_TRUE(std::is_sorted(y.begin(), y.end()));
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 41, 1, kx.data(), ky.data()), 1);
  EXPECT_EQ(ky[0], 40);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 3, 4, kx.data(), ky.data()), 3);
  EXPECT_EQ(NuvLineKeyPoints(x.data(), y.data(), 0, 0, kx.data(), ky.data()), 0);
  // On a straight run a stretch without inner points comes first, and gives its end again.
  std::vector<int32_t> sx = {0, 0, 0, 0, 0}, sy = {0, 1, 2, 3, 4}, tx(5), ty(5);
  EXPECT_EQ(NuvLineKeyPoints(sx.data(), sy.data(), 5, 5, tx.data(), ty.data()), 5);
  EXPECT_THAT(ty, ElementsAre(0, 1, 1, 1, 4));
}

TEST(Poly4, GoesRoundTheDiagonal) {
  std::vector<int32_t> x = {0, 5, 10, 10, 10, 5, 0, 0};
  std::vector<int32_t> y = {0, 0, 0, 5, 10, 10, 10, 5};
  std::vector<int32_t> px(4, -1), py(4, -1);
  EXPECT_TRUE(NuvContour2Poly4(x.data(), y.data(), 8, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 0, 10, 10));
  EXPECT_THAT(py, ElementsAre(0, 10, 10, 0));
  std::vector<int32_t> same(5, 3);
  EXPECT_FALSE(NuvContour2Poly4(same.data(), same.data(), 5, px.data(), py.data()));
  EXPECT_FALSE(NuvContour2Poly4(x.data(), y.data(), 0, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 0, 10, 10));
  // In line: halfway along the contour on either side.
  std::vector<int32_t> line = {0, 1, 2, 3, 4};
  EXPECT_TRUE(NuvContour2Poly4(line.data(), line.data(), 5, px.data(), py.data()));
  EXPECT_THAT(px, ElementsAre(0, 2, 4, 4));
}

}  // namespace
