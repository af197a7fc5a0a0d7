#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "NuvImgSDK2014DLL.h"
#include "frame/arithmetic.h"
#include "images.h"

namespace {

using nuv::truncated;

constexpr double kAngles[] = {
    0, 30, 90, 91.5, 180, -45, 359, 1e300, std::numeric_limits<double>::quiet_NaN()};

TestImage plain_rotated(const TestImage& p, double angle) {
  const double a = angle * 3.1415926 / 180;
  const int32_t c = truncated(std::cos(a) * 1024);
  const int32_t s = truncated(std::sin(a) * 1024);
  int32_t least[2] = {INT32_MAX, INT32_MAX};
  int32_t most[2] = {INT32_MIN, INT32_MIN};
  for (int32_t x : {0, p.width - 1}) {
    for (int32_t y : {0, p.height - 1}) {
      const int32_t at[2] = {(x * c - y * s) >> 10, (x * s + y * c) >> 10};
      for (int i : {0, 1}) {
        least[i] = std::min(least[i], at[i]);
        most[i] = std::max(most[i], at[i]);
      }
    }
  }
  const int32_t c2 = truncated(std::cos(-a) * 1024);
  const int32_t s2 = truncated(std::sin(-a) * 1024);
  TestImage result(most[0] - least[0] + 1, most[1] - least[1] + 1);
  for (int32_t y = least[1]; y <= most[1]; ++y) {
    for (int32_t x = least[0]; x <= most[0]; ++x) {
      const int32_t sx = (x * c2 - y * s2) >> 10;
      const int32_t sy = (x * s2 + y * c2) >> 10;
      if (sx >= 0 && sx < p.width && sy >= 0 && sy < p.height) {
        result.at(x - least[0], y - least[1]) = p.at(sx, sy);
      }
    }
  }
  return result;
}

TestImage rotated(TestImage source, double angle) {
  TestImage result;
  const std::unique_ptr<uint8_t[]> pixels(
      NuvRotateImgByCCS(source.data(), source.width, source.height, angle, &result.width, &result.height));
  if (pixels) result.pixels.assign(pixels.get(), pixels.get() + result.width * result.height);
  return result;
}

TEST(Rotation, EqualsThePlainForm) {
  Random random(96);
  for (auto [width, height] : kOddSizes) {
    const TestImage source = random.gray(width, height);
    for (double angle : kAngles) {
      const TestImage result = rotated(source, angle);
      if (std::isnan(angle)) continue;
      ASSERT_TRUE(result == plain_rotated(source, angle)) << angle;
    }
    ASSERT_EQ(rotated(source, 0), source);
  }
}

TEST(Rotation, TellsItsSize) {
  const TestImage turned = rotated(TestImage(640, 480, 1), 90);
  EXPECT_EQ(turned.width, 480);
  EXPECT_EQ(turned.height, 639);
  const TestImage none = rotated(TestImage(0, 5), 30);
  EXPECT_TRUE(none.width == 0 && none.height == 0 && none.pixels.empty());
  const TestImage large = rotated(TestImage(100000, 1), 45);
  EXPECT_TRUE(large.width > 70000 && large.height > 70000 && large.pixels.empty()) << "no result of 5 GB";
}

using Copy = void (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, double, uint8_t*, int32_t, int32_t);
using CopyAndTell = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, double, int32_t, uint8_t*, int32_t,
                             int32_t);

struct Member {
  int32_t channels;
  int32_t left_out;  // columns and rows that the form that tells takes as outside
  Copy copy;
  CopyAndTell copy_and_tell;
};
const Member kMembers[] = {{1, 1, NuvCopyRectFromRotateCCS, NuvCopyRectFromRotateCCS},
                           {3, 0, NuvRgbCopyRectFromRotateCCS, NuvRgbCopyRectFromRotateCCS}};

struct Case {
  int32_t w, h, x0, y0, columns, rows;
  double angle;

  explicit Case(Random& random)
      : w(random.between(1, 60)),
        h(random.between(1, 60)),
        x0(random.between(-10, w)),
        y0(random.between(-10, h)),
        columns(random.between(1, 70)),
        rows(random.between(1, 20)),
        angle(random.between(0, 4) == 0 ? kAngles[random.between(0, 8)]
                                        : random.between(-3600, 3600) / 10.0) {}

  // The image with value(x, y, c) at each position; first(j) is where row j begins.
  template <class First, class Value>
  std::vector<uint8_t> copy(int32_t channels, double turn, First first, Value value) const {
    const int32_t cosine = truncated(std::cos(turn * 3.1415 / 180) * 65536);
    const int32_t sine = truncated(std::sin(turn * 3.1415 / 180) * 65536);
    std::vector<uint8_t> result;
    for (int32_t j = 0; j < rows; ++j) {
      for (int32_t i = first(j); i < first(j) + columns; ++i) {
        for (int32_t c = 0; c < channels; ++c) {
          result.push_back(static_cast<uint8_t>(
              value(x0 * 65536 + i * cosine - j * sine, y0 * 65536 + i * sine + j * cosine, c)));
        }
      }
    }
    return result;
  }
};

TEST(TurnedRectangle, EqualsThePlainForm) {
  Random random(97);
  for (int round = 0; round < 600; ++round) {
    const Member& member = kMembers[round % 2];
    const Case k(random);
    std::vector<uint8_t> source = random.bytes(static_cast<std::size_t>(k.w * k.h * member.channels));
    // Pixels follow each other as in memory, and the last row is repeated.
    const auto pixel = [&](int32_t place, int32_t c) -> int32_t {
      while (place >= k.w * k.h) place -= k.w;
      return source[static_cast<std::size_t>(place * member.channels + c)];
    };
    bool outside = false;
    const auto bilinear = [&](int32_t left_out, int32_t background) {
      return k.copy(
          member.channels, k.angle, [](int32_t) { return 0; },
          [&, left_out, background](int32_t x, int32_t y, int32_t c) {
            const int32_t xi = x >> 16;
            const int32_t yi = y >> 16;
            if (xi < 0 || xi >= k.w - left_out || yi < 0 || yi >= k.h - left_out) {
              outside = true;
              return background;
            }
            const int32_t fx = x - xi * 65536;
            const int32_t fy = y - yi * 65536;
            const auto row_value = [&](int32_t place) {
              return (pixel(place, c) * (65536 - fx) + pixel(place + 1, c) * fx) >> 16;
            };
            const int32_t place = yi * k.w + xi;
            return (row_value(place) * (65536 - fy) + row_value(place + k.w) * fy) >> 16;
          });
    };
    std::vector<uint8_t> result(static_cast<std::size_t>(k.columns * k.rows * member.channels), 77);
    member.copy(source.data(), k.w, k.h, k.x0, k.y0, k.angle, result.data(), k.columns, k.rows);
    ASSERT_EQ(result, bilinear(0, 0)) << k.angle;
    outside = false;
    const std::vector<uint8_t> expected = bilinear(member.left_out, 9);
    ASSERT_EQ(member.copy_and_tell(source.data(), k.w, k.h, k.x0, k.y0, k.angle, 256 + 9, result.data(),
                                   k.columns, k.rows),
              outside);
    ASSERT_EQ(result, expected) << k.angle;
    if (member.channels == 3) continue;

    const double shift_angle = random.between(-900, 900) / 10.0;
    const double turn = k.angle > 90 ? -(180 - k.angle) : k.angle;
    const int32_t step = truncated(-std::tan((-turn + shift_angle - 90) * 3.14159 / 180) * 4096);
    NuvCopyRectFromRotateAndShiftFast(source.data(), k.w, k.h, k.x0, k.y0, k.angle, shift_angle,
                                      result.data(), k.columns, k.rows);
    ASSERT_EQ(result, k.copy(
                          1, turn, [=](int32_t j) { return ((j * step) >> 12) + 1; },
                          [&](int32_t x, int32_t y, int32_t) {
                            const int32_t xi = x >> 16;
                            const int32_t yi = y >> 16;
                            return xi >= 0 && xi < k.w && yi >= 0 && yi < k.h ? pixel(yi * k.w + xi, 0) : 0;
                          }))
        << k.angle << ' ' << shift_angle;
  }
}

TEST(TurnedRectangle, TheFormsDifferInTheLastColumn) {
  TestImage source = draw({"1234", "5678", "9123"});
  std::vector<uint8_t> gray(8);
  EXPECT_TRUE(NuvCopyRectFromRotateCCS(source.data(), 4, 3, 0, 0, 0, 7, gray.data(), 4, 2));
  EXPECT_EQ(gray, (std::vector<uint8_t>{1, 2, 3, 7, 5, 6, 7, 7}));
  NuvCopyRectFromRotateCCS(source.data(), 4, 3, 0, 1, 0, gray.data(), 4, 2);
  EXPECT_EQ(gray, (std::vector<uint8_t>{5, 6, 7, 8, 9, 1, 2, 3}));
  std::vector<uint8_t> rgb = Random(1).bytes(36);
  std::vector<uint8_t> copy(36);
  EXPECT_FALSE(NuvRgbCopyRectFromRotateCCS(rgb.data(), 4, 3, 0, 0, 0, 7, copy.data(), 4, 3));
  EXPECT_EQ(copy, rgb);
}

}  // namespace
