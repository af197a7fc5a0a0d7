#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "geometry/byte_images.h"
#include "images.h"

namespace {

int32_t plain_sample(const Source& p, int32_t x, int32_t y, int32_t c) {
  const int32_t xi = x >> 16;
  const int32_t yi = y >> 16;
  const int32_t fx = x & 65535;
  const int32_t fy = y & 65535;
  const int32_t right = std::min(xi + 1, p.width - 1);
  const int32_t below = std::min(yi + 1, p.height - 1);
  const auto row_value = [&](int32_t row) {
    return (p.at(xi, row, c) * (65536 - fx) + p.at(right, row, c) * fx) >> 16;
  };
  return (row_value(yi) * (65536 - fy) + row_value(below) * fy) >> 16;
}

TEST(Resizing, EqualsThePlainForm) {
  Random random(101);
  for (int round = 0; round < 300; ++round) {
    // Some results have several strips.
    const int32_t wide = round % 50 < 2 ? 2000 : 60;
    const int32_t columns = random.between(1, wide);
    const int32_t rows = random.between(1, 60);
    Source p(random, random.between(1, wide), random.between(1, 40), round % 2 == 0 ? 1 : 3);
    const int32_t step_x = (p.width - 1) * 65536 / std::max(columns - 1, 1);
    const int32_t step_y = (p.height - 1) * 65536 / std::max(rows - 1, 1);
    Bytes result(static_cast<std::size_t>(columns * rows * p.channels));
    const auto resize =
        p.channels == 3 ? NuvRgbImgBilinearInterpolattionFast : NuvGryImgBilinearInterpolattionFast;
    resize(p.bytes.data(), p.width, p.height, result.data(), columns, rows);
    ASSERT_EQ(result, image_of(columns, rows, p.channels, [&](int32_t i, int32_t j, int32_t c) {
                return plain_sample(p, i * step_x, j * step_y, c);
              }));
  }
}

TEST(Resizing, InDoublePrecisionTruncatesOnce) {
  TestImage image = draw({"19", "36"});
  const auto resized = [&](int32_t columns, int32_t rows) {
    TestImage result(columns, rows);
    NuvGryImgBilinearInterpolattionStd(image.data(), 2, 2, result.data(), columns, rows);
    return result;
  };
  EXPECT_EQ(resized(3, 3), draw({"159", "247", "346"}));  // 4.75 and 4.5, 7.5
  EXPECT_EQ(resized(1, 1), draw({"1"}));
  // Long enough for a second strip of columns.
  const TestImage wide = resized(2001, 2);
  EXPECT_EQ(wide.at(2000, 0), 9);
  EXPECT_EQ(wide.at(1750, 1), 3 + 3 * 7 / 8);
}

TEST(RectResize, FitsWidthAndHeight) {
  const struct {
    int32_t max_width, max_height;
    std::array<int32_t, 4> before, after;  // x1, x2, y1, y2
  } cases[] = {
      {100, 100, {10, 19, 5, 20}, {11, 18, 5, 20}}, {100, 100, {400, 409, 5, 20}, {400, 407, 5, 20}},
      {6, 100, {10, 21, 5, 20}, {10, 21, 5, 20}},   {7, 18, {10, 18, 5, 20}, {13, 16, 4, 20}},
      {100, 19, {0, 2, 5, 20}, {2, 1, 5, 20}},
  };
  for (const auto& c : cases) {
    std::array<int32_t, 4> r = c.before;
    NuvRectResizeX4(640, 480, c.max_width, c.max_height, &r[0], &r[1], &r[2], &r[3]);
    EXPECT_EQ(r, c.after);
  }
}

}  // namespace
