#include <gmock/gmock.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

TEST(RunLengths, LongerRunsCountInTheLastEntry) {
  TestImage image = draw({"########", ".#.##..#"});
  std::vector<int32_t> count(4, 9);
  NuvRLXWhiteCount(image.data(), 8, 2, count.data(), 3);
  EXPECT_THAT(count, ElementsAre(0, 2, 1, 1));
  NuvRLXBlackCount(image.data(), 8, 2, count.data(), 1);
  EXPECT_THAT(count, ElementsAre(0, 3, 1, 1));
  NuvRLYWhiteCount(image.data(), 8, 2, count.data(), 3);
  EXPECT_THAT(count, ElementsAre(0, 4, 4, 0));
}

TEST(RunDeletion, DependsOnTheLengthOfTheRun) {
  const TestImage image = draw({"#.##.###", "..#....#", "#.......", "##.#.###"});
  const auto changed = [&image](auto function, int32_t length, int32_t color) {
    TestImage result = image;
    function(result.data(), 8, 4, length, static_cast<uint8_t>(color));
    return result;
  };
  EXPECT_EQ(changed(NuvRLXWhiteDeleteLong, 2, 0), draw({"#.##....", "..#....#", "#.......", "##.#...."}));
  EXPECT_EQ(changed(NuvRLXWhiteDeleteShort, 2, 7), draw({"7.##.###", "..7....7", "7.......", "##.7.###"}));
  EXPECT_EQ(changed(NuvRLXBlackDeleteShort, 2, 7), draw({"#7##7###", ".7#....#", "#.......", "##7#7###"}));
  EXPECT_EQ(changed(NuvRLYWhiteDeleteLong, 1, 0), draw({"#..#.##.", "........", "........", ".#.#.###"}));
  EXPECT_EQ(changed(NuvRLYWhiteDeleteShort, 2, 7), draw({"7.#7.77#", "..#....#", "#.......", "#7.7.777"}));
  // With length 1 the pixels above and below must be black, and the first and the last row are left out.
  EXPECT_EQ(changed(NuvRLYWhiteDeleteShort, 1, 7), image);
}

TEST(MinOfRuns, KeepsTheLowByteOfColumnLengths) {
  TestImage image(3, 300, 255);
  NuvBinImgMarkMinOfRLXandRLY(image.data(), 3, 300);
  EXPECT_EQ(image, TestImage(3, 300, 3));
  image = TestImage(3, 256, 255);
  NuvBinImgMarkMinOfRLXandRLY(image.data(), 3, 256);
  EXPECT_EQ(image, TestImage(3, 256, 0));
}

TEST(RunStarts, AreCountedInACentredWindow) {
  TestImage image = draw({"##.#.#.#.#"});
  std::vector<int32_t> starts(10);
  TestImage result(10, 1, 9);
  NuvBinImg01TimesByX(image.data(), starts.data(), 10, 1, 2, result.data());
  EXPECT_THAT(starts, ElementsAre(0, 0, 0, 1, 0, 1, 0, 1, 0, 1));
  EXPECT_EQ(result, draw({"..11212121"}));
}

TEST(HorizontalStrokes, AreThinInYAndLongInX) {
  TestImage image =
      draw({"#####...", "........", ".#####..", "........", "..######", "........", ".##...#.", ".##....."});
  TestImage tmp(8, 8, 9);
  TestImage result(8, 8);
  EXPECT_TRUE(NuvRLYWhiteShortAndRLXWhiteLong(image.data(), tmp.data(), 8, 8, 255, 1, 4, 4, result.data()));
  // Row 0, the last column, the block of two rows and the short stroke are left out.
  EXPECT_EQ(result, draw({"........", "........", ".#####..", "........", "..#####.", "........", "........",
                          "........"}));
}

TEST(ConnectedRuns, ReachALongRunWithinTheLevels) {
  const TestImage image =
      draw({"........", ".####...", "....#...", "....#...", "....#...", "........", ".#......", "........"});
  const auto kept = [&](int32_t max_level) {
    TestImage copy = image;
    TestImage result(8, 8, 9);
    NuvRLXDeleteWhiteShort(copy.data(), 8, 8, 4, max_level, result.data());
    return result;
  };
  EXPECT_EQ(kept(1), draw({"........", ".####...", "........", "........", "........", "........", "........",
                           "........"}));
  EXPECT_EQ(kept(3), draw({"........", ".####...", "....#...", "....#...", "........", "........", "........",
                           "........"}));
}

TEST(ConnectedRuns, HaveAtMost250Levels) {
  TestImage tail(6, 300);
  for (int32_t x = 1; x < 5; ++x) tail.at(x, 1) = 255;
  for (int32_t y = 2; y < 300; ++y) tail.at(3, y) = 255;
  TestImage result(6, 300, 9);
  NuvRLXDeleteWhiteShort(tail.data(), 6, 300, 4, 300, result.data());
  EXPECT_EQ(result.at(3, 250), 255);
  EXPECT_EQ(result.at(3, 251), 0);
}

TEST(ColumnRuns, AreRowRunsOfTheTransposedImage) {
  Random random(69);
  for (const auto& [width, height] : kOddSizes) {
    const TestImage image = random.binary(width, height, 70);
    const TestImage turned = transposed(image);
    const auto changed = [](auto function, TestImage picture, int32_t length) {
      function(picture.data(), picture.width, picture.height, length, uint8_t{0});
      return picture;
    };
    const auto kept = [](auto function, TestImage picture) {
      TestImage result(picture.width, picture.height, 9);
      function(picture.data(), picture.width, picture.height, 4, 3, result.data());
      return result;
    };
    const auto counts = [](auto function, TestImage picture) {
      std::vector<int32_t> entries(21);
      function(picture.data(), picture.width, picture.height, entries.data(), 20);
      return entries;
    };
    using Count = void (*)(uint8_t*, int32_t, int32_t, int32_t*, int32_t);
    const Count white_in_columns = NuvRLYWhiteCount;
    const Count white_in_rows = NuvRLXWhiteCount;
    EXPECT_EQ(counts(white_in_columns, image), counts(white_in_rows, turned));
    EXPECT_EQ(counts(NuvRLYBlackCount, image), counts(NuvRLXBlackCount, turned));
    EXPECT_EQ(transposed(changed(NuvRLYWhiteDeleteLong, image, 3)),
              changed(NuvRLXWhiteDeleteLong, turned, 3));
    EXPECT_EQ(transposed(changed(NuvRLYWhiteDeleteShort, image, 4)),
              changed(NuvRLXWhiteDeleteShort, turned, 4));
    EXPECT_EQ(transposed(kept(NuvRLYDeleteWhiteShort, image)), kept(NuvRLXDeleteWhiteShort, turned));
  }
}

}  // namespace
