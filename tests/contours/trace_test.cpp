#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

TEST(Trace, WorkedChains) {
  const TestImage ring = draw({".......", ".#####.", ".#...#.", ".#...#.", ".#...#.", ".#####.", "......."});
  struct Case {
    TestImage image;
    int32_t y;
    bool is_outer;
    std::vector<uint8_t> codes;
    int32_t area, perimeter;
  };
  const Case cases[] = {
      {draw({".....", ".###.", ".###.", ".###.", "....."}), 1, true, {6, 6, 0, 0, 2, 2, 4, 4}, 9, 8},
      {draw({".....", ".###.", "....."}), 1, true, {0, 0, 4, 4}, 3, 4},
      {draw({".....", ".#...", "..#..", "...#.", "....."}), 1, true, {7, 7, 3, 3}, 3, 6},
      {draw({".....", ".#.#.", "..#..", ".#.#.", "....."}), 1, true, {7, 5, 1, 7, 3, 1, 5, 3}, 5, 11},
      {ring, 1, true, {6, 6, 6, 6, 0, 0, 0, 0, 2, 2, 2, 2, 4, 4, 4, 4}, 25, 16},
      {ring, 2, false, {1, 0, 0, 7, 6, 6, 5, 4, 4, 3, 2, 2}, 9, 14},
  };
  for (Case c : cases) {
    const TracedChain chain = trace(c.image, 1, c.y, c.is_outer);
    EXPECT_EQ(chain.codes, c.codes);
    const Measure measure = real_measure(chain);
    EXPECT_EQ(measure.area, c.area);
    EXPECT_EQ(measure.perimeter, c.perimeter);
  }
}

TEST(Trace, MarksASinglePixelAndItsNeighbours) {
  TestImage image = draw({"...", ".#.", "..."});
  EXPECT_TRUE(trace(image, 1, 1, true).codes.empty());
  EXPECT_EQ(image.at(1, 1), 254);
  image.at(1, 1) = 1;
  EXPECT_EQ(image, TestImage(3, 3, 1));
}

TEST(Trace, TakesValuesFrom2OnForObjects) {
  for (uint8_t value : {1, 2}) {
    TestImage image = draw({"....", ".#..", "...."});
    image.at(2, 1) = value;
    EXPECT_EQ(trace(image, 1, 1, true).n(), value == 2 ? 2 : 0);
  }
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

TEST(Trace, OfRandomImagesIsClosedAndMarked) {
  Random random(11);
  for (int round = 0; round < 300; ++round) {
    TestImage image = random_blobs(random, 30, 20);
    for (const TracedChain& chain : trace_all(image)) {
      int32_t x = chain.x;
      int32_t y = chain.y;
      for (uint8_t code : chain.codes) {
        x += kStepX[code];
        y += kStepY[code];
        ASSERT_EQ(image.at(x, y), 254);
      }
      ASSERT_EQ(x, chain.x);
      ASSERT_EQ(y, chain.y);
    }
  }
}

}  // namespace
