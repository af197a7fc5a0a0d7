#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

TEST(ChainMarks, DrawSolidDashedAndCounting) {
  Square s;
  TestImage image(5, 5);
  NuvMarkChainByColor(image.data(), 5, s.x, s.y, s.data(), 8, 255 + 256);
  EXPECT_EQ(image, draw({".....", ".###.", ".#.#.", ".###.", "....."}));
  image = TestImage(5, 5);
  NuvMarkChainByColor(image.data(), 5, s.x, s.y, s.data(), 8, 255, 0);
  EXPECT_EQ(image, draw({".....", ".#...", ".#.#.", ".###.", "....."})) << "steps 0 to 4, and the start";
  image = TestImage(5, 5, 254);
  image.at(1, 1) = 255;
  for (int i = 0; i < 2; ++i) NuvMarkChainByInc(image.data(), 5, s.x, s.y, s.data(), 8);
  EXPECT_EQ(image.at(1, 1), 3) << "255 becomes 0 at the start; it is passed again at the end";
  EXPECT_EQ(image.at(2, 1), 255);
}

}  // namespace
