#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

struct Source {
  int32_t width;
  int32_t height;
  int32_t channels;
  Bytes bytes;

  Source(Random& random, int32_t w, int32_t h, int32_t c)
      : width(w), height(h), channels(c), bytes(random.bytes(static_cast<std::size_t>(w * h * c))) {}
  int32_t at(int32_t x, int32_t y, int32_t c) const {
    return bytes[static_cast<std::size_t>((y * width + x) * channels + c)];
  }
};

// The image whose bytes are byte(x, y, c).
template <class Byte>
Bytes image_of(int32_t width, int32_t height, int32_t channels, Byte byte) {
  Bytes result;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int32_t c = 0; c < channels; ++c) result.push_back(static_cast<uint8_t>(byte(x, y, c)));
    }
  }
  return result;
}

TEST(Zoom, PutsMeansBetweenPixels) {
  Random random(98);
  for (auto [width, height] : kOddSizes) {
    for (int32_t channels : {1, 3}) {
      Source p(random, width, height, channels);
      const auto along_row = [&](int32_t x, int32_t y, int32_t c) {
        return (p.at(x / 2, y, c) + p.at(std::min((x + 1) / 2, p.width - 1), y, c)) >> 1;
      };
      Bytes result(p.bytes.size() * 4);
      (channels == 3 ? NuvZoomRGBImg2x2 : NuvZoomGryImg2x2)(p.bytes.data(), width, height, result.data());
      ASSERT_EQ(result, image_of(2 * width, 2 * height, channels, [&](int32_t x, int32_t y, int32_t c) {
                  return (along_row(x, y / 2, c) + along_row(x, std::min((y + 1) / 2, p.height - 1), c)) >> 1;
                }));
    }
  }
}

TEST(Shrinking, TakesSamplesAndMeansOfWholeBlocks) {
  TestImage image = draw({"1234567", "3456789", "9999999"});
  Bytes result(2);
  NuvShrinkGryImgByExtract(image.data(), 7, 3, 3, 2, result.data());
  EXPECT_EQ(result, (Bytes{1, 4}));
  NuvShrinkImgByAvr(image.data(), false, 7, 3, 3, 2, result.data());
  EXPECT_EQ(result, (Bytes{(1 + 2 + 3 + 3 + 4 + 5) / 6, (4 + 5 + 6 + 6 + 7 + 8) / 6}));
  Bytes of_rgb(3);
  NuvShrinkImgByAvr(image.data(), true, 2, 1, 2, 1, of_rgb.data());
  EXPECT_EQ(of_rgb, (Bytes{(1 + 4) / 2, (2 + 5) / 2, (3 + 6) / 2}));
}

TEST(Shrinking, OfFixedFactorsEqualsThatOfAnyFactor) {
  Random random(99);
  for (auto [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    for (int32_t side : {2, 4}) {
      Bytes means(static_cast<std::size_t>((width / side) * (height / side)));
      Bytes samples = means;
      Bytes expected_means = means;
      Bytes expected_samples = means;
      NuvShrinkImgByAvr(image.data(), false, width, height, side, side, expected_means.data());
      NuvShrinkGryImgByExtract(image.data(), width, height, side, side, expected_samples.data());
      int32_t columns = 0;
      int32_t rows = 0;
      if (side == 2) {
        NuvShrinkGryImg2x2ByAvr(image.data(), width, height, means.data());
        NuvShrinkGryImg2x2ByExtract(image.data(), width, height, samples.data(), &columns, &rows);
      } else {
        NuvShrinkGryImg4x4ByAvr(image.data(), width, height, means.data(), &columns, &rows);
        NuvShrinkGryImg4x4ByExtract(image.data(), width, height, samples.data(), &columns, &rows);
      }
      ASSERT_EQ(means, expected_means);
      ASSERT_EQ(samples, expected_samples);
      ASSERT_TRUE(columns == width / side && rows == height / side);
    }
  }
}

TEST(Shrinking, TakesMediansOfCells) {
  // Ten columns become four cells: three of three columns, and one of the last column. The median of each is
  // one above its middle value.
  TestImage row = draw({"1234567899"});
  Bytes medians(4);
  NuvShrinkGryImgByMedian(row.data(), 10, 1, medians.data(), 4, 1);
  EXPECT_EQ(medians, (Bytes{3, 6, 9, 10}));
  // Four columns become three cells of two columns, and three rows become two cells of three rows. Nothing is
  // left for the last column and row of cells.
  TestImage image = draw({"1155", "1155", "1155"});
  Bytes cells(6, 77);
  NuvShrinkGryImgByMedian(image.data(), 4, 3, cells.data(), 3, 2);
  EXPECT_EQ(cells, (Bytes{1, 5, 0, 0, 0, 0}));
}

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
