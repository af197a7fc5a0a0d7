#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

// ---- flips and turns ----

// The image that has pixel (x, y) of the source at index place(x, y).
template <class Place>
Bytes moved(const Bytes& source, int32_t width, int32_t height, int32_t pixel_bytes, Place place) {
  Bytes result(source.size());
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      std::copy_n(source.begin() + (y * width + x) * pixel_bytes, pixel_bytes,
                  result.begin() + place(x, y) * pixel_bytes);
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
      ASSERT_EQ(result, flipped) << "a half turn and one mirror equal the other mirror";
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
        TestImage result(width, height, 77);
        TestImage expected = result;
        (fine ? NuvShiftXPerRowFine : NuvShiftXPerRowFast)(source.data(), width, height, k, result.data());
        plain_shift_rows(source, k, fine, expected);
        ASSERT_EQ(result, expected) << k << ' ' << fine;
      }
    }
  }
}

// ---- alignment ----

using Aligned = std::array<int32_t, 3>;  // mean, dx, dy

Aligned plain_alignment(Bytes a, Bytes b, int32_t width, int32_t height, bool rgb, int32_t max_dx,
                        int32_t max_dy, tagRECT r) {
  r = {std::max(max_dx, r.left), std::max(max_dy, r.top), std::min(r.right, width - max_dx - 1),
       std::min(r.bottom, height - max_dy - 1)};
  Aligned best{(r.right - r.left + 1) * (r.bottom - r.top + 1) * (rgb ? 765 : 255)};
  if (r.right < r.left || r.bottom < r.top) return best;
  for (int32_t dx = -max_dx; dx <= max_dx; ++dx) {
    for (int32_t dy = -max_dy; dy <= max_dy; ++dy) {
      const tagRECT moved{r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
      const int32_t mean = NuvImgDifferenceInRect(a.data(), b.data(), rgb, width, r, moved);
      if (mean < best[0]) best = {mean, dx, dy};
    }
  }
  return best;
}

TEST(Alignment, EqualsTheWholeSearch) {
  Random random(95);
  for (int round = 0; round < 400; ++round) {
    const bool rgb = round % 2 != 0;
    const int32_t width = random.between(1, 50);
    const int32_t height = random.between(1, 60);
    Bytes first = random.bytes(static_cast<std::size_t>(width * height * (rgb ? 3 : 1)));
    Bytes second = random.bytes(first.size());
    // With few levels, many shifts are equally good.
    if (round % 3 == 0) {
      for (uint8_t& v : first) v = static_cast<uint8_t>(v / 128);
      for (uint8_t& v : second) v = static_cast<uint8_t>(v / 96);
    }
    if (round % 3 == 1) NuvImageShift(first.data(), width, height, rgb, 2, -1, second.data());
    const int32_t max_dx = random.between(-1, 6);
    const int32_t max_dy = random.between(-1, 6);
    const tagRECT rect{random.between(-5, width), random.between(-5, height), random.between(-5, width + 5),
                       random.between(-5, height + 5)};
    Bytes result(first.size());
    Aligned found{};
    found[0] = NuvShiftImg2BasedImg1(first.data(), second.data(), result.data(), width, height, rgb, max_dx,
                                     max_dy, rect, &found[1], &found[2]);
    ASSERT_EQ(found, plain_alignment(first, second, width, height, rgb, max_dx, max_dy, rect));
    NuvImageShift(second.data(), width, height, rgb, -found[1], -found[2], first.data());
    ASSERT_EQ(result, first);
  }
}

}  // namespace
