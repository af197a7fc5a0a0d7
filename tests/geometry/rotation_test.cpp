#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "NuvImgSDK2014DLL.h"
#include "core/arithmetic.h"
#include "images.h"

namespace {

using nuv::truncated;
using Bytes = std::vector<uint8_t>;

TestImage rotated(TestImage source, double angle) {
  TestImage result;
  const std::unique_ptr<uint8_t[]> pixels(
      NuvRotateImgByCCS(source.data(), source.width, source.height, angle, &result.width, &result.height));
  if (pixels) result.pixels.assign(pixels.get(), pixels.get() + result.width * result.height);
  return result;
}

TEST(Rotation, TruncatesToThePixelUpAndLeft) {
  EXPECT_EQ(rotated(draw({"123", "456"}), 0), draw({"123", "456"}));
  EXPECT_EQ(rotated(draw({"12", "34"}), 45), draw({".1", "31"}));  // cosine and sine are 724
  EXPECT_EQ(rotated(draw({"123", "456"}), 180), draw({"211", "211"})) << "cosine and sine are -1023 and 0";
}

TEST(Rotation, ReturnsTheSize) {
  const TestImage turned = rotated(TestImage(640, 480, 1), 90);
  EXPECT_TRUE(turned.width == 480 && turned.height == 639);
  const TestImage none = rotated(TestImage(0, 5), 30);
  EXPECT_TRUE(none.width == 0 && none.height == 0 && none.pixels.empty());
  const TestImage large = rotated(TestImage(100000, 1), 45);
  EXPECT_TRUE(large.width > 70000 && large.height > 70000 && large.pixels.empty()) << "no result of 5 GB";
}

using CopyAndReport = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, double, int32_t, uint8_t*,
                               int32_t, int32_t);

struct Form {
  int32_t channels;
  int32_t left_out;  // columns and rows that count as outside
  CopyAndReport copy_and_report;
};
const Form kForms[] = {{1, 1, NuvCopyRectFromRotateCCS}, {3, 0, NuvRgbCopyRectFromRotateCCS}};

TEST(TurnedRectangle, EqualsThePlainForm) {
  const double angles[] = {0, 90, 180, 270, std::numeric_limits<double>::quiet_NaN()};
  Random random(97);
  for (int round = 0; round < 600; ++round) {
    const Form& form = kForms[round % 2];
    const int32_t channels = form.channels;
    const int32_t width = random.between(1, round % 10 < 2 ? 400 : 60);
    const int32_t height = random.between(1, 60);
    const int32_t x0 = random.between(-10, width) + random.between(0, 1) * 65536;  // positions wrap
    const int32_t y0 = random.between(-10, height);
    const double angle = round % 10 < 2 ? angles[random.between(0, 4)] : random.between(-3600, 3600) / 10.0;
    const int32_t columns = random.between(1, 300);
    const int32_t rows = random.between(1, 20);
    Bytes source = random.bytes(static_cast<std::size_t>(width * height * channels));
    Bytes result(static_cast<std::size_t>(columns * rows * channels));
    const bool reported = form.copy_and_report(source.data(), width, height, x0, y0, angle, 256 + 9,
                                               result.data(), columns, rows);

    const int32_t cosine = truncated(std::cos(angle * 3.1415 / 180) * 65536);
    const int32_t sine = truncated(std::sin(angle * 3.1415 / 180) * 65536);
    bool outside = false;
    for (int32_t i = 0; i < columns * rows * channels; ++i) {
      const int32_t column = i / channels % columns;
      const int32_t row = i / channels / columns;
      const int32_t x = x0 * 65536 + column * cosine - row * sine;
      const int32_t y = y0 * 65536 + column * sine + row * cosine;
      const int32_t xi = x >> 16;
      const int32_t yi = y >> 16;
      int32_t expected = 9;
      if (xi < 0 || xi >= width - form.left_out || yi < 0 || yi >= height - form.left_out) {
        outside = true;
      } else {
        // Pixels follow each other as in memory, and the last row is repeated after the image.
        const auto pixel = [&](int32_t place) -> int32_t {
          while (place >= width * height) place -= width;
          return source[static_cast<std::size_t>(place * channels + i % channels)];
        };
        const auto row_value = [&](int32_t place) {
          return (pixel(place) * (65536 - (x & 65535)) + pixel(place + 1) * (x & 65535)) >> 16;
        };
        const int32_t place = yi * width + xi;
        expected = (row_value(place) * (65536 - (y & 65535)) + row_value(place + width) * (y & 65535)) >> 16;
      }
      ASSERT_EQ(result[static_cast<std::size_t>(i)], expected) << angle;
    }
    ASSERT_EQ(reported, outside);
  }
}

TEST(TurnedAndShearedRectangle, TakesPixelsOfItsLines) {
  TestImage source = draw({"12345", "67891", "23456", "78912"});
  const auto of = [&](double angle, double shift_angle) {
    TestImage result(3, 4);
    NuvCopyRectFromRotateAndShiftFast(source.data(), 5, 4, 0, 0, angle, shift_angle, result.data(), 3, 4);
    return result;
  };
  EXPECT_EQ(of(0, 90), draw({"234", "789", "345", "891"})) << "each row begins at place 1 of its line";
  EXPECT_EQ(of(0, 45), draw({"234", "789", "456", "12."})) << "each row begins 4095/4096 of a place later";
  EXPECT_EQ(of(180, 90), of(0, 90)) << "lines have no direction";
}

}  // namespace
