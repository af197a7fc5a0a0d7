#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Gradient = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Formula = std::function<int(const TestImage&, int32_t, int32_t)>;

constexpr uint8_t kSentinel = 77;

int g0(const TestImage& p, int32_t x, int32_t y) {
  return p.at(x - 1, y - 1) + 2 * p.at(x, y - 1) + p.at(x + 1, y - 1) - p.at(x - 1, y + 1) -
         2 * p.at(x, y + 1) - p.at(x + 1, y + 1);
}
int g90(const TestImage& p, int32_t x, int32_t y) {
  return p.at(x - 1, y - 1) + 2 * p.at(x - 1, y) + p.at(x - 1, y + 1) - p.at(x + 1, y - 1) -
         2 * p.at(x + 1, y) - p.at(x + 1, y + 1);
}
int across_columns(const TestImage& p, int32_t x, int32_t y) {
  return std::abs(p.at(x + 1, y) - p.at(x - 1, y));
}
int across_rows(const TestImage& p, int32_t x, int32_t y) {
  return std::abs(p.at(x, y + 1) - p.at(x, y - 1));
}
int prewitt(const TestImage& p, int32_t x, int32_t y, int32_t dx, int32_t dy) {
  return std::abs(p.at(x - 2 * dx, y - 2 * dy) + p.at(x - dx, y - dy) - p.at(x + dx, y + dy) -
                  p.at(x + 2 * dx, y + 2 * dy));
}
int rows_5x5(const TestImage& p, int32_t x, int32_t y) {
  int sum = 0;
  for (int32_t c = x - 2; c <= x + 2; ++c) {
    sum += p.at(c, y - 2) + p.at(c, y - 1) - p.at(c, y + 1) - p.at(c, y + 2);
  }
  return std::abs(sum);
}

struct Member {
  Gradient gradient;
  int32_t band;
  Formula formula;
};

const Member kMembers[] = {
    {NuvRobert, 1,
     [](auto& p, int32_t x, int32_t y) { return std::max(across_columns(p, x, y), across_rows(p, x, y)); }},
    {NuvGryImgSobel, 1,
     [](auto& p, int32_t x, int32_t y) {
       return std::min(std::abs(g0(p, x, y)) + std::abs(g90(p, x, y)), 255);
     }},
    {NuvGryImgSobel0, 1, [](auto& p, int32_t x, int32_t y) { return std::min(std::abs(g0(p, x, y)), 255); }},
    {NuvGryImgSobel90, 1,
     [](auto& p, int32_t x, int32_t y) { return std::min(std::abs(g90(p, x, y)), 255); }},
    {NuvGryImgSobel0Just, 1,
     [](auto& p, int32_t x, int32_t y) {
       return std::abs(g90(p, x, y)) < std::abs(g0(p, x, y)) ? std::min(std::abs(g0(p, x, y)), 255) : 0;
     }},
    {NuvGryImgSobel90Just, 1,
     [](auto& p, int32_t x, int32_t y) {
       return std::abs(g0(p, x, y)) < std::abs(g90(p, x, y)) ? std::min(std::abs(g90(p, x, y)), 255) : 0;
     }},
    {NuvPrewitt90, 2, [](auto& p, int32_t x, int32_t y) { return std::min(prewitt(p, x, y, 1, 0), 255); }},
    {NuvGradient5x5ByPrewitt0_90, 2,
     [](auto& p, int32_t x, int32_t y) {
       return std::min(std::max(prewitt(p, x, y, 1, 0), prewitt(p, x, y, 0, 1)), 250);
     }},
    {NuvGradient0ByPrewitt5x5, 2,
     [](auto& p, int32_t x, int32_t y) { return std::min(rows_5x5(p, x, y), 250); }},
};

// Noise of random strength, so that the clamps and the comparisons all decide somewhere.
TestImage noise(Random& random, int32_t width, int32_t height) {
  TestImage image(width, height);
  const int32_t levels = random.between(1, 255);
  for (uint8_t& p : image.pixels) p = static_cast<uint8_t>(random.between(0, levels));
  return image;
}

TEST(Gradients, FollowTheirFormulasAndClearTheirBand) {
  Random random(29);
  for (const Member& member : kMembers) {
    for (const auto& [width, height] : kOddSizes) {
      TestImage source = noise(random, width, height);
      TestImage result(width, height, kSentinel);
      member.gradient(source.data(), width, height, result.data());
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          const int32_t b = member.band;
          const bool inside = x >= b && x < width - b && y >= b && y < height - b;
          ASSERT_EQ(result.at(x, y), inside ? member.formula(source, x, y) : 0)
              << &member - kMembers << ' ' << width << 'x' << height << ' ' << x << ',' << y;
        }
      }
    }
  }
}

TEST(Sobel, AnswersToTheDirectionOfTheStep) {
  TestImage step = draw({"..##", "..##", "..##"});
  TestImage result(4, 3);
  NuvGryImgSobel0(step.data(), 4, 3, result.data());
  EXPECT_EQ(result, TestImage(4, 3));
  NuvGryImgSobel90(step.data(), 4, 3, result.data());
  EXPECT_EQ(result, draw({"....", ".##.", "...."}));
}

TEST(Robert, ByMask) {
  Random random(30);
  TestImage source = noise(random, 40, 9);
  TestImage mask = random.binary(40, 9, 50);
  TestImage masked(40, 9, kSentinel);
  TestImage all(40, 9, kSentinel);
  NuvRobertByMask(source.data(), mask.data(), 40, 9, masked.data());
  NuvRobertByMask(source.data(), nullptr, 40, 9, all.data());
  for (int32_t y = 0; y < 9; ++y) {
    for (int32_t x = 0; x < 40; ++x) {
      const bool inside = x > 0 && x < 39 && y > 0 && y < 8;
      const int sum = inside ? std::min(across_columns(source, x, y) + across_rows(source, x, y), 255) : 0;
      ASSERT_EQ(all.at(x, y), sum);
      ASSERT_EQ(masked.at(x, y), mask.at(x, y) != 0 ? sum : 0);
    }
  }
}

TEST(Robert, OfColour) {
  Random random(31);
  for (const auto& [width, height] : kOddSizes) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3;
    std::vector<uint8_t> rgb = random.bytes(bytes);
    std::vector<uint8_t> colour(bytes, kSentinel);
    TestImage gray(width, height, kSentinel);
    NuvRobertRGBImage2RGBRobert(rgb.data(), width, height, colour.data());
    NuvRobertRGBImage2GryRobert(rgb.data(), width, height, gray.data());
    const auto byte = [&rgb, w = width](int32_t x, int32_t y, int32_t c) {
      return static_cast<int>(rgb[static_cast<std::size_t>((y * w + x) * 3 + c)]);
    };
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        const bool inside = x > 0 && x < width - 1 && y > 0 && y < height - 1;
        int most = 0;
        for (int32_t c = 0; c < 3; ++c) {
          const int32_t place = 3 * x + c;
          const bool zeroed =
              place == 0 || place == width - 1 || ((y == 0 || y == height - 1) && place < width);
          int sum = 0;
          if (inside) {
            sum = std::min(std::abs(byte(x, y + 1, c) - byte(x, y - 1, c)) +
                               std::abs(byte(x + 1, y, c) - byte(x - 1, y, c)),
                           255);
          }
          most = std::max(most, sum);
          ASSERT_EQ(colour[static_cast<std::size_t>(y * width * 3 + place)], zeroed   ? 0
                                                                             : inside ? sum
                                                                                      : kSentinel);
        }
        ASSERT_EQ(gray.at(x, y), most);
      }
    }
  }
}

TEST(Prewitt90, InARegionWritesNothingElse) {
  Random random(32);
  TestImage source = noise(random, 30, 12);
  TestImage whole(30, 12);
  NuvPrewitt90(source.data(), 30, 12, whole.data());
  for (const auto& [x1, x2, y1, y2] :
       {std::array{0, 29, 0, 11}, {5, 9, 3, 3}, {9, 5, 3, 3}, {-5, 99, 4, 99}}) {
    TestImage part(30, 12, kSentinel);
    NuvPrewitt90(source.data(), 30, 12, x1, x2, y1, y2, part.data());
    for (int32_t y = 0; y < 12; ++y) {
      for (int32_t x = 0; x < 30; ++x) {
        const bool inside =
            x >= std::max(x1, 2) && x <= std::min(x2, 27) && y >= std::max(y1, 2) && y <= std::min(y2, 9);
        ASSERT_EQ(part.at(x, y), inside ? whole.at(x, y) : kSentinel);
      }
    }
  }
}

// ---- windows, in their plain forms ----

int sum_of(const TestImage& p, int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
  int sum = 0;
  for (int32_t y = y1; y <= y2; ++y) {
    for (int32_t x = x1; x <= x2; ++x) sum += p.at(x, y);
  }
  return sum;
}

void clear_rows(TestImage& image, int32_t y1, int32_t y2, int32_t x1, int32_t x2) {
  for (int32_t y = std::max(y1, 0); y <= std::min(y2, image.height - 1); ++y) {
    for (int32_t x = std::max(x1, 0); x <= std::min(x2, image.width - 1); ++x) image.at(x, y) = 0;
  }
}

TestImage plain_prewitt_0(const TestImage& p, int32_t m, int32_t n) {
  TestImage r(p.width, p.height, kSentinel);
  clear_rows(r, 0, n - 1, 0, p.width - 1);
  clear_rows(r, p.height - n - 1, p.height - 2, 0, p.width - 1);
  if (2 * n + 1 >= p.height) return r;
  for (int32_t y = n; y + n + 1 < p.height; ++y) {
    clear_rows(r, y, y, 0, m - 1);
    clear_rows(r, y, y, p.width - m, p.width - 1);
    for (int32_t k = 0; k + 2 * m + 1 < p.width; ++k) {
      const int d = sum_of(p, k, k + 2 * m, y - n, y - 1) - sum_of(p, k, k + 2 * m, y + 1, y + n);
      r.at(m + k, y) = static_cast<uint8_t>(std::min(std::abs(d), 255));
    }
  }
  return r;
}

TestImage plain_prewitt_90(const TestImage& p, int32_t m, int32_t n) {
  TestImage r(p.width, p.height, kSentinel);
  clear_rows(r, 0, n - 1, 0, p.width - 1);
  clear_rows(r, p.height - n - 1, p.height - 2, 0, p.width - 1);
  for (int32_t x = m; x + m + 1 < p.width; ++x) {
    clear_rows(r, p.height - n, p.height - 1, x, x);
    for (int32_t k = 0; k + 2 * n + 1 < p.height; ++k) {
      const int d = sum_of(p, x - m, x - 1, k, k + 2 * n) - sum_of(p, x + 1, x + m, k, k + 2 * n);
      r.at(x, n + k) = static_cast<uint8_t>(std::min(std::abs(d), 255));
    }
  }
  return r;
}

TestImage plain_four_directions(const TestImage& p, int32_t m, int32_t n) {
  TestImage r(p.width, p.height, kSentinel);
  const int32_t w = 2 * m + 1;
  const int32_t h = 2 * n + 1;
  clear_rows(r, 0, n - 1, 0, p.width - 1);
  clear_rows(r, p.height - n, p.height - 1, 0, p.width - 1);
  int d4 = 0;
  for (int32_t y = n; y < p.height - n; ++y) {
    clear_rows(r, y, y, 0, m - 1);
    clear_rows(r, y, y, 1, m);
    for (int32_t x = m; x < p.width - m; ++x) {
      std::vector<int> window(static_cast<std::size_t>(w * h + w + h));  // 0 behind its elements
      for (int32_t i = 0; i < w * h; ++i)
        window[static_cast<std::size_t>(i)] = p.at(x - m + i % w, y - n + i / w);
      const auto divided = [&](auto column_of) {
        int left = 0;
        int right = 0;
        for (int32_t row = 0; row < h; ++row) {
          const int32_t c = column_of(row);
          for (int32_t i = 0; i < c; ++i) left += window[static_cast<std::size_t>(row * w + i)];
          for (int32_t i = c + 1; i < w; ++i) right += window[static_cast<std::size_t>(row * w + i)];
        }
        return left - right;
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
    if (round % 2 == 0) {  // weak enough not to saturate
      for (uint8_t& p : source.pixels) p = static_cast<uint8_t>(p / 40);
    }
    ASSERT_EQ(run(NuvGradientByPrewitt0, source, m, n), plain_prewitt_0(source, m, n)) << m << ' ' << n;
    ASSERT_EQ(run(NuvGradientByPrewitt90, source, m, n), plain_prewitt_90(source, m, n)) << m << ' ' << n;
    ASSERT_EQ(run(NuvGradientByPrewitt, source, m, n), plain_four_directions(source, m, n)) << m << ' ' << n;
    ASSERT_EQ(run(NuvGradientByPrewitt, source, m, m), plain_four_directions(source, m, m)) << m;
  }
}

TEST(WindowGradients, TakeAnySize) {
  Random random(34);
  const TestImage source = noise(random, 20, 15);
  EXPECT_EQ(run(NuvGradientByPrewitt0, source, -3, 0), plain_prewitt_0(source, 1, 1));
  EXPECT_EQ(run(NuvGradientByPrewitt90, source, 0, -3), plain_prewitt_90(source, 1, 1));
  EXPECT_EQ(run(NuvGradientByPrewitt0, source, INT32_MAX, INT32_MAX), TestImage(20, 15));
  const TestImage untouched(20, 15, kSentinel);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 64), untouched);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, -1, -1), untouched);
  EXPECT_EQ(run(NuvGradientByPrewitt, source, 63, 63), TestImage(20, 15)) << "only bands";
  const TestImage large = noise(random, 130, 129);
  EXPECT_EQ(run(NuvGradientByPrewitt, large, 63, 63), plain_four_directions(large, 63, 63));
}

}  // namespace
