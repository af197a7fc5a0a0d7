#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

std::vector<int> codes_of(const TracedChain& chain) {
  return {chain.codes.begin(), chain.codes.end()};
}

TEST(Trace, WorkedChains) {
  struct Case {
    TestImage image;
    std::vector<int> codes;
    int32_t area, perimeter;
  };
  const Case cases[] = {
      {draw({".....", ".###.", ".###.", ".###.", "....."}), {6, 6, 0, 0, 2, 2, 4, 4}, 9, 8},
      {draw({".....", ".###.", "....."}), {0, 0, 4, 4}, 3, 4},
      {draw({".....", ".#...", "..#..", "...#.", "....."}), {7, 7, 3, 3}, 3, 6},
      {draw({".....", ".#.#.", "..#..", ".#.#.", "....."}), {7, 5, 1, 7, 3, 1, 5, 3}, 5, 11},
  };
  for (Case c : cases) {
    const TracedChain chain = trace(c.image, 1, 1, true);
    EXPECT_EQ(codes_of(chain), c.codes);
    const Measure measure = real_measure(chain);
    EXPECT_EQ(measure.area, c.area);
    EXPECT_EQ(measure.perimeter, c.perimeter);
  }
}

TEST(Trace, OfAHoleRunsClockwiseOnTheRim) {
  TestImage ring = draw({".......", ".#####.", ".#...#.", ".#...#.", ".#...#.", ".#####.", "......."});
  const TracedChain outer = trace(ring, 1, 1, true);
  EXPECT_EQ(outer.codes.size(), 16U);
  EXPECT_EQ(real_measure(outer).area, 25);
  const TracedChain hole = trace(ring, 1, 2, false);
  EXPECT_EQ(codes_of(hole), (std::vector<int>{1, 0, 0, 7, 6, 6, 5, 4, 4, 3, 2, 2}));
  EXPECT_EQ(real_measure(hole).area, 9);
  EXPECT_EQ(real_measure(hole).perimeter, 14);
}

TEST(Trace, MarksALonePixelAndItsNeighbours) {
  TestImage image = draw({"...", ".#.", "..."});
  EXPECT_TRUE(trace(image, 1, 1, true).codes.empty());
  TestImage expected(3, 3, 1);
  expected.at(1, 1) = 254;
  EXPECT_EQ(image, expected);
}

TEST(Trace, BeyondItsCapacityDropsCodesAndCompletesTheMarks) {
  TestImage whole = draw({".....", ".###.", ".###.", ".###.", "....."});
  TestImage cut = whole;
  TestImage unstored = whole;
  trace(whole, 1, 1, true);
  uint8_t codes[3] = {9, 9, 9};
  EXPECT_EQ(NuvTraceContour(cut.data(), 5, 1, 1, codes, 3, true), 2);
  EXPECT_THAT(codes, ElementsAre(6, 6, 9));
  EXPECT_EQ(cut, whole);
  NuvMarkContour(unstored.data(), 5, 1, 1, true);
  EXPECT_EQ(unstored, whole);
}

// Every contour of random images is closed, keeps to object pixels, and has been marked all round.
TEST(Trace, OfRandomImagesIsClosedAndOnTheObject) {
  Random random(11);
  for (int round = 0; round < 300; ++round) {
    TestImage image = random_blobs(random, 30, 20);
    const TestImage original = image;
    for (const TracedChain& chain : trace_all(image)) {
      int32_t x = chain.x;
      int32_t y = chain.y;
      for (uint8_t code : chain.codes) {
        x += kStepX[code];
        y += kStepY[code];
        ASSERT_EQ(original.at(x, y), 255);
        ASSERT_EQ(image.at(x, y), 254);
      }
      ASSERT_EQ(x, chain.x);
      ASSERT_EQ(y, chain.y);
    }
  }
}

}  // namespace
