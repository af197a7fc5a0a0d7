#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(MaxSizeOfMinFilter, AddsTheSizesOfAllErosions) {
  const auto size_of = [](TestImage image) {
    TestImage tmp = image;
    TestImage work = image;
    int32_t size = 99;
    EXPECT_EQ(
        NuvGetMaxSizeofMinFilter(image.data(), tmp.data(), work.data(), image.width, image.height, &size),
        size);
    return size;
  };
  EXPECT_EQ(size_of(TestImage(9, 9)), -1);
  EXPECT_EQ(size_of(draw({".....", ".###.", ".....", "....."})), 1);
  EXPECT_EQ(size_of(TestImage(1, 1, 255)), 1);
  // The distances are 1, 2 and 3. One erosion of half size 1 leaves 3 by 3 pixels, a second one the middle.
  EXPECT_EQ(size_of(draw({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."})), 5);
  // No black pixel can grow, so the first erosion changes nothing.
  EXPECT_EQ(size_of(TestImage(3, 3, 255)), 2);
}

TEST(MaxSizeOfMinFilter, LeavesTheLastRoundInTheWorkSpace) {
  TestImage image = draw({"..........", "..........", "..........", "....#####.", "....#####.", "....#####.",
                          "....#####.", "....#####.", "..........", ".........."});
  TestImage tmp = image;
  TestImage work = image;
  int32_t size = 0;
  NuvGetMaxSizeofMinFilter(image.data(), tmp.data(), work.data(), image.width, image.height, &size);
  // The middle of the square is left. Its distance is 1.
  TestImage middle(10, 10);
  middle.at(6, 5) = 255;
  EXPECT_EQ(tmp, middle);
  middle.at(6, 5) = 1;
  EXPECT_EQ(work, middle);
}

}  // namespace
