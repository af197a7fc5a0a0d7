#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "frame/arithmetic.h"
#include "images.h"

namespace {

// Bytes of a row lie step apart where they belong to neighbouring pixels.
struct Source {
  int32_t width;
  int32_t height;
  int32_t channels;
  std::vector<uint8_t> bytes;

  Source(Random& random, int32_t w, int32_t h, int32_t c)
      : width(w), height(h), channels(c), bytes(random.bytes(static_cast<std::size_t>(w * h * c))) {}
  int32_t at(int32_t x, int32_t y, int32_t c) const {
    return bytes[static_cast<std::size_t>((y * width + x) * channels + c)];
  }
};

// The image with byte(x, y, c) everywhere.
template <class Byte>
std::vector<uint8_t> image_of(int32_t width, int32_t height, int32_t channels, Byte byte) {
  std::vector<uint8_t> result;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int32_t c = 0; c < channels; ++c) result.push_back(static_cast<uint8_t>(byte(x, y, c)));
    }
  }
  return result;
}

TEST(Zoom, PutsMeansBetweenPixels) {
  TestImage drawn(2, 2);
  drawn.pixels = {0, 100, 200, 50};
  std::vector<uint8_t> doubled(16);
  NuvZoomGryImg2x2(drawn.data(), 2, 2, doubled.data());
  EXPECT_EQ(doubled,
            (std::vector<uint8_t>{0, 50, 100, 100, 100, 87, 75, 75, 200, 125, 50, 50, 200, 125, 50, 50}));

  Random random(98);
  for (auto [width, height] : kOddSizes) {
    for (int32_t channels : {1, 3}) {
      Source p(random, width, height, channels);
      const auto along_row = [&](int32_t x, int32_t y, int32_t c) {
        return (p.at(x / 2, y, c) + p.at(std::min((x + 1) / 2, p.width - 1), y, c)) >> 1;
      };
      std::vector<uint8_t> result(p.bytes.size() * 4);
      (channels == 3 ? NuvZoomRGBImg2x2 : NuvZoomGryImg2x2)(p.bytes.data(), width, height, result.data());
      ASSERT_EQ(result, image_of(2 * width, 2 * height, channels, [&](int32_t x, int32_t y, int32_t c) {
                  return (along_row(x, y / 2, c) + along_row(x, std::min((y + 1) / 2, p.height - 1), c)) >> 1;
                }));
    }
  }
}

TEST(Shrinking, TakesSamplesAndMeansOfWholeBlocks) {
  Random random(99);
  for (auto [width, height] : kOddSizes) {
    for (auto [m, n] : {std::pair{2, 2}, {4, 4}, {1, 1}, {3, 2}, {1, 5}, {70, 1}}) {
      for (int32_t channels : {1, 3}) {
        Source p(random, width, height, channels);
        const int32_t block[] = {m, n};
        const auto mean = [&](int32_t x, int32_t y, int32_t c) {
          int32_t sum = 0;
          for (int32_t i = 0; i < block[0] * block[1]; ++i) {
            sum += p.at(x * block[0] + i % block[0], y * block[1] + i / block[0], c);
          }
          return sum / (block[0] * block[1]);
        };
        const auto means = image_of(width / m, height / n, channels, mean);
        std::vector<uint8_t> result(means.size());
        NuvShrinkImgByAvr(p.bytes.data(), channels == 3, width, height, m, n, result.data());
        ASSERT_EQ(result, means);
        if (channels == 3) continue;

        const auto samples = image_of(width / m, height / n, 1, [&](int32_t x, int32_t y, int32_t c) {
          return p.at(x * block[0], y * block[1], c);
        });
        NuvShrinkGryImgByExtract(p.bytes.data(), width, height, m, n, result.data());
        ASSERT_EQ(result, samples);
        if (m != n || m == 1) continue;
        std::vector<uint8_t> sampled(result.size());
        int32_t size[2] = {};
        if (m == 2) {
          NuvShrinkGryImg2x2ByAvr(p.bytes.data(), width, height, result.data());
          NuvShrinkGryImg2x2ByExtract(p.bytes.data(), width, height, sampled.data(), &size[0], &size[1]);
        } else {
          NuvShrinkGryImg4x4ByAvr(p.bytes.data(), width, height, result.data(), &size[0], &size[1]);
          NuvShrinkGryImg4x4ByExtract(p.bytes.data(), width, height, sampled.data(), &size[0], &size[1]);
        }
        ASSERT_EQ(result, means);
        ASSERT_EQ(sampled, samples);
        ASSERT_TRUE(size[0] == width / m && size[1] == height / n);
      }
    }
  }
}

TEST(Shrinking, TakesMediansOfCells) {
  // Ten columns as four: cells of three, and one of the column left. The median leans upwards.
  TestImage row = draw({"1234567899"});
  std::vector<uint8_t> medians(4);
  NuvShrinkGryImgByMedian(row.data(), 10, 1, medians.data(), 4, 1);
  EXPECT_EQ(medians, (std::vector<uint8_t>{3, 6, 9, 10}));

  Random random(100);
  for (int round = 0; round < 200; ++round) {
    Source p(random, random.between(1, 30), random.between(1, 30), 1);
    const int32_t columns = random.between(1, 33);
    const int32_t rows = random.between(1, 33);
    const auto cell = [](int32_t length, int32_t n) {
      return length / n * n < length ? length / (n - 1) : length / n;
    };
    const int32_t cw = cell(p.width, columns);
    const int32_t ch = cell(p.height, rows);
    std::vector<uint8_t> result(static_cast<std::size_t>(columns * rows));
    NuvShrinkGryImgByMedian(p.bytes.data(), p.width, p.height, result.data(), columns, rows);
    ASSERT_EQ(result, image_of(columns, rows, 1, [&](int32_t i, int32_t j, int32_t) {
                std::array<int32_t, 256> bins{};
                for (int32_t y = j * ch; y < std::min((j + 1) * ch, p.height); ++y) {
                  for (int32_t x = i * cw; x < std::min((i + 1) * cw, p.width); ++x) {
                    ++bins[static_cast<std::size_t>(p.at(x, y, 0))];
                  }
                }
                return NuvGetMedianInHistogram(bins.data());
              }));
  }
}

int32_t plain_fast(const Source& p, int32_t x, int32_t y, int32_t c) {
  const int32_t xi = x >> 16;
  const int32_t yi = y >> 16;
  const int32_t fx = x - xi * 65536;
  const int32_t fy = y - yi * 65536;
  const auto row_value = [&](int32_t row) {
    return xi + 1 < p.width ? (p.at(xi, row, c) * (65536 - fx) + p.at(xi + 1, row, c) * fx) >> 16
                            : p.at(xi, row, c);
  };
  return yi + 1 < p.height ? (fy * row_value(yi + 1) + (65536 - fy) * row_value(yi)) >> 16 : row_value(yi);
}

int32_t plain_double(const Source& p, double x, double y) {
  const int32_t xi = nuv::truncated(x);
  const int32_t yi = nuv::truncated(y);
  const auto row_value = [&](int32_t row) -> double {
    if (xi + 1 == p.width) return p.at(xi, row, 0);
    return p.at(xi, row, 0) * ((xi + 1) - x) + p.at(xi + 1, row, 0) * (x - xi);
  };
  return nuv::truncated((y - yi) * row_value(std::min(yi + 1, p.height - 1)) +
                        ((yi + 1) - y) * row_value(yi));
}

TEST(Resizing, EqualsThePlainForms) {
  Random random(101);
  for (int round = 0; round < 300; ++round) {
    // Some results of several strips.
    const int32_t wide = round % 50 == 0 ? 2000 : 60;
    const int32_t w = random.between(1, wide);
    const int32_t h = random.between(1, 40);
    const int32_t columns = random.between(1, wide);
    const int32_t rows = random.between(1, 60);
    const auto step = [](int32_t length, int32_t n) { return n == 1 ? 0 : (length - 1) * 65536 / (n - 1); };
    const auto step_of_double = [](int32_t length, int32_t n) {
      return n == 1 ? 0 : (length - 1.0) / (n - 1.0);
    };
    for (int32_t channels : {1, 3}) {
      Source p(random, w, h, channels);
      std::vector<uint8_t> result(static_cast<std::size_t>(columns * rows * channels));
      (channels == 3 ? NuvRgbImgBilinearInterpolattionFast : NuvGryImgBilinearInterpolattionFast)(
          p.bytes.data(), w, h, result.data(), columns, rows);
      ASSERT_EQ(result, image_of(columns, rows, channels,
                                 [&](int32_t i, int32_t j, int32_t c) {
                                   return plain_fast(p, i * step(p.width, columns), j * step(p.height, rows),
                                                     c);
                                 }))
          << w << ' ' << h << ' ' << columns << ' ' << rows;
      if (channels == 3) continue;
      NuvGryImgBilinearInterpolattionStd(p.bytes.data(), w, h, result.data(), columns, rows);
      ASSERT_EQ(result, image_of(columns, rows, 1,
                                 [&](int32_t i, int32_t j, int32_t) {
                                   return plain_double(p, i * step_of_double(p.width, columns),
                                                       j * step_of_double(p.height, rows));
                                 }))
          << w << ' ' << h << ' ' << columns << ' ' << rows;
    }
  }
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

// Sizes that no image has write nothing.
TEST(Transforms, TakeAnySize) {
  TestImage image(8, 8, 5);
  TestImage result(8, 8, 6);
  const TestImage untouched = result;
  const int32_t odd[] = {0, -1, INT32_MIN};
  for (int32_t size : odd) {
    NuvZoomGryImg2x2(image.data(), size, 8, result.data());
    NuvShrinkGryImgByMedian(image.data(), 8, 8, result.data(), size, 8);
    NuvShrinkImgByAvr(image.data(), true, 8, 8, 1, size, result.data());
    NuvShrinkImgByAvr(image.data(), false, 8, 8, INT32_MAX, INT32_MAX, result.data());
    NuvShrinkGryImgByExtract(image.data(), 8, 8, size, 1, result.data());
    NuvGryImgBilinearInterpolattionFast(image.data(), 8, 8, result.data(), 8, size);
    NuvGryImgBilinearInterpolattionStd(image.data(), 8, size, result.data(), 8, 8);
    NuvImgRotate90DegreeCS(image.data(), size, 8, true, result.data());
    NuvFlipVertical(image.data(), 8, size, true, result.data());
    NuvReverseImg(image.data(), size, size, result.data());
    NuvImageShift(image.data(), size, 8, true, 1, 1, result.data());
    NuvShiftXPerRowFine(image.data(), 8, size, 1, result.data());
    NuvCopyRectFromRotateCCS(image.data(), size, 8, 0, 0, 0, result.data(), 8, 8);
    NuvCopyRectFromRotateCCS(image.data(), 8, 8, 0, 0, 0, result.data(), 8, size);
  }
  EXPECT_EQ(result, untouched);
}

}  // namespace
