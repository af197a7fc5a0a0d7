#include <gmock/gmock.h>

#include <array>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

struct Largest {
  int32_t value;
  std::array<int32_t, 4> box;  // left, right, top, bottom
  int32_t x, y;
};

using Search = decltype(&Nuv255RectWithMaxArea);

Largest largest(Search search, TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                int32_t y_step = 1) {
  std::vector<uint8_t> work(image.pixels.size());
  tagRECT box{-1, -1, -1, -1};
  int32_t x = -1;
  int32_t y = -1;
  const int32_t value =
      search(image.data(), work.data(), image.width, image.height, x1, x2, y1, y2, y_step, &box, &x, &y);
  return {value, {box.left, box.right, box.top, box.bottom}, x, y};
}

TEST(LargestContour, ByAreaAndByPerimeter) {
  // A square of area 9 and perimeter 8, a line of area 6 and perimeter 10.
  TestImage image = draw({"............", ".###........", ".###.######.", ".###........", "............"});
  Largest found = largest(Nuv255RectWithMaxArea, image, 1, 10, 1, 3);
  EXPECT_EQ(found.value, 9);
  EXPECT_THAT(found.box, ElementsAre(1, 3, 1, 3));
  EXPECT_EQ(found.x, 2);
  EXPECT_EQ(found.y, 2);
  EXPECT_EQ(NuvPixelsInGryImg(image.data(), 12, 5, 255), 15) << "the region is restored";
  found = largest(Nuv255RectWithMaxPerimeter, image, INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX);
  EXPECT_EQ(found.value, 10);
  EXPECT_THAT(found.box, ElementsAre(5, 10, 2, 2));
}

TEST(LargestContour, ScansNoColumnOfTheOutline) {
  // The pixel of 253 and the 0 in the last column would start a hole, whose trace marks the pixel of 255.
  TestImage image = draw({".....", ".....", "...#.", "...#.", "....."});
  image.at(3, 2) = 253;
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, image, 0, 4, 0, 4).value, 2);
}

TEST(LargestContour, OutlinesTheRegionAndScansItsRowsByStep) {
  TestImage image(8, 8, 255);
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, image, 3, 5, 3, 5).value, 9);
  for (int32_t i = 2; i <= 6; ++i) {
    EXPECT_EQ(image.at(i, 2) | image.at(i, 6) | image.at(2, i) | image.at(6, i), 1)
        << "the outline is cleared";
  }
  EXPECT_EQ(image.at(1, 1), 255);
  EXPECT_EQ(image.at(4, 4), 255);

  TestImage line = draw({".....", ".....", ".###.", ".....", "....."});
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, line, 0, 4, 1, 3, 2).value, 0) << "only rows 1 and 3 are scanned";
  EXPECT_EQ(largest(Nuv255RectWithMaxArea, line, 0, 4, 1, 3, -5).value, 3) << "a step below 1 counts as 1";
}

}  // namespace
