#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

// ---- extremes, as passes of pairs ----

using Extremes = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Pixels = std::vector<uint8_t>;

// Forward, backward, and both once more for a reach of 5. A late start reads one pixel behind.
Pixels passes(const Pixels& line, bool greatest, int places, bool late) {
  const auto extreme = [=](uint8_t a, uint8_t b) { return greatest ? std::max(a, b) : std::min(a, b); };
  const std::size_t n = line.size();
  Pixels a = line;
  for (std::size_t i = 1; i < n; ++i) {
    a[i] = late ? extreme(line[i < 2 ? 0 : i - 2], line[i - 1]) : extreme(line[i - 1], line[i]);
  }
  for (std::size_t i = 0; i + 1 < n; ++i) a[i] = extreme(a[i], a[i + 1]);
  if (places == 3) return a;
  for (std::size_t i = n - 1; i > 0; --i) a[i] = extreme(a[i], a[i - 1]);
  for (std::size_t i = 0; i + 1 < n; ++i) a[i] = extreme(a[i], a[i + 1]);
  return a;
}

TEST(Extremes, EqualTheirPasses) {
  struct Member {
    Extremes filter;
    bool greatest;
    int places;
    bool along_rows;
    bool late;
  };
  const Member members[] = {{NuvGryImgMaxFilter3xInRow, true, 3, true, false},
                            {NuvGryImgMaxFilter5xInRow, true, 5, true, false},
                            {NuvGryImgMaxFilter3xInCol, true, 3, false, false},
                            {NuvGryImgMaxFilter5xInCol, true, 5, false, false},
                            {NuvGryImgMinFilter3xInRow, false, 3, true, false},
                            {NuvGryImgMinFilter5xInRow, false, 5, true, false},
                            {NuvGryImgMinFilter3xInCol, false, 3, false, false},
                            {NuvGryImgMinFilter5xInCol, false, 5, false, true}};
  Random random(53);
  std::vector<std::pair<int32_t, int32_t>> sizes(std::begin(kOddSizes), std::end(kOddSizes));
  sizes.insert(sizes.end(), {{4, 2}, {2, 4}, {5, 5}, {70, 70}});
  for (const Member& member : members) {
    for (const auto& [width, height] : sizes) {
      TestImage source = random.gray(width, height);
      TestImage result(width, height, kSentinel);
      member.filter(source.data(), width, height, result.data());
      for (int32_t i = 0; i < (member.along_rows ? height : width); ++i) {
        Pixels line;
        Pixels got;
        for (int32_t j = 0; j < (member.along_rows ? width : height); ++j) {
          line.push_back(member.along_rows ? source.at(j, i) : source.at(i, j));
          got.push_back(member.along_rows ? result.at(j, i) : result.at(i, j));
        }
        ASSERT_EQ(got, passes(line, member.greatest, member.places, member.late))
            << &member - members << ' ' << width << 'x' << height << ' ' << i;
      }
    }
  }
}

// ---- medians, by a histogram that slides along the row ----

class SlidingMedian {
 public:
  explicit SlidingMedian(const Pixels& window)
      : area_(static_cast<int>(window.size())), rank_(area_ / 2 + 1) {
    for (uint8_t v : window) ++bins_[v];
    int reached = bins_[0];
    while (reached < rank_) reached += bins_[++median_];
    less_ = reached - bins_[median_];
    greater_ = area_ - reached;
  }

  void exchange(uint8_t out, uint8_t in) {
    --bins_[out];
    ++bins_[in];
    less_ += (in < median_) - (out < median_);
    greater_ += (in > median_) - (out > median_);
  }
  uint8_t adjusted() {
    const bool down = less_ >= rank_;
    int& near = down ? less_ : greater_;
    int& far = down ? greater_ : less_;
    while (near >= rank_) {
      far += bins_[median_];
      do {
        median_ += down ? -1 : 1;
      } while (bins_[median_] == 0);
      near -= bins_[median_];
    }
    return static_cast<uint8_t>(median_);
  }

 private:
  std::array<int, 256> bins_{};
  int area_;
  int rank_;
  int median_ = 0;
  int less_;
  int greater_;
};

// The window's columns first..last, clipped at top and bottom alone; columns may lie behind the row's end.
Pixels window_of(const Pixels& p, int32_t width, int32_t height, int32_t first, int32_t last, int32_t y,
                 int32_t N) {
  Pixels window;
  for (int32_t row = std::max(y - N, 0); row <= std::min(y + N, height - 1); ++row) {
    for (int32_t c = first; c <= last; ++c) window.push_back(p[static_cast<std::size_t>(row * width + c)]);
  }
  return window;
}

uint8_t mean(const Pixels& window) {
  int sum = 0;
  for (uint8_t v : window) sum += v;
  return static_cast<uint8_t>(sum / static_cast<int>(window.size()));
}

// The pixels have M more behind them.
TestImage plain_fast_median(const Pixels& p, int32_t width, int32_t height, int32_t M, int32_t N) {
  TestImage result(width, height);
  for (int32_t y = 0; y < height; ++y) {
    const auto window = [&, y](int32_t first, int32_t last) {
      return window_of(p, width, height, first, last, y, N);
    };
    SlidingMedian median(window(0, 2 * M));
    for (int32_t x = M; x < width - M - 1; ++x) {
      result.at(x, y) = median.adjusted();
      const Pixels out = window(x - M, x - M);
      const Pixels in = window(x + M + 1, x + M + 1);
      for (std::size_t i = 0; i < in.size(); ++i) median.exchange(out[i], in[i]);
    }
    for (int32_t x = 0; x < M; ++x) result.at(x, y) = mean(window(0, x + M));
    for (int32_t x = width - M - 1; x < width; ++x) result.at(x, y) = mean(window(x - M, x + M));
  }
  return result;
}

TestImage plain_median_with_zeros(const Pixels& p, int32_t width, int32_t height, int32_t M, int32_t N) {
  TestImage result(width, height);
  for (int32_t y = N; y < height - N; ++y) {
    for (int32_t x = M; x < width - M; ++x) {
      Pixels window = window_of(p, width, height, x - M, x + M, y, N);
      std::nth_element(window.begin(), window.begin() + static_cast<std::ptrdiff_t>(window.size() / 2),
                       window.end());
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
  struct Case {
    int32_t width;
    int32_t height;
    int32_t M;
    int32_t N;
  };
  std::vector<Case> cases;
  for (const auto& [width, height] : kOddSizes) {
    for (const auto& [M, N] : {std::pair{0, 0}, {1, 1}, {2, 2}, {1, 2}, {7, 7}, {0, 3}, {3, 0}, {2, 40}}) {
      if (width > 2 * M) cases.push_back({width, height, M, N});
    }
  }
  // Strips with a seam, counts of 8 bits and of 16.
  cases.insert(cases.end(), {{300, 20, 7, 7}, {200, 40, 15, 15}});
  for (const Case& c : cases) {
    // From a few far values, between which there are gaps, to all of them.
    const int32_t step = random.between(1, 85);
    Pixels pixels(static_cast<std::size_t>(c.width * c.height + c.M));
    for (uint8_t& p : pixels) p = static_cast<uint8_t>(random.between(0, 255 / step) * step);
    ASSERT_EQ(run(NuvGryFastMedianFilter, pixels, c.width, c.height, c.M, c.N),
              plain_fast_median(pixels, c.width, c.height, c.M, c.N))
        << c.width << 'x' << c.height << ' ' << c.M << ' ' << c.N;
    const int32_t m = std::max(c.M, 1);
    const int32_t n = std::max(c.N, 1);
    ASSERT_EQ(run(NuvGryImgMedianBoundary0, pixels, c.width, c.height, c.M, c.N),
              plain_median_with_zeros(pixels, c.width, c.height, m, n))
        << c.width << 'x' << c.height << ' ' << c.M << ' ' << c.N;
  }
}

TEST(FastMedian, OfAnEvenWindowKeepsTheValueBefore) {
  // Of the six pixels in the window the middle two are 3 and 3 at x = 1, 3 and 9 at x = 2, and 9 and 9 at x =
  // 3.
  TestImage source = draw({"333999", "339999", "......"});
  TestImage result(6, 2);
  NuvGryFastMedianFilter(source.data(), 6, 2, 1, 1, result.data());
  EXPECT_EQ(result.at(1, 0), 3);
  EXPECT_EQ(result.at(2, 0), 3);
  EXPECT_EQ(result.at(3, 0), 9);
}

TEST(Medians, TakeAnySize) {
  Random random(55);
  const Pixels pixels = random.bytes(12 * 9 + 5);
  for (int32_t extreme : {INT32_MIN, INT32_MAX}) {
    run(NuvGryImgMedianBoundary0, pixels, 12, 9, extreme, extreme);
    EXPECT_EQ(run(NuvGryFastMedianFilter, pixels, 12, 9, INT32_MAX, extreme), TestImage(12, 9, kSentinel));
  }
  EXPECT_EQ(run(NuvGryImgMedianBoundary0, pixels, 12, 9, INT32_MAX, 1), TestImage(12, 9));
  EXPECT_EQ(run(NuvGryImgMedianBoundary0, pixels, 12, 9, -5, 0),
            plain_median_with_zeros(pixels, 12, 9, 1, 1));
  EXPECT_EQ(run(NuvGryFastMedianFilter, pixels, 12, 9, 5, INT32_MAX), plain_fast_median(pixels, 12, 9, 5, 9));
  EXPECT_EQ(run(NuvGryFastMedianFilter, pixels, 12, 9, INT32_MIN, INT32_MIN).pixels,
            Pixels(pixels.begin(), pixels.end() - 5));
  const Pixels large = random.bytes(263 * 259);  // counts beyond 16 bits
  EXPECT_EQ(run(NuvGryImgMedianBoundary0, large, 263, 259, 130, 128),
            plain_median_with_zeros(large, 263, 259, 130, 128));
}

}  // namespace
