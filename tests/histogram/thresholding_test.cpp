#include <gmock/gmock.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(Threshold, AllFormsCompareTheSameWay) {
  TestImage image = draw({"1234", "5678", "1234"});
  TestImage result(4, 3, 7);
  NuvThresholdInRect(image.data(), 4, 1, 2, 0, 1, 3, result.data());
  EXPECT_EQ(result, draw({"7.#7", "7##7", "7777"}));
  NuvThresholdInRect(image.data(), 4, 1, 2, 0, 1, 3);
  EXPECT_EQ(image, draw({"1.#4", "5##8", "1234"}));
  NuvThreshold(image.data(), 4, 3, 3, result.data());
  EXPECT_EQ(result, draw({"..##", "####", "..##"}));
  NuvThreshold2V1V2(image.data(), 4, 3, 4, 256 + 3, 9);
  EXPECT_EQ(image, draw({"3399", "9999", "3339"}));
}

TEST(ThresholdAndShrink, WritesMorePixelsThanTheReturnedSize) {
  TestImage source = draw({"1234", "5678", "9876", "5432"});
  std::vector<uint8_t> packed(5, 7);
  int32_t width = 0;
  int32_t height = 0;
  NuvThresholdAndShrink(source.data(), 4, 4, 4, 3, packed.data(), &width, &height);
  EXPECT_TRUE(width == 1 && height == 1);
  EXPECT_THAT(packed, ElementsAre(0, 255, 255, 0, 7));
  TestImage whole(4, 4);
  NuvThresholdAndShrink(source.data(), 4, 4, 4, 1, whole.data(), &width, &height);
  EXPECT_TRUE(width == 4 && height == 4);
  EXPECT_EQ(whole, draw({"...#", "####", "####", "##.."}));
}

TEST(RatioForms, AdjustAndReturnTheirThresholdsByDifferentRules) {
  const TestImage black(10, 10);
  TestImage image = black;
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 0.3), 1) << "T = 0 is raised, so black stays black";
  EXPECT_EQ(image, black);
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 0.5), 0);
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 10, 7.0), -1) << "the ratio is clamped to 1";
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  NuvThresholdByPercent(image.data(), 10, 10, 49);
  EXPECT_EQ(image, black);
  NuvThresholdByPercent(image.data(), 10, 10, 50);
  EXPECT_THAT(image.pixels, Each(255));
  image = black;
  EXPECT_EQ(NuvThresholdByRatioAndMiniT(image.data(), 10, 10, 0.9, 12), 12);
  EXPECT_EQ(image, black);
  TestImage result(10, 10, 7);
  EXPECT_EQ(NuvThresholdByRatio(image.data(), 10, 2, 5, 2, 5, 0.3, 12, result.data()), 0)
      << "T as found, before it is raised";
  EXPECT_EQ(result.at(3, 3), 0);
  EXPECT_EQ(result.at(1, 3), 7);
}

}  // namespace
