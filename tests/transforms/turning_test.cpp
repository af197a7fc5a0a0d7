#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint8_t kSentinel = 77;

// ---- flips and turns ----

// The image that has pixel(x, y) of the source at place(x, y).
template <class Place>
Bytes moved(const Bytes& source, int32_t width, int32_t height, int32_t pixel_bytes, Place place) {
  Bytes result(source.size());
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int32_t c = 0; c < pixel_bytes; ++c) {
        result[static_cast<std::size_t>(place(x, y) * pixel_bytes + c)] =
            source[static_cast<std::size_t>((y * width + x) * pixel_bytes + c)];
      }
    }
  }
  return result;
}

TEST(Turning, MovesEachPixelToItsPlace) {
  Random random(92);
  for (auto [width, height] : kOddSizes) {
    const int32_t w = width;
    const int32_t h = height;
    for (int32_t bytes : {1, 3, 4}) {
      Bytes source = random.bytes(static_cast<std::size_t>(w * h * bytes));
      Bytes result(source.size());
      Bytes back(source.size());
      const bool rgb = bytes == 3;
      if (bytes == 4) {
        NuvRGB32Rotate90Degree(source.data(), w, h, true, result.data());
        NuvRGB32Rotate90Degree(result.data(), h, w, false, back.data());
      } else {
        NuvImgRotate90DegreeCS(source.data(), w, h, rgb, result.data());
        NuvImgRotate90DegreeCCS(result.data(), h, w, rgb, back.data());
      }
      ASSERT_EQ(result, moved(source, w, h, bytes, [=](int32_t x, int32_t y) { return x * h + h - 1 - y; }));
      ASSERT_EQ(back, source);
      if (bytes == 4) continue;

      const Bytes flipped =
          moved(source, w, h, bytes, [=](int32_t x, int32_t y) { return (h - 1 - y) * w + x; });
      NuvFlipVertical(source.data(), w, h, rgb, result.data());
      ASSERT_EQ(result, flipped);
      NuvFlipVertical(result.data(), w, h, rgb);
      ASSERT_EQ(result, source);
      if (rgb) continue;

      NuvReverseImg(source.data(), w, h, result.data());
      ASSERT_EQ(result, Bytes(source.rbegin(), source.rend()));
      NuvFlipHorizontal(result.data(), w, h);
      ASSERT_EQ(result, flipped) << "half a turn and a mirror are the other mirror";
    }
  }
}

// ---- shifts of rows ----

void plain_shift_rows(const TestImage& p, double k, bool fine, TestImage& result) {
  const int32_t size = p.width * p.height;
  const auto pixel = [&](int32_t place) { return p.pixels[static_cast<std::size_t>(place)]; };
  int32_t shift = 0;
  for (int32_t y = 0; y < p.height; ++y, shift += static_cast<int32_t>(k * 4096)) {
    const int32_t first = shift > 0 ? 0 : (shift >> 12) + 2;
    const int32_t last = shift > 0 ? p.width - (shift >> 12) - 2 : p.width - 1;
    for (int32_t x = first; x <= last; ++x) {
      const int32_t place = x * 4096 + shift;
      const int32_t i = place >> 12;
      const int32_t weight = fine ? place - i * 4096 : 0;
      const int32_t from = y * p.width + i;
      const int32_t to = y * p.width + x;
      if (to < 0 || from < 0 || from + (weight != 0 ? 1 : 0) >= size) continue;
      const int32_t mixed =
          weight == 0 ? pixel(from) : ((4096 - weight) * pixel(from) + weight * pixel(from + 1)) >> 12;
      result.pixels[static_cast<std::size_t>(to)] = static_cast<uint8_t>(mixed);
    }
  }
}

TEST(ShiftPerRow, EqualsThePlainForm) {
  Random random(93);
  for (auto [width, height] : kOddSizes) {
    TestImage source = random.gray(width, height);
    for (double k : {0.0, 0.3, -0.3, 1.0, 2.71, -2.0, 40.5, -900.1, 1e5, -1e5, -1.6e5}) {
      for (bool fine : {false, true}) {
        TestImage result(width, height, kSentinel);
        TestImage expected = result;
        (fine ? NuvShiftXPerRowFine : NuvShiftXPerRowFast)(source.data(), width, height, k, result.data());
        plain_shift_rows(source, k, fine, expected);
        ASSERT_EQ(result, expected) << k << ' ' << fine;
      }
    }
  }
}

TEST(ShiftPerRow, LeavesTwoColumnsWithoutAShift) {
  TestImage source = draw({"12345", "67891"});
  TestImage result(5, 2);
  NuvShiftXPerRowFine(source.data(), 5, 2, 0, result.data());
  EXPECT_EQ(result, draw({"..345", "..891"}));
}

// ---- shifts of images ----

// A block of rows, then the whole result as one sequence of bytes, then the columns that fell free.
Bytes plain_shift(const Bytes& source, int32_t width, int32_t height, int32_t channels, int32_t dx,
                  int32_t dy, Bytes result) {
  const int32_t row = width * channels;
  for (int32_t y = 0; y < height; ++y) {
    if (y - dy < 0 || y - dy >= height) continue;
    std::copy_n(source.begin() + (y - dy) * row, row, result.begin() + y * row);
  }
  const int32_t size = row * height;
  const Bytes before = result;
  for (int32_t i = 0; i < size; ++i) {
    const int32_t from = i - dx * channels;
    const int32_t x = i % row / channels;
    const bool falls_free = dx < 0 ? x >= width + dx : x < dx;
    result[static_cast<std::size_t>(i)] = falls_free ? uint8_t{0} : before[static_cast<std::size_t>(from)];
  }
  return result;
}

TEST(ImageShift, ClearsColumnsAndKeepsRows) {
  Random random(94);
  for (int round = 0; round < 300; ++round) {
    const int32_t channels = round % 2 == 0 ? 1 : 3;
    const int32_t width = random.between(1, 20);
    const int32_t height = random.between(1, 12);
    Bytes source = random.bytes(static_cast<std::size_t>(width * height * channels));
    Bytes result = random.bytes(source.size());
    const int32_t dx = random.between(-22, 22);
    const int32_t dy = random.between(-13, 13);
    const Bytes expected = plain_shift(source, width, height, channels, dx, dy, result);
    NuvImageShift(source.data(), width, height, channels == 3, dx, dy, result.data());
    ASSERT_EQ(result, expected) << width << ' ' << height << ' ' << dx << ' ' << dy;
  }
  TestImage source(5, 4, 9);
  TestImage result(5, 4, 8);
  NuvImageShift(source.data(), 5, 4, false, INT32_MIN, INT32_MIN, result.data());
  EXPECT_EQ(result, TestImage(5, 4));
}

// ---- alignment ----

struct Aligned {
  int32_t mean;
  int32_t dx = 0;
  int32_t dy = 0;

  bool operator==(const Aligned& other) const {
    return mean == other.mean && dx == other.dx && dy == other.dy;
  }
};

Aligned plain_alignment(const Bytes& a, const Bytes& b, int32_t width, int32_t height, int32_t channels,
                        int32_t max_dx, int32_t max_dy, tagRECT r) {
  r = {std::max(max_dx, r.left), std::max(max_dy, r.top), std::min(r.right, width - max_dx - 1),
       std::min(r.bottom, height - max_dy - 1)};
  Aligned best{(r.right - r.left + 1) * (r.bottom - r.top + 1) * 255 * channels};
  if (r.right < r.left || r.bottom < r.top) return best;
  const int32_t count = (r.right - r.left) * (r.bottom - r.top) * channels;
  for (int32_t dx = -max_dx; dx <= max_dx; ++dx) {
    for (int32_t dy = -max_dy; dy <= max_dy; ++dy) {
      int32_t sum = 0;
      for (int32_t y = r.top; y < r.bottom; ++y) {
        for (int32_t x = r.left * channels; x < r.right * channels; ++x) {
          const int32_t i = y * width * channels + x;
          sum += std::abs(a[static_cast<std::size_t>(i)] -
                          b[static_cast<std::size_t>(i + (dy * width + dx) * channels)]);
        }
      }
      const int32_t mean = count == 0 ? 0 : sum / count;
      if (mean < best.mean) best = {mean, dx, dy};
    }
  }
  return best;
}

TEST(Alignment, EqualsTheWholeSearch) {
  Random random(95);
  for (int round = 0; round < 400; ++round) {
    const int32_t channels = round % 2 == 0 ? 1 : 3;
    const int32_t width = random.between(1, 50);
    const int32_t height = random.between(1, 60);
    Bytes first = random.bytes(static_cast<std::size_t>(width * height * channels));
    Bytes second = random.bytes(first.size());
    // Few levels: many shifts are equally good.
    if (round % 3 == 0) {
      for (uint8_t& v : first) v = static_cast<uint8_t>(v / 128);
      for (uint8_t& v : second) v = static_cast<uint8_t>(v / 96);
    }
    if (round % 3 == 1) NuvImageShift(first.data(), width, height, channels == 3, 2, -1, second.data());
    const int32_t max_dx = random.between(-1, 6);
    const int32_t max_dy = random.between(-1, 6);
    const tagRECT rect{random.between(-5, width), random.between(-5, height), random.between(-5, width + 5),
                       random.between(-5, height + 5)};
    Bytes result(first.size());
    Aligned found{0, kSentinel, kSentinel};
    found.mean = NuvShiftImg2BasedImg1(first.data(), second.data(), result.data(), width, height,
                                       channels == 3, max_dx, max_dy, rect, &found.dx, &found.dy);
    ASSERT_EQ(found, plain_alignment(first, second, width, height, channels, max_dx, max_dy, rect));
    ASSERT_EQ(result, plain_shift(second, width, height, channels, -found.dx, -found.dy, first));
  }
}

}  // namespace
