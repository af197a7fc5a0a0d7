#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

// ---- plain forms ----

int sum_of(const TestImage& p, int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
  int sum = 0;
  for (int32_t y = y1; y <= y2; ++y) {
    for (int32_t x = x1; x <= x2; ++x) sum += p.at(x, y);
  }
  return sum;
}

void clear(TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
  for (int32_t y = std::max(y1, 0); y <= std::min(y2, image.height - 1); ++y) {
    for (int32_t x = std::max(x1, 0); x <= std::min(x2, image.width - 1); ++x) image.at(x, y) = 0;
  }
}

// The plain form of the two one-direction gradients: of columns, or of rows.
TestImage plain_prewitt(const TestImage& p, int32_t m, int32_t n, bool columns) {
  TestImage r(p.width, p.height, kSentinel);
  const int32_t x2 = p.width - m - 2;
  const int32_t y2 = p.height - n - 2;
  clear(r, 0, p.width - 1, 0, n - 1);
  clear(r, 0, p.width - 1, p.height - n - 1, p.height - 2);
  if (columns) {
    clear(r, m, x2, p.height - n, p.height - 1);
  } else {
    clear(r, 0, m - 1, n, y2);
    clear(r, p.width - m, p.width - 1, n, y2);
  }
  for (int32_t y = n; y <= y2; ++y) {
    for (int32_t x = m; x <= x2; ++x) {
      const int d = columns ? sum_of(p, x - m, x - 1, y - n, y + n) - sum_of(p, x + 1, x + m, y - n, y + n)
                            : sum_of(p, x - m, x + m, y - n, y - 1) - sum_of(p, x - m, x + m, y + 1, y + n);
      r.at(x, y) = static_cast<uint8_t>(std::min(std::abs(d), 255));
    }
  }
  return r;
}

TestImage plain_four_directions(const TestImage& p, int32_t m, int32_t n) {
  TestImage r(p.width, p.height, kSentinel);
  const int32_t w = 2 * m + 1;
  const int32_t h = 2 * n + 1;
  clear(r, 0, p.width - 1, 0, n - 1);
  clear(r, 0, p.width - 1, p.height - n, p.height - 1);
  clear(r, 0, m, n, p.height - n - 1);
  int d4 = 0;
  for (int32_t y = n; y < p.height - n; ++y) {
    for (int32_t x = m; x < p.width - m; ++x) {
      const auto element = [=, &p](int32_t i) { return i < w * h ? p.at(x - m + i % w, y - n + i / w) : 0; };
      const auto divided = [=](auto column_of) {
        int difference = 0;
        for (int32_t row = 0; row < h; ++row) {
          for (int32_t i = 0; i < column_of(row); ++i) difference += element(row * w + i);
          for (int32_t i = column_of(row) + 1; i < w; ++i) difference -= element(row * w + i);
        }
        return difference;
      };
      const int d1 = std::abs(sum_of(p, x - m, x + m, y - n, y - 1) - sum_of(p, x - m, x + m, y + 1, y + n));
      const int d2 = std::abs(divided([=](int32_t) { return m; }));
      const int d3 = std::abs(divided([=](int32_t row) { return 2 * n - row; }));
      const int falling = divided([](int32_t row) { return row; });
      if (falling > 0) d4 = falling;
      r.at(x, y) = static_cast<uint8_t>(d4 >= 255 ? 255 : std::min((d1 + d2 + d3 + d4) / 4, 255));
    }
  }
  return r;
}

using WindowGradient = void (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);

TestImage run(WindowGradient gradient, TestImage source, int32_t m, int32_t n) {
  TestImage result(source.width, source.height, kSentinel);
  gradient(source.data(), source.width, source.height, m, n, result.data());
  return result;
}

TEST(WindowGradients, EqualTheirPlainForms) {
  Random random(33);
  for (int round = 0; round < 400; ++round) {
    TestImage source = random.noise(random.between(1, 40), random.between(1, 24));
    const int32_t m = random.between(1, 6);
    const int32_t n = random.between(1, 6);
    if (round % 2 == 0) {  // weak noise: most values stay below the clamp
      for (uint8_t& p : source.pixels) p = static_cast<uint8_t>(p / 40);
    }
    ASSERT_EQ(run(NuvGradientByPrewitt0, source, m, n), plain_prewitt(source, m, n, false)) << m << ' ' << n;
    ASSERT_EQ(run(NuvGradientByPrewitt90, source, m, n), plain_prewitt(source, m, n, true)) << m << ' ' << n;
    ASSERT_EQ(run(NuvGradientByPrewitt, source, m, n), plain_four_directions(source, m, n)) << m << ' ' << n;
  }
}

TEST(WindowGradients, LimitTheirSizes) {
  Random random(34);
  const TestImage source = random.noise(20, 15);
  EXPECT_EQ(run(NuvGradientByPrewitt0, source, -3, 0), plain_prewitt(source, 1, 1, false));
  EXPECT_EQ(run(NuvGradientByPrewitt90, source, 0, -3), plain_prewitt(source, 1, 1, true));
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 63), TestImage(20, 15))
      << "the cleared bands cover the image";
  const TestImage untouched(20, 15, kSentinel);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 64), untouched);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, -1, -1), untouched);
}

}  // namespace
