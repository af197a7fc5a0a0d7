#include <gtest/gtest.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "geometry/byte_images.h"
#include "images.h"

namespace {

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

TEST(Shrinking, DividesSumsThatWrap) {
  // The sum is 2^32 - 254*2905^2. As a 32-bit number it is -254 times the number of pixels, and 2 is the low byte of
  // the mean.
  constexpr int32_t kSide = 2905;
  TestImage image(kSide, kSide, 255);
  std::fill_n(image.data(), 1946, uint8_t{0});
  image.pixels[1946] = 56;
  uint8_t mean = 77;
  NuvShrinkImgByAvr(image.data(), false, kSide, kSide, kSide, kSide, &mean);
  EXPECT_EQ(mean, 2);
}

}  // namespace
