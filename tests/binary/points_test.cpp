#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

TEST(DeletePoints, DependsOnTheNumberOfWhiteNeighbours) {
  // The end of row 1 is a neighbour of the start of row 2.
  TestImage isolated = draw({".......", "..#...#", "#...#..", "...#...", "......#"});
  NuvBinImgDeleteIsolatedPoints(isolated.data(), 7, 5);
  EXPECT_EQ(isolated, draw({".......", "......#", "#...#..", "...#...", "......#"}));

  TestImage block = draw({".....", ".###.", ".###.", ".###.", "....."});
  NuvBinImgDeletePointsLessThanN(block.data(), 5, 5, 255, 4);
  // A corner has three white neighbours and is deleted. It no longer counts for the pixels after it, which
  // still have four or more unless they are corners.
  EXPECT_EQ(block, draw({".....", "..#..", ".###.", "..#..", "....."}));
  NuvBinImgDeletePointsMoreThanN(block.data(), 5, 5, 255, 3);
  EXPECT_EQ(block, draw({".....", "..#..", ".#.#.", "..#..", "....."}));
}

TEST(DeletePoints, EqualsAPlainScanInPlace) {
  Random random(68);
  for (const auto& [width, height] : kOddSizes) {
    for (const bool more : {false, true}) {
      const int32_t n = random.between(-1, 9);
      TestImage result = random.binary(width, height, 60);
      TestImage expected = result;
      for (int32_t y = 1; y < height - 1; ++y) {
        for (int32_t x = 1; x < width - 1; ++x) {
          int32_t white = 0;
          for (int d = 0; d < 8; ++d) white += expected.at(x + kStepX[d], y + kStepY[d]) == 255 ? 1 : 0;
          if (expected.at(x, y) == 255 && (more ? white > n : white < n)) expected.at(x, y) = 0;
        }
      }
      (more ? NuvBinImgDeletePointsMoreThanN : NuvBinImgDeletePointsLessThanN)(result.data(), width, height,
                                                                               255, n);
      EXPECT_EQ(result, expected) << width << 'x' << height << (more ? " more than " : " less than ") << n;
    }
  }
}

}  // namespace
