#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

struct Largest {
  int32_t value = 0;
  tagRECT box{-1, -1, -1, -1};
  int32_t x = -1;
  int32_t y = -1;
};

using Search = decltype(&Nuv255RectWithMaxArea);

Largest largest(Search search, TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                int32_t y_step = 1) {
  std::vector<uint8_t> work(image.pixels.size());
  Largest result;
  result.value = search(image.data(), work.data(), image.width, image.height, x1, x2, y1, y2, y_step,
                        &result.box, &result.x, &result.y);
  return result;
}

// A square of area 9 and perimeter 8, a line of area 6 and perimeter 10.
TestImage square_and_line() {
  return draw({"............", ".###........", ".###.######.", ".###........", "............"});
}

TEST(LargestContour, ByAreaAndByPerimeter) {
  TestImage image = square_and_line();
  const TestImage original = image;
  Largest found = largest(Nuv255RectWithMaxArea, image, 1, 10, 1, 3);
  EXPECT_EQ(found.value, 9);
  EXPECT_EQ(found.box.left, 1);
  EXPECT_EQ(found.box.right, 3);
  EXPECT_EQ(found.box.top, 1);
  EXPECT_EQ(found.box.bottom, 3);
  EXPECT_EQ(found.x, 2);
  EXPECT_EQ(found.y, 2);
  for (int32_t y = 1; y <= 3; ++y) {
    for (int32_t x = 1; x <= 10; ++x)
      EXPECT_EQ(image.at(x, y), original.at(x, y)) << "restored in the region";
  }
  found = largest(Nuv255RectWithMaxPerimeter, image, 1, 10, 1, 3);
  EXPECT_EQ(found.value, 10);
  EXPECT_EQ(found.box.left, 5);
}

TEST(LargestContour, OutlinesTheRegionAndScansItsRowsByStep) {
  TestImage image(8, 8, 255);
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, image, 3, 5, 3, 5).value, 9);
  for (int32_t i = 2; i <= 6; ++i) {
    EXPECT_EQ(image.at(i, 2) | image.at(i, 6) | image.at(2, i) | image.at(6, i), 1) << "touched outline";
  }
  EXPECT_EQ(image.at(1, 1), 255);
  EXPECT_EQ(image.at(4, 4), 255);

  TestImage line = draw({".....", ".....", ".###.", ".....", "....."});
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, line, 0, 4, 1, 3, 2).value, 0) << "rows 1 and 3";
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, line, 0, 4, 1, 3, -5).value, 3) << "a step below 1 is 1";
}

TEST(LargestContour, TakesTheLimitsOfTheTypeForEverything) {
  TestImage image = square_and_line();
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, image, INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX).value, 9);
}

TEST(LargestContour, OfNothingLeavesTheCentreAlone) {
  TestImage image(9, 9);
  const Largest found = largest(Nuv255RectWithMaxArea, image, -5, 20, -5, 20);
  EXPECT_EQ(found.value, 0);
  EXPECT_EQ(found.x, -1);
  EXPECT_EQ(found.box.right, 0);
}

}  // namespace
