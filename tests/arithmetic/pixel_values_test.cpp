#include <gmock/gmock.h>

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
  flat = TestImage(2, 4096, 255);
  EXPECT_EQ(NuvLightCorretPerRow(flat.data(), 2, 4096), 255);
  EXPECT_THAT(flat.pixels, Each(250));
  TestImage large(2, 4097, 255);
  EXPECT_EQ(NuvLightCorretPerRow(large.data(), 2, 4097), 0);
  EXPECT_EQ(NuvLightCorretPerCol(large.data(), 4097, 2), 0);
  EXPECT_THAT(large.pixels, Each(255));
}

}  // namespace
