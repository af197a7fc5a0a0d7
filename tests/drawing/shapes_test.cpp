#include <gtest/gtest.h>

#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TestImage rectangle(int32_t x1, int32_t x2, int32_t y1, int32_t y2) {
  TestImage image(6, 5);
  NuvDrawGryRect(image.data(), 6, 5, x1, x2, y1, y2, 255);
  return image;
}

TEST(Rectangle, OutlineIsClampedAndPutInOrder) {
  EXPECT_EQ(rectangle(1, 4, 1, 3), draw({"......", ".####.", ".#..#.", ".####.", "......"}));
  EXPECT_EQ(rectangle(4, 1, 3, 1), rectangle(1, 4, 1, 3));
  EXPECT_EQ(rectangle(-5, 99, -5, 99), draw({"######", "#....#", "#....#", "#....#", "######"}));
  EXPECT_EQ(rectangle(90, 99, 2, 2), draw({"......", "......", ".....#", "......", "......"}));
}

TEST(Rectangle, FillsOnlyARegion) {
  TestImage image(6, 5);
  NuvFillGryRect(image.data(), 6, 5, 4, 99, 3, 99, 255);
  EXPECT_EQ(image, draw({"......", "......", "......", "....##", "....##"}));
  NuvFillGryRect(image.data(), 6, 5, 3, 2, 0, 4, 7);
  EXPECT_EQ(image, draw({"......", "......", "......", "....##", "....##"})) << "empty";
  std::vector<uint8_t> rgb(6 * 5 * 3);
  NuvFillRGBRect(rgb.data(), 6, 5, 4, 99, 3, 99, 3, 2, 1);
  for (std::size_t i = 0; i < image.pixels.size(); ++i)
    EXPECT_EQ(rgb[3 * i + 2], image.pixels[i] != 0 ? 3 : 0);
}

TEST(ChangeColor, OnTheOutlineOnly) {
  TestImage image(6, 5, 9);
  image.at(2, 1) = 8;
  NuvChangeColorOnRect(image.data(), 6, 5, 1, 4, 1, 3, 9, 0);
  TestImage expected(6, 5, 9);
  for (int32_t x = 1; x <= 4; ++x) expected.at(x, 1) = expected.at(x, 3) = 0;
  expected.at(1, 2) = expected.at(4, 2) = 0;
  expected.at(2, 1) = 8;
  EXPECT_EQ(image, expected);
  NuvChangeColorOnRect(image.data(), 6, 5, 0, 5, 0, 4, 9 + 256, 0);
  EXPECT_EQ(image, expected) << "matches nothing";
  TestImage columns(6, 5, 9);
  NuvChangeColorOnRect(columns.data(), 6, 5, 4, 1, 1, 3, 9, 0);
  EXPECT_EQ(columns.at(2, 1), 9) << "x1 > x2 leaves the rows alone";
  EXPECT_EQ(columns.at(4, 1) | columns.at(1, 3), 0);
}

TEST(Polygon, ClosesAndMovesTwoPointsInItsOwnWay) {
  int32_t x[] = {1, 4, 4};
  int32_t y[] = {1, 1, 4};
  TestImage triangle(7, 7);
  NuvDrawPolygon(triangle.data(), 7, 7, x, y, 3, 1, 0, 255);
  TestImage sides(7, 7);
  NuvGryLine(sides.data(), 7, 7, 2, 1, 5, 1, 255);
  NuvGryLine(sides.data(), 7, 7, 5, 1, 5, 4, 255);
  NuvGryLine(sides.data(), 7, 7, 5, 4, 2, 1, 255);
  EXPECT_EQ(triangle, sides);
  TestImage two(7, 7);
  NuvDrawPolygon(two.data(), 7, 7, x, y, 2, 2, 0, 255);
  TestImage expected(7, 7);
  NuvGryLine(expected.data(), 7, 7, 3, 1, 6, 3, 255);
  EXPECT_EQ(two, expected) << "the second y moves by dx";
  TestImage one(7, 7);
  NuvDrawPolygon(one.data(), 7, 7, x, y, 1, 0, 0, 255);
  EXPECT_EQ(one, TestImage(7, 7));
}

}  // namespace
