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

TEST(Polygon, ClosesAndMovesTwoPointsByAnotherRule) {
  const auto polygon = [](int32_t n, int32_t dx, int32_t dy) {
    int32_t x[] = {1, 4, 4};
    int32_t y[] = {1, 1, 4};
    TestImage image(7, 7);
    NuvDrawPolygon(image.data(), 7, 7, x, y, n, dx, dy, 255);
    return image;
  };
  TestImage sides(7, 7);
  NuvGryLine(sides.data(), 7, 7, 2, 1, 5, 1, 255);
  NuvGryLine(sides.data(), 7, 7, 5, 1, 5, 4, 255);
  NuvGryLine(sides.data(), 7, 7, 5, 4, 2, 1, 255);
  EXPECT_EQ(polygon(3, 1, 0), sides);
  TestImage line(7, 7);
  NuvGryLine(line.data(), 7, 7, 3, 1, 6, 3, 255);
  EXPECT_EQ(polygon(2, 2, 0), line) << "the second y moves by dx";
  EXPECT_EQ(polygon(1, 0, 0), TestImage(7, 7));
}

TEST(Circle, IsFourPolylines) {
  TestImage image(9, 9);
  NuvDrawCircle(image.data(), 9, 9, 4, 4, 3, 3, 255);
  // Vertices (1, 4), (2, 1), (3, 1), (4, 1) and their mirror images; each line leaves out its left column.
  EXPECT_EQ(image, draw({".........", "..######.", "..#....#.", "..#....#.", ".##....#.", "..#....#.",
                         "..#....#.", "..######.", "........."}));
  const TestImage before = image;
  NuvDrawCircle(image.data(), 9, 9, 4, 4, -1, 3, 9);
  EXPECT_EQ(image, before);
}

}  // namespace
