#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "core/arithmetic.h"
#include "images.h"

namespace {

// The plain form of the detector: four sweeps in place, then three conditions for each pixel.
template <class T>
std::vector<T> plain_smooth(const TestImage& g, const std::function<T(T, T)>& step) {
  const int32_t w = g.width;
  const int32_t h = g.height;
  std::vector<T> t(g.pixels.begin(), g.pixels.end());
  const auto at = [&](int32_t x, int32_t y) -> T& { return t[static_cast<std::size_t>(y * w + x)]; };
  for (int32_t y = 1; y < h; ++y) {
    for (int32_t x = 1; x < w; ++x) at(x, y) = step(at(x, y), at(x - 1, y));
    for (int32_t x = w - 2; x >= 0; --x) at(x, y) = step(at(x, y), at(x + 1, y));
    for (int32_t x = 0; x < w; ++x) at(x, y) = step(at(x, y), at(x, y - 1));
  }
  for (int32_t y = h - 2; y >= 0; --y) {
    for (int32_t x = 0; x < w; ++x) at(x, y) = step(at(x, y), at(x, y + 1));
  }
  return t;
}

template <class T>
TestImage plain_edges(const TestImage& g, const std::vector<T>& t, int32_t threshold) {
  TestImage edges(g.width, g.height);
  const auto smoothed = [&](int32_t x, int32_t y) { return t[static_cast<std::size_t>(y * g.width + x)]; };
  for (int32_t y = 1; y < g.height - 1; ++y) {
    for (int32_t x = 1; x < g.width - 1; ++x) {
      if (!(smoothed(x, y) < g.at(x, y))) continue;
      bool changes_sign = false;
      bool has_step = false;
      for (int32_t dy = -1; dy <= 1; ++dy) {
        for (int32_t dx = -1; dx <= 1; ++dx) {
          if (dx == 0 && dy == 0) continue;
          changes_sign |= g.at(x + dx, y + dy) < smoothed(x + dx, y + dy);
          has_step |= std::abs(g.at(x, y) - g.at(x + dx, y + dy)) >= threshold;
        }
      }
      if (changes_sign && has_step) edges.at(x, y) = 255;
    }
  }
  return edges;
}

// Noise on a step, so that each of the three conditions decides some pixels.
TestImage noisy_step(Random& random, int32_t width, int32_t height) {
  TestImage image(width, height);
  const int32_t noise = random.between(0, 190);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const int32_t level = x * 3 > width + y ? 180 : 60;
      image.at(x, y) = static_cast<uint8_t>(std::clamp(level + random.between(-noise, noise), 0, 255));
    }
  }
  return image;
}

TEST(ShenJunFast, EqualsThePlainForm) {
  Random random(14);
  for (const auto& [width, height] : kOddSizes) {
    for (int32_t shift : {-1, 1, 2, 3, 9}) {
      TestImage g = noisy_step(random, width, height);
      const auto t = plain_smooth<int32_t>(g, [used = std::clamp(shift, 1, 3)](int32_t sample, int32_t old) {
        return ((sample - old) >> used) + old;
      });
      for (int32_t threshold : {0, 1, 20, 255, 256}) {
        TestImage scratch(width, height, 99);
        TestImage edges(width, height, 99);
        NuvShenJunEdgeFast(g.data(), scratch.data(), width, height, shift, threshold, edges.data());
        ASSERT_EQ(edges, plain_edges(g, t, threshold)) << width << 'x' << height << ' ' << threshold;
        ASSERT_EQ(scratch.pixels, std::vector<uint8_t>(t.begin(), t.end())) << "the smoothed image";
      }
    }
  }
}

TEST(ShenJunStdAndFine, EqualThePlainForm) {
  Random random(15);
  for (const auto& [width, height] : kOddSizes) {
    for (double a0 : {0.25, 0.5, 1.0, 1.7, 1e9}) {
      TestImage g = noisy_step(random, width, height);
      const auto bytes = plain_smooth<uint8_t>(
          g, [a0](uint8_t s, uint8_t r) { return nuv::low_byte(nuv::truncated((s - r) * a0 + r)); });
      const auto floats = plain_smooth<double>(g, [a0](double s, double r) { return (s - r) * a0 + r; });
      TestImage scratch(width, height);
      TestImage edges(width, height, 99);
      NuvShenJunEdgeStd(g.data(), scratch.data(), width, height, a0, 20, edges.data());
      ASSERT_EQ(edges, plain_edges(g, bytes, 20));
      ASSERT_EQ(scratch.pixels, bytes);
      if (a0 > 2) continue;  // reals grow without limit
      std::vector<double> fine_scratch(g.pixels.size());
      NuvShenJunEdgeFine(g.data(), fine_scratch.data(), width, height, a0, 20, edges.data());
      ASSERT_EQ(edges, plain_edges(g, floats, 20));
      ASSERT_EQ(fine_scratch, floats);
    }
  }
}

TEST(ShenJunLists, HoldThePointsInRasterOrderUpToTheirCapacity) {
  Random random(16);
  TestImage g = noisy_step(random, 60, 20);
  TestImage scratch(60, 20);
  TestImage edges(60, 20);
  NuvShenJunEdgeFast(g.data(), scratch.data(), 60, 20, 2, 30, edges.data());
  std::vector<std::pair<int32_t, int32_t>> points;
  for (int32_t i = 0; i < 60 * 20; ++i) {
    if (edges.at(i % 60, i / 60) != 0) points.emplace_back(i % 60, i / 60);
  }
  const auto total = static_cast<int32_t>(points.size());
  ASSERT_GT(total, 20);
  for (int32_t capacity : {-3, 0, 1, 2, total - 1, total, total + 5}) {
    std::vector<int32_t> x(points.size());
    std::vector<int32_t> y(points.size());
    const auto expect_points = [&](int32_t count, int32_t expected) {
      ASSERT_EQ(count, expected) << capacity;
      for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        EXPECT_EQ(std::pair(std::exchange(x[i], -1), std::exchange(y[i], -1)), points[i]);
      }
    };
    // The form that stops at a full list compares after storing, the other one before.
    expect_points(NuvShenJunEdgeFast(g.data(), scratch.data(), 60, 20, 2, 30, x.data(), y.data(), capacity),
                  std::clamp(capacity, 1, total));
    TestImage drawn(60, 20, 99);
    expect_points(NuvShenJunEdgeFast(g.data(), scratch.data(), 60, 20, 2, 30, x.data(), y.data(), capacity,
                                     drawn.data()),
                  std::clamp(capacity, 0, total));
    EXPECT_EQ(drawn, edges);
  }
}

}  // namespace
