#include <gmock/gmock.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(Normalize, ReachesMeanAndDeviation) {
  TestImage image(2, 1);
  image.pixels = {120, 100};  // mean 110, deviation 10
  NuvGryImgNormalize(image.data(), 2, 1, 60, 25);
  EXPECT_THAT(image.pixels, ElementsAre(85, 35));
  TestImage flat(5, 5, 9);
  NuvGryImgNormalize(flat.data(), 5, 5, 300, 10);
  EXPECT_THAT(flat.pixels, Each(255));
}

TEST(Light, ScalesEachLineToTheMeanOfAllLines) {
  TestImage rows = draw({"22", "66", ".."});
  TestImage columns = draw({"26.", "26."});
  EXPECT_EQ(NuvLightCorretPerRow(rows.data(), 2, 3), 16 / 3 / 2);
  EXPECT_EQ(NuvLightCorretPerCol(columns.data(), 3, 2), 16 / 3 / 2);
  EXPECT_THAT(rows.pixels, ElementsAre(2, 2, 2, 2, 0, 0));  // gains 1280 and 426
  EXPECT_THAT(columns.pixels, ElementsAre(2, 2, 0, 2, 2, 0));
  TestImage flat(4096, 2, 255);
  EXPECT_EQ(NuvLightCorretPerCol(flat.data(), 4096, 2), 255);
  EXPECT_THAT(flat.pixels, Each(250));
  TestImage large(2, 4097, 255);
  EXPECT_EQ(NuvLightCorretPerRow(large.data(), 2, 4097), 0);
  EXPECT_THAT(large.pixels, Each(255));
}

TEST(RectangleStatistics, MeanRangeAndBox) {
  TestImage image = draw({"12345", "67899", "....."});
  EXPECT_EQ(NuvGryRectAvr(image.data(), 5, 3, 1, 3, 0, 1), (2 + 3 + 4 + 7 + 8 + 9) / 6);
  EXPECT_EQ(NuvGryRectAvr(image.data(), 5, 3, 3, 1, 0, 1), 0);
  const auto range = [&](double ratio) {
    std::pair<int32_t, int32_t> limits;
    NuvGryMinMaxInRect(image.data(), 5, 0, 4, 0, 1, ratio, &limits.first, &limits.second);
    return limits;
  };
  EXPECT_EQ(range(0), std::pair(1, 9));
  EXPECT_EQ(range(0.2), std::pair(3, 8));
  EXPECT_EQ(range(1), std::pair(256, 0));
  int32_t xs[] = {4, -7, 9};
  int32_t ys[] = {1, 1, -3};
  int32_t box[4];
  NuvPointsRect(xs, ys, 3, &box[0], &box[1], &box[2], &box[3]);
  EXPECT_THAT(box, ElementsAre(-7, 9, -3, 1));
  NuvPointsRect(xs, ys, 0, &box[0], &box[1], &box[2], &box[3]);
  EXPECT_THAT(box, ElementsAre(4, 4, 1, 1));
}

TEST(Paste, LeavesOutWhatFallsOutside) {
  TestImage gray = draw({"123", "456"});
  const auto pasted = [&](int32_t x, int32_t y) {
    TestImage result(4, 3);
    NuvPasteGryImg2ResImg(gray.data(), 3, 2, result.data(), 4, 3, x, y);
    return result;
  };
  EXPECT_EQ(pasted(1, 1), draw({"....", ".123", ".456"}));
  EXPECT_EQ(pasted(-1, -1), draw({"56..", "....", "...."}));
  EXPECT_EQ(pasted(3, 2), draw({"....", "....", "...1"}));

  TestImage rgb = draw({"123456789", "987654321"});
  TestImage result(12, 3);
  NuvPasteRGBImg2ResImg(rgb.data(), 3, 2, result.data(), 4, 3, -1, 1);
  EXPECT_EQ(result, draw({"............", "456789......", "654321......"}));
  NuvPasteGryImg2RGBImg(gray.data(), 3, 2, result.data(), 4, 3, 3, -1);
  EXPECT_EQ(result, draw({".........444", "456789......", "654321......"}));
}

TEST(BrightestWindow, EqualsThePlainSearch) {
  Random random(413);
  for (int round = 0; round < 200; ++round) {
    TestImage image = random.gray(random.between(1, 20), random.between(1, 20));
    for (uint8_t& p : image.pixels) p = static_cast<uint8_t>(p / 86);  // many windows tie
    const int32_t m = random.between(1, image.width + 1);
    const int32_t n = random.between(1, image.height + 1);
    int32_t best = 0;
    std::pair<int32_t, int32_t> place(image.width / 2, image.height / 2);
    for (int32_t y = 0; y < image.height - n; ++y) {
      for (int32_t x = 0; x < std::max(image.width - m, 1) && m <= image.width; ++x) {
        int32_t sum = 0;
        for (int32_t i = 0; i < m * n; ++i) sum += image.at(x + i % m, y + i / m);
        if (sum > best) {
          best = sum;
          place = {m / 2 + x, n / 2 + y};
        }
      }
    }
    std::pair<int32_t, int32_t> found;
    ASSERT_EQ(NuvMaxBrightRect(image.data(), image.width, image.height, m, n, &found.first, &found.second),
              static_cast<double>(best) / (m * n));
    ASSERT_EQ(found, place);
  }
  TestImage image(9, 7, 5);
  std::pair<int32_t, int32_t> found;
  EXPECT_EQ(NuvMaxBrightRect(image.data(), 9, 7, 0, 3, &found.first, &found.second), 0.0);
  EXPECT_EQ(found, std::pair(4, 3)) << "an empty window";
}

TEST(EstimateStdev, IsTheMedianOfTheWindows) {
  TestImage image(64, 64);
  for (int32_t i = 0; i < 64 * 64; ++i) image.at(i % 64, i / 64) = (i + i / 64) % 2 == 0 ? 90 : 110;
  TestImage mask(64, 64, 1);
  const auto of = [&](int32_t m, int32_t n) {
    return NuvEstimateImgStdev(image.data(), mask.data(), 64, 64, m, n);
  };
  EXPECT_EQ(of(8, 8), 10);
  EXPECT_EQ(of(1, 1), 10);
  EXPECT_EQ(of(0, 8), 0);
  mask = TestImage(64, 64);
  EXPECT_EQ(of(8, 8), 0);
}

}  // namespace
