#include <gmock/gmock.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

using Box = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);

// An image of RGB pixels is held as a gray image with three columns per pixel.
TestImage run(Box box, int32_t channels, TestImage source, int32_t M, int32_t N, bool succeeds = true) {
  TestImage result(source.width, source.height, kSentinel);
  EXPECT_EQ(box(source.data(), source.width / channels, source.height, M, N, result.data()), succeeds);
  return result;
}

// The mean of byte c of the pixels in the window of half sizes hx and hy around (x, y).
uint8_t mean(const TestImage& p, int32_t channels, int32_t c, int32_t x, int32_t y, int32_t hx, int32_t hy) {
  uint32_t sum = 0;
  for (int32_t dy = -hy; dy <= hy; ++dy) {
    for (int32_t dx = -hx; dx <= hx; ++dx) sum += p.at((x + dx) * channels + c, y + dy);
  }
  const auto area = static_cast<uint32_t>((2 * hx + 1) * (2 * hy + 1));
  return static_cast<uint8_t>(sum * ((1U << 24) / area) >> 24);
}

TestImage plain(const TestImage& p, int32_t channels, int32_t M, int32_t N, bool shrinks) {
  TestImage result(p.width, p.height);
  const int32_t last_x = p.width / channels - 1;
  const int32_t last_y = p.height - 1;
  for (int32_t y = 0; y <= last_y; ++y) {
    for (int32_t i = 0; i < p.width; ++i) {
      const int32_t x = i / channels;
      const int32_t c = i % channels;
      result.at(i, y) =
          shrinks ? mean(p, channels, c, x, y, std::min({M, x, last_x - x}), std::min({N, y, last_y - y}))
                  : mean(p, channels, c, std::clamp(x, M, last_x - M), std::clamp(y, N, last_y - N), M, N);
    }
  }
  return result;
}

const struct {
  Box box;
  int32_t channels;
  bool shrinks;  // at the border; the area is then limited, too
} kMembers[] = {{NuvGryAverageFilterFast, 1, true},
                {NuvGryAverageFilterFastNonBoundary, 1, false},
                {NuvRGBAverageFilterFast, 3, true},
                {NuvRGBAverageFilterFastNonBoundary, 3, false}};

TEST(BoxFilters, EqualTheMeansOfTheirWindows) {
  Random random(51);
  for (const auto& [width, height] : kOddSizes) {
    for (const auto& [box, channels, shrinks] : kMembers) {
      TestImage source = random.gray(width * channels, height);
      if (random.between(0, 2) == 0) std::fill(source.pixels.begin(), source.pixels.end(), uint8_t{255});
      // Half widths up to what fits, in random steps, so that the doubling meets all binary digits.
      for (int32_t M = 0; M <= std::min((width - 1) / 2, 20); M += random.between(1, 3)) {
        const int32_t N = random.between(0, std::min((height - 1) / 2, 12));
        ASSERT_EQ(run(box, channels, source, M, N), plain(source, channels, M, N, shrinks))
            << channels << ' ' << shrinks << ' ' << width << 'x' << height << ' ' << M << ' ' << N;
      }
    }
  }
}

TEST(BoxFilters, WithoutLimitsAreTheSame) {
  Random random(52);
  TestImage source = random.gray(27, 8);
  TestImage result(27, 8);
  NuvGryAverageFilter(source.data(), 27, 8, 2, 70, result.data());
  EXPECT_EQ(result, run(NuvGryAverageFilterFast, 1, source, 2, 3))
      << "half sizes are limited to those that fit";
  NuvRGBAverageFilter(source.data(), 9, 8, 70, -2, result.data());
  EXPECT_EQ(result, run(NuvRGBAverageFilterFast, 3, source, 4, 0)) << "below 0 counts as 0";
  NuvGryAverageFilterByX(source.data(), 27, 8, -3, result.data());
  EXPECT_EQ(result, run(NuvGryAverageFilterFastNonBoundary, 1, source, 3, 0));
  NuvGryAverageFilterByY(source.data(), 27, 8, -3, result.data());
  EXPECT_EQ(result, run(NuvGryAverageFilterFastNonBoundary, 1, source, -9, 3));
}

TEST(BoxFilters, Limits) {
  for (const auto& [box, channels, shrinks] : kMembers) {
    run(box, channels, TestImage(4096 * channels, 1), 1, 0);
    const TestImage wide(4097 * channels, 1, 1);
    EXPECT_EQ(run(box, channels, wide, 1, 0, false), TestImage(wide.width, 1, kSentinel));

    const TestImage large(129 * channels, 129, 200);
    const TestImage most = run(box, channels, large, 63, 63);
    EXPECT_EQ(most.at(64 * channels, 64), shrinks ? 0 : 199);
    EXPECT_EQ(most.at(62 * channels, 64), 199) << "a smaller window, or the repeated mean of column 63";
    run(box, channels, large, 64, 63, !shrinks);
  }
}

}  // namespace
