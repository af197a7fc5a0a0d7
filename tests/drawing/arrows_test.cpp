#include <gtest/gtest.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

// The lines that an arrow consists of: x1, y1, x2, y2 of each.
using Lines = std::vector<int32_t>;

TestImage of_lines(int32_t width, int32_t height, const Lines& lines) {
  TestImage image(width, height);
  for (std::size_t i = 0; i < lines.size(); i += 4) {
    NuvGryLine(image.data(), width, height, lines[i], lines[i + 1], lines[i + 2], lines[i + 3], 255);
  }
  return image;
}

TEST(BlockArrow, IsSixLines) {
  TestImage up(40, 35);
  NuvDrawUpArrow(up.data(), 40, 35, 15, 24, 5, 30, 255);
  EXPECT_EQ(up, of_lines(40, 35, {5,  15, 19, 5,  34, 15, 19, 5,  5,  15, 34, 15,
                                  15, 15, 15, 30, 24, 15, 24, 30, 15, 30, 24, 30}));
  TestImage left(40, 35);  // shorter than its head, and its wings are cut at the image
  NuvDrawLeftArrow(left.data(), 40, 35, 5, 12, 3, 28, 255);
  EXPECT_EQ(left, of_lines(40, 35, {12, 0, 5, 15, 12, 34, 5, 15, 12, 0, 12, 34}));
}

}  // namespace
