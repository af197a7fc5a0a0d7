#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Gradient = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);

constexpr uint8_t kSentinel = 77;

// A pixel, which gives its neighbours by their offsets.
struct Pixel {
  const TestImage& image;
  int32_t x, y;

  int operator()(int32_t dx, int32_t dy) const { return image.at(x + dx, y + dy); }
};

// |G0| and |G90|.
int g0(Pixel p) {
  return std::abs(p(-1, -1) + 2 * p(0, -1) + p(1, -1) - p(-1, 1) - 2 * p(0, 1) - p(1, 1));
}
int g90(Pixel p) {
  return std::abs(p(-1, -1) + 2 * p(-1, 0) + p(-1, 1) - p(1, -1) - 2 * p(1, 0) - p(1, 1));
}
int across_columns(Pixel p) {
  return std::abs(p(1, 0) - p(-1, 0));
}
int across_rows(Pixel p) {
  return std::abs(p(0, 1) - p(0, -1));
}
int two_along_row(Pixel p) {
  return std::abs(p(-2, 0) + p(-1, 0) - p(1, 0) - p(2, 0));
}
int two_along_column(Pixel p) {
  return std::abs(p(0, -2) + p(0, -1) - p(0, 1) - p(0, 2));
}
int rows_5x5(Pixel p) {
  int sum = 0;
  for (int32_t dx = -2; dx <= 2; ++dx) sum += p(dx, -2) + p(dx, -1) - p(dx, 1) - p(dx, 2);
  return std::abs(sum);
}

void robert_everywhere(uint8_t* source, int32_t width, int32_t height, uint8_t* result) {
  NuvRobertByMask(source, nullptr, width, height, result);
}

const struct {
  Gradient gradient;
  int32_t band;
  int limit;
  int (*formula)(Pixel);
} kMembers[] = {
    {NuvRobert, 1, 255, [](Pixel p) { return std::max(across_columns(p), across_rows(p)); }},
    {robert_everywhere, 1, 255, [](Pixel p) { return across_columns(p) + across_rows(p); }},
    {NuvGryImgSobel, 1, 255, [](Pixel p) { return g0(p) + g90(p); }},
    {NuvGryImgSobel0, 1, 255, g0},
    {NuvGryImgSobel90, 1, 255, g90},
    {NuvGryImgSobel0Just, 1, 255, [](Pixel p) { return g90(p) < g0(p) ? g0(p) : 0; }},
    {NuvGryImgSobel90Just, 1, 255, [](Pixel p) { return g0(p) < g90(p) ? g90(p) : 0; }},
    {NuvPrewitt90, 2, 255, two_along_row},
    {NuvGradient5x5ByPrewitt0_90, 2, 250,
     [](Pixel p) { return std::max(two_along_row(p), two_along_column(p)); }},
    {NuvGradient0ByPrewitt5x5, 2, 250, rows_5x5},
};

// Noise of random strength, so that every clamp and every comparison decides some pixels.
TestImage noise(Random& random, int32_t width, int32_t height) {
  TestImage image(width, height);
  const int32_t levels = random.between(1, 255);
  for (uint8_t& p : image.pixels) p = static_cast<uint8_t>(random.between(0, levels));
  return image;
}

TEST(Gradients, FollowTheirFormulasAndClearTheirBand) {
  Random random(29);
  for (const auto& [gradient, band, limit, formula] : kMembers) {
    for (const auto& [width, height] : kOddSizes) {
      TestImage source = noise(random, width, height);
      TestImage result(width, height, kSentinel);
      TestImage expected(width, height);
      for (int32_t y = band; y < height - band; ++y) {
        for (int32_t x = band; x < width - band; ++x) {
          expected.at(x, y) = static_cast<uint8_t>(std::min(formula({source, x, y}), limit));
        }
      }
      gradient(source.data(), width, height, result.data());
      ASSERT_EQ(result, expected) << width << 'x' << height;
    }
  }
}

TEST(Robert, OfColourClearsItsBorderAsIfTheImageWereGray) {
  TestImage rgb = draw({"............", "............", "1234##.32..."});
  TestImage colour = draw({"777777777777", "777777777777", "777777777777"});
  NuvRobertRGBImage2RGBRobert(rgb.data(), 4, 3, colour.data());
  EXPECT_EQ(colour, draw({"....77777777", ".77.##.32777", "....77777777"}));
  TestImage gray(4, 3, kSentinel);
  NuvRobertRGBImage2GryRobert(rgb.data(), 4, 3, gray.data());
  EXPECT_EQ(gray, draw({"....", ".#3.", "...."})) << "the greatest of the channels";
}

// ---- windows, in their plain forms ----

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
    TestImage source = noise(random, random.between(1, 40), random.between(1, 24));
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
  const TestImage source = noise(random, 20, 15);
  EXPECT_EQ(run(NuvGradientByPrewitt0, source, -3, 0), plain_prewitt(source, 1, 1, false));
  EXPECT_EQ(run(NuvGradientByPrewitt90, source, 0, -3), plain_prewitt(source, 1, 1, true));
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 63), TestImage(20, 15))
      << "the cleared bands cover the image";
  const TestImage untouched(20, 15, kSentinel);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 64), untouched);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, -1, -1), untouched);
}

}  // namespace
