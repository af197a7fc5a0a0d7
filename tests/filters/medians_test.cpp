// The tests of medians.cpp, and through it of median_bins.cpp and median_networks.cpp.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

using Pixels = std::vector<uint8_t>;

// The window of columns first..last, clipped at top and bottom only. Columns may lie past the end of the row.
Pixels window_of(const Pixels& p, int32_t width, int32_t height, int32_t first, int32_t last, int32_t y,
                 int32_t N) {
  Pixels window;
  for (int32_t row = std::max(y - N, 0); row <= std::min(y + N, height - 1); ++row) {
    for (int32_t c = first; c <= last; ++c) window.push_back(p[static_cast<std::size_t>(row * width + c)]);
  }
  return window;
}

uint8_t mean(const Pixels& window) {
  return static_cast<uint8_t>(std::accumulate(window.begin(), window.end(), 0) /
                              static_cast<int>(window.size()));
}

// The image is followed by M more pixels.
TestImage plain_fast_median(const Pixels& p, int32_t width, int32_t height, int32_t M, int32_t N) {
  TestImage result(width, height);
  for (int32_t y = 0; y < height; ++y) {
    uint8_t median = 255;
    for (int32_t x = 0; x < width; ++x) {
      Pixels window = window_of(p, width, height, std::max(x - M, 0), x + M, y, N);
      if (x < M || x >= width - M - 1) {
        result.at(x, y) = mean(window);
      } else {
        std::sort(window.begin(), window.end());
        median = std::clamp(median, window[(window.size() - 1) / 2], window[window.size() / 2]);
        result.at(x, y) = median;
      }
    }
  }
  return result;
}

TestImage plain_median_with_zeros(const Pixels& p, int32_t width, int32_t height, int32_t M, int32_t N) {
  TestImage result(width, height);
  for (int32_t y = N; y < height - N; ++y) {
    for (int32_t x = M; x < width - M; ++x) {
      Pixels window = window_of(p, width, height, x - M, x + M, y, N);
      std::sort(window.begin(), window.end());
      result.at(x, y) = window[window.size() / 2];
    }
  }
  return result;
}

using Median = void (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);

TestImage run(Median median, Pixels pixels, int32_t width, int32_t height, int32_t M, int32_t N) {
  TestImage result(width, height, kSentinel);
  median(pixels.data(), width, height, M, N, result.data());
  return result;
}

TEST(Medians, EqualTheirPlainForms) {
  Random random(54);
  const auto compare = [&random](int32_t width, int32_t height, int32_t M, int32_t N) {
    // Images range from a few values far apart to all values.
    const int32_t step = random.between(1, 85);
    Pixels pixels(static_cast<std::size_t>(width * height + M));
    for (uint8_t& p : pixels) p = static_cast<uint8_t>(random.between(0, 255 / step) * step);
    ASSERT_EQ(run(NuvGryFastMedianFilter, pixels, width, height, M, N),
              plain_fast_median(pixels, width, height, M, N))
        << M << ' ' << N;
    ASSERT_EQ(run(NuvGryImgMedianBoundary0, pixels, width, height, M, N),
              plain_median_with_zeros(pixels, width, height, std::max(M, 1), std::max(N, 1)))
        << M << ' ' << N;
  };
  for (const auto& [width, height] : kOddSizes) {
    for (const auto& [M, N] : {std::pair{0, 0}, {1, 1}, {2, 2}, {1, 2}, {7, 7}, {0, 3}, {3, 0}, {2, 40}}) {
      if (width > 2 * M) compare(width, height, M, N);
    }
  }
  // Counts of 8 and of 16 bits. Windows of 255 pixels are the largest whose counts have 8 bits.
  compare(300, 20, 7, 7);
  compare(60, 40, 7, 8);
  compare(60, 40, 8, 8);
  compare(200, 40, 15, 15);
}

TEST(Medians, WorkForAnySize) {
  Random random(55);
  const Pixels pixels = random.bytes(12 * 9 + 5);
  EXPECT_EQ(run(NuvGryFastMedianFilter, pixels, 12, 9, 6, 1), TestImage(12, 9, kSentinel));
  EXPECT_EQ(run(NuvGryFastMedianFilter, pixels, 12, 9, -1, -1).pixels,
            Pixels(pixels.begin(), pixels.end() - 5));
  EXPECT_EQ(run(NuvGryImgMedianBoundary0, pixels, 12, 9, 6, 1), TestImage(12, 9));
  const Pixels large = random.bytes(263 * 259);  // needs counts of 32 bits
  EXPECT_EQ(run(NuvGryImgMedianBoundary0, large, 263, 259, 130, 128),
            plain_median_with_zeros(large, 263, 259, 130, 128));
}

}  // namespace
