#include <gmock/gmock.h>

#include <set>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

TestImage transposed(const TestImage& image) {
  TestImage result(image.height, image.width);
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) result.at(y, x) = image.at(x, y);
  }
  return result;
}

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

// ---- regions ----

using Runs = std::vector<std::vector<int32_t>>;

std::vector<int32_t> as_numbers(const RLX& r) {
  return {r.y, r.x1, r.x2};
}
std::vector<int32_t> as_numbers(const RLY& r) {
  return {r.x, r.y1, r.y2};
}
template <class Record>
Runs runs_of(const std::vector<Record>& records, int32_t count) {
  Runs runs;
  for (int32_t i = 0; i < count; ++i) runs.push_back(as_numbers(records[static_cast<std::size_t>(i)]));
  return runs;
}

TEST(RunRegions, ColumnRunsThatReachTheLastRowAreOneShort) {
  TestImage image = draw({"........", ".#####.#", ".##.####", "........"});
  TestImage turned = transposed(image);
  std::vector<RLX> rows(9);
  std::vector<RLY> columns(9);
  EXPECT_THAT(runs_of(rows, NuvRLXRegionsGet(image.data(), 8, 4, 2, 4, 1, 2, rows.data(), 9)),
              ElementsAre(ElementsAre(1, 1, 5), ElementsAre(2, 1, 2), ElementsAre(2, 4, 7)));
  // The search ends on a black pixel in column 1 and at the end of the image in column 2.
  EXPECT_THAT(runs_of(columns, NuvRLYRegionsGet(turned.data(), 4, 8, 1, 2, 2, 4, columns.data(), 9)),
              ElementsAre(ElementsAre(1, 1, 5), ElementsAre(2, 1, 2), ElementsAre(2, 4, 6)));
  EXPECT_EQ(NuvRLXRegionsGet(image.data(), 8, 4, 2, 4, 1, 2, rows.data(), 2), 2);
}

TEST(RunRegions, GrowWhileTheLengthIsSteady) {
  TestImage image = draw({".........", "..#####..", "..####...", "..#####..", ".........", "........."});
  std::vector<RLX> rows(20);
  EXPECT_THAT(runs_of(rows, NuvRLXRegionsGrowByYInc(image.data(), 9, 6, 1, 2, 6, rows.data(), 20)),
              ElementsAre(ElementsAre(1, 1, 6), ElementsAre(2, 1, 5), ElementsAre(3, 1, 6)));
  TestImage turned = transposed(image);
  std::vector<RLY> columns(20);
  // A walk to the left does not repeat the given column.
  EXPECT_THAT(runs_of(columns, NuvRLYRegionsGrowByXDec(turned.data(), 6, 9, 3, 2, 6, columns.data(), 20)),
              ElementsAre(ElementsAre(2, 1, 5), ElementsAre(1, 1, 6)));

  // A single run is only followed upwards. That appends it once more, and the copy is followed, too.
  const int32_t count = NuvRLXReginsGetAndGrow(image.data(), 9, 6, 2, 6, 3, 3, rows.data(), 20);
  EXPECT_EQ(count, 7);
  NuvDrawRLXRegions(image.data(), 9, 6, rows.data(), count, 9);
  EXPECT_EQ(image, draw({".........", ".999999..", ".99999...", ".999999..", ".........", "........."}));
}

TEST(RunRegions, AreNumberedByConnection) {
  Random random(63);
  for (int round = 0; round < 60; ++round) {
    TestImage image = random.binary(random.between(1, 33), random.between(1, 14), random.between(5, 95));
    std::vector<RLX> records(image.pixels.size() + 1, {-1, 0, 0, -1});
    const int32_t regions = NuvRLXRegionsWithID(image.data(), image.width, image.height, 1, 1, records.data(),
                                                static_cast<int32_t>(records.size()));
    // Each region is painted in its number. Then every run must lie on paint of its own number.
    std::set<int32_t> numbers;
    for (const RLX& r : records) {
      if (r.y < 0 || image.at(r.x1, r.y) != 255) continue;
      EXPECT_TRUE(numbers.insert(r.ID).second);
      flood(image, r.x1, r.y, static_cast<uint8_t>(1 + r.ID));
    }
    for (const RLX& r : records) {
      EXPECT_TRUE(r.y < 0 || image.at(r.x1, r.y) == 1 + r.ID);
    }
    EXPECT_EQ(NuvPixelsInGryImg(image.data(), image.width, image.height, 255), 0)
        << "every white pixel belongs to a run";
    ASSERT_EQ(static_cast<int32_t>(numbers.size()), regions);
    EXPECT_TRUE(regions == 0 || *numbers.rbegin() == regions - 1);
  }
}

TEST(RunRegions, EndAtTheLastNumberAndAtTheLastRecord) {
  TestImage dots(2050, 1);
  for (int32_t x = 0; x < 2050; x += 2) dots.at(x, 0) = 255;
  std::vector<RLX> records(1100);
  EXPECT_EQ(NuvRLXRegionsWithID(dots.data(), 2048, 1, 1, 9, records.data(), 1100), 1024);
  EXPECT_EQ(NuvRLXRegionsWithID(dots.data(), 2050, 1, 1, 9, records.data(), 1100), 1024);
  EXPECT_EQ(NuvRLXRegionsWithID(dots.data(), 2050, 1, 1, 9, records.data(), 7), 7);
}

}  // namespace
