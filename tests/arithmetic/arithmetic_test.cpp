#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAreArray;

TEST(Arithmetic, OfRgbImages) {
  Random random(402);
  for (const auto& [width, height] : kOddSizes) {
    const auto pixels = static_cast<std::size_t>(width * height);
    std::vector<uint8_t> a = random.bytes(3 * pixels);
    std::vector<uint8_t> b = random.bytes(3 * pixels);
    TestImage result(width, height);
    int32_t bins[256];
    NuvDifferenceImg12(a.data(), b.data(), width, height, true, result.data(), bins);
    int32_t expected_bins[256];
    NuvGetHistogram(result.data(), width, height, expected_bins);
    EXPECT_THAT(bins, ElementsAreArray(expected_bins));
    std::vector<uint8_t> rest(3 * pixels);
    std::vector<uint8_t> most = b;
    std::vector<uint8_t> least = b;
    NuvImg1SubstractImg2(a.data(), b.data(), width, height, true, rest.data());
    NuvRemainMaxMinGry(a.data(), width, height, true, most.data(), least.data());
    for (std::size_t i = 0; i < pixels; ++i) {
      int largest = 0;
      for (std::size_t k = 3 * i; k < 3 * i + 3; ++k) {
        largest = std::max(largest, std::abs(a[k] - b[k]));
        ASSERT_EQ(rest[k], std::max(a[k] - b[k], 0));
        ASSERT_EQ(most[k], std::max(a[k], b[k]));
        ASSERT_EQ(least[k], std::min(a[k], b[k]));
      }
      ASSERT_EQ(result.pixels[i], largest);
    }
  }
}

TEST(IntegralImage, EqualsItsPlainForm) {
  Random random(403);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    std::vector<int32_t> sums(image.pixels.size());
    NuvDoSumGryImg(image.data(), width, height, sums.data());
    for (int32_t y = 0; y < height; ++y) {
      int32_t sum = 0;
      for (int32_t x = 0; x < width; ++x) {
        sum += image.at(x, y);
        const auto i = static_cast<std::size_t>(y * width + x);
        ASSERT_EQ(sums[i], sum + (y > 0 ? sums[i - static_cast<std::size_t>(width)] : 0)) << x << ',' << y;
      }
    }
  }
}

// The tagRECT with a given corner and size.
tagRECT rect(int32_t left, int32_t top, int32_t columns, int32_t rows) {
  return {left, top, left + columns - 1, top + rows - 1};
}

TEST(DifferenceInRect, OfEqualSizesLeavesOutTheLastRowAndColumn) {
  Random random(404);
  for (const auto& [width, height] : kOddSizes) {
    TestImage a = random.gray(width, height);
    TestImage b = random.gray(width, height);
    int32_t sum = 0;
    for (int32_t y = 0; y < height - 1; ++y) {
      for (int32_t x = 0; x < width - 1; ++x) sum += std::abs(a.at(x, y) - b.at(x, y));
    }
    const tagRECT whole = rect(0, 0, width, height);
    EXPECT_EQ(NuvImgDifferenceInRect(a.data(), b.data(), false, width, whole, whole),
              sum / std::max((width - 1) * (height - 1), 1));
  }
}

TEST(DifferenceInRect, OfTwoSizesWalksTheRectangleWithFewerRows) {
  TestImage a = draw({"1234", "....", "5678", "...."});
  TestImage b(4, 4, 9);
  const auto of = [&](tagRECT r1, tagRECT r2) {
    const int32_t result = NuvImgDifferenceInRect(a.data(), b.data(), false, 4, r1, r2);
    EXPECT_EQ(NuvImgDifferenceInRect(b.data(), a.data(), false, 4, r2, r1), result);
    return result;
  };
  // Rows 0 and 2 of the other rectangle are read; each of its columns twice, or every second column.
  EXPECT_EQ(of(rect(0, 0, 2, 4), rect(0, 0, 4, 2)), (8 + 8 + 7 + 7 + 4 + 4 + 3 + 3) / 8);
  EXPECT_EQ(of(rect(0, 0, 4, 4), rect(0, 0, 2, 2)), (8 + 6 + 4 + 2) / 4);
  // If the numbers of rows are equal, the first rectangle is walked.
  EXPECT_EQ(NuvImgDifferenceInRect(b.data(), a.data(), false, 4, rect(0, 0, 2, 1), rect(0, 0, 4, 1)),
            (8 + 6) / 2);
}

TEST(CenterBlock, IsComparedWithItsRing) {
  TestImage image = draw({"99999", "91119", "91#19", "91119", "99999"});
  const auto of = [&](int32_t margin) {
    return NuvCenterBlockMeanDif(image.data(), 5, 5, 2, 2, 2, 2, margin);
  };
  EXPECT_EQ(of(0), 0);
  EXPECT_EQ(of(1), 255 - 1);
  EXPECT_EQ(of(2), 255 - (8 * 1 + 16 * 9) / 24);
  EXPECT_EQ(of(3), of(2));
}

}  // namespace
