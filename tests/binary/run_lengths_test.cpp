#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;
using testing::Eq;

TestImage transposed(const TestImage& image) {
  TestImage result(image.height, image.width);
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) result.at(y, x) = image.at(x, y);
  }
  return result;
}

// ---- run lengths ----

TEST(RunLengths, SumToThePixelsAndAreTheSameInColumns) {
  Random random(61);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.binary(width, height, random.between(2, 98));
    TestImage turned = transposed(image);
    const int32_t longest = std::max(width, height);
    std::vector<int32_t> white(static_cast<std::size_t>(longest) + 1);
    std::vector<int32_t> black = white;
    std::vector<int32_t> turned_white = white;
    std::vector<int32_t> turned_black = white;
    NuvRLXWhiteCount(image.data(), width, height, white.data(), longest);
    NuvRLXBlackCount(image.data(), width, height, black.data(), longest);
    NuvRLYWhiteCount(turned.data(), height, width, turned_white.data(), longest);
    NuvRLYBlackCount(turned.data(), height, width, turned_black.data(), longest);
    int32_t white_pixels = 0;
    int32_t black_pixels = 0;
    for (int32_t i = 0; i <= longest; ++i) {
      white_pixels += i * white[static_cast<std::size_t>(i)];
      black_pixels += i * black[static_cast<std::size_t>(i)];
    }
    EXPECT_EQ(white_pixels, NuvPixelsInGryImg(image.data(), width, height, 255));
    EXPECT_EQ(white_pixels + black_pixels, width * height);
    EXPECT_EQ(turned_white, white);
    EXPECT_EQ(turned_black, black);
  }
}

TEST(RunLengths, RunsBeyondTheLastEntryCountInIt) {
  TestImage image = draw({"########", ".#.##..#"});
  std::vector<int32_t> count(4, 9);
  NuvRLXWhiteCount(image.data(), 8, 2, count.data(), 3);
  EXPECT_THAT(count, ElementsAre(0, 2, 1, 1));
}

TEST(RunStatistics, GoOnOverValuesThatDoNotStartARun) {
  TestImage image(7, 2);
  image.pixels = {200, 201, 200, 199, 255, 200, 0, 0, 0, 230, 0, 0, 0, 0};
  int32_t sum = 0, min = 0, max = 0, most = 0;
  EXPECT_EQ(NuvRLXWhiteCount(image.data(), 7, 2, 0, 6, 0, 1, &sum, &min, &max, &most), 3);
  EXPECT_THAT((std::vector{sum, min, max, most}), ElementsAre(5, 1, 2, 2));
  EXPECT_EQ(NuvRLXWhiteCount(image.data(), 7, 2, 2, 3, 0, 1, &sum, &min, &max, &most), 1);
  EXPECT_THAT((std::vector{sum, min, max, most}), ElementsAre(1, 1, 1, 1));
  EXPECT_EQ(NuvRLYWhiteCount(image.data(), 7, 2, 6, 6, 0, 1, &sum, &min, &max, &most), 0);
  EXPECT_THAT((std::vector{sum, min, max, most}), ElementsAre(0, 7, 0, 0));
}

TEST(RunDeletion, GoesByTheLengthOfTheRun) {
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
  // Length 1 asks for black above and below instead, and leaves out the first and the last row.
  EXPECT_EQ(changed(NuvRLYWhiteDeleteShort, 1, 7), image);
}

TEST(MinOfRuns, CutsColumnLengthsToAByte) {
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

TEST(LongRuns, NeedMoreTowardsTheBottom) {
  TestImage image = draw({"######", ".##.##", "###.#.", "####..", ".####.", "######"});
  TestImage result(6, 6);
  NuvRLXWhiteLong(image.data(), 6, 6, 0, 5, result.data());  // from y pixels on, between the sides
  EXPECT_EQ(result, draw({"......", ".##.#.", ".##...", ".###..", ".####.", "......"}));
}

TEST(HorizontalStrokes, AreThinInYAndLongInX) {
  TestImage image =
      draw({"#####...", "........", ".#####..", "........", "..######", "........", ".##...#.", ".##....."});
  TestImage tmp(8, 8, 9);
  TestImage result(8, 8);
  EXPECT_TRUE(NuvRLYWhiteShortAndRLXWhiteLong(image.data(), tmp.data(), 8, 8, 255, 1, 4, 4, result.data()));
  // Not in row 0, not in the last column, not the block of two rows, not the short one.
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
    TestImage turned = transposed(image);
    TestImage turned_result(8, 8, 9);
    NuvRLYDeleteWhiteShort(turned.data(), 8, 8, 4, max_level, turned_result.data());
    EXPECT_EQ(transposed(turned_result), result);
    return result;
  };
  EXPECT_EQ(kept(1), draw({"........", ".####...", "........", "........", "........", "........", "........",
                           "........"}));
  EXPECT_EQ(kept(3), draw({"........", ".####...", "....#...", "....#...", "........", "........", "........",
                           "........"}));
}

// ---- regions ----

using Runs = std::vector<std::vector<int32_t>>;

Runs runs_of(const std::vector<RLX>& records, int32_t count) {
  Runs runs;
  for (int32_t i = 0; i < count; ++i) {
    const RLX& r = records[static_cast<std::size_t>(i)];
    runs.push_back({r.y, r.x1, r.x2});
  }
  return runs;
}
Runs runs_of(const std::vector<RLY>& records, int32_t count) {
  Runs runs;
  for (int32_t i = 0; i < count; ++i) {
    const RLY& r = records[static_cast<std::size_t>(i)];
    runs.push_back({r.x, r.y1, r.y2});
  }
  return runs;
}

TEST(RunRegions, AreCollectedWholeButColumnsEndOneShort) {
  TestImage image = draw({"........", ".#####.#", ".##.####", "........"});
  TestImage turned = transposed(image);
  std::vector<RLX> rows(9);
  std::vector<RLY> columns(9);
  EXPECT_THAT(runs_of(rows, NuvRLXRegionsGet(image.data(), 8, 4, 2, 4, 1, 2, rows.data(), 9)),
              ElementsAre(ElementsAre(1, 1, 5), ElementsAre(2, 1, 2), ElementsAre(2, 4, 7)));
  // The search of column 1 ends on a black pixel, that of column 2 with the image.
  EXPECT_THAT(runs_of(columns, NuvRLYRegionsGet(turned.data(), 4, 8, 1, 2, 2, 4, columns.data(), 9)),
              ElementsAre(ElementsAre(1, 1, 5), ElementsAre(2, 1, 2), ElementsAre(2, 4, 6)));
  EXPECT_EQ(NuvRLXRegionsGet(image.data(), 8, 4, 2, 4, 1, 2, rows.data(), 2), 2);
}

TEST(RunRegions, GrowWhileTheLengthIsSteady) {
  TestImage image = draw({".........", "..#####..", "..####...", "..#####..", ".........", "........."});
  std::vector<RLX> rows(20);
  EXPECT_THAT(runs_of(rows, NuvRLXRegionsGrowByYInc(image.data(), 9, 6, 1, 2, 6, rows.data(), 20)),
              ElementsAre(ElementsAre(1, 1, 6), ElementsAre(2, 1, 5), ElementsAre(3, 1, 6)));
  EXPECT_THAT(runs_of(rows, NuvRLXRegionsGrowByYDec(image.data(), 9, 6, 3, 2, 6, rows.data(), 20)),
              ElementsAre(ElementsAre(3, 1, 6), ElementsAre(2, 1, 5), ElementsAre(1, 1, 6)));
  TestImage turned = transposed(image);
  std::vector<RLY> columns(20);
  // To the left, the column given is not repeated.
  EXPECT_THAT(runs_of(columns, NuvRLYRegionsGrowByXDec(turned.data(), 6, 9, 3, 2, 6, columns.data(), 20)),
              ElementsAre(ElementsAre(2, 1, 5), ElementsAre(1, 1, 6)));
  EXPECT_EQ(NuvRLYRegionsGrowByXInc(turned.data(), 6, 9, 1, 2, 6, columns.data(), 20), 3);
  EXPECT_EQ(NuvRLXRegionsGrowByYInc(image.data(), 9, 6, 1, 2, 6, rows.data(), 2), 2);

  // One run alone grows upwards only, and once more from the copy of itself that this appends.
  const int32_t count = NuvRLXReginsGetAndGrow(image.data(), 9, 6, 2, 6, 3, 3, rows.data(), 20);
  EXPECT_EQ(count, 7);
  NuvDrawRLXRegions(image.data(), 9, 6, rows.data(), count, 9);
  EXPECT_EQ(image, draw({".........", ".999999..", ".99999...", ".999999..", ".........", "........."}));
}

TEST(RunRegions, FullRecordsEndEverything) {
  Random random(62);
  for (int i = 0; i < 200; ++i) {
    TestImage image = random.binary(30, 20, 80);
    const int32_t n = random.between(-1, 12);
    std::vector<RLX> rows(static_cast<std::size_t>(std::max(n, 0)) + 1, {-7, -7, -7, -7});
    std::vector<RLY> columns(rows.size(), {-7, -7, -7});
    NuvRLXReginsGetAndGrow(image.data(), 30, 20, 10, 15, 8, 9, rows.data(), n);
    NuvRLYReginsGetAndGrow(image.data(), 30, 20, 10, 11, 8, 12, columns.data(), n);
    EXPECT_EQ(rows.back().y, -7);
    EXPECT_EQ(columns.back().x, -7);
  }
}

// Numbers 4-connected white pixels by flooding; 0 for black ones.
std::vector<int32_t> flooded(const TestImage& image) {
  std::vector<int32_t> label(image.pixels.size());
  const auto place = [&](int32_t x, int32_t y) { return static_cast<std::size_t>(y * image.width + x); };
  int32_t count = 0;
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) {
      if (image.at(x, y) == 0 || label[place(x, y)] != 0) continue;
      ++count;
      std::vector<std::pair<int32_t, int32_t>> open = {{x, y}};
      while (!open.empty()) {
        const auto [i, j] = open.back();
        open.pop_back();
        if (i < 0 || j < 0 || i >= image.width || j >= image.height) continue;
        if (image.at(i, j) == 0 || label[place(i, j)] != 0) continue;
        label[place(i, j)] = count;
        for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
          open.emplace_back(i + dx, j + dy);
      }
    }
  }
  return label;
}

TEST(RunRegions, AreNumberedByConnection) {
  Random random(63);
  for (int round = 0; round < 60; ++round) {
    const int32_t width = random.between(1, 70);
    const int32_t height = random.between(1, 40);
    TestImage image = random.binary(width, height, random.between(5, 95));
    std::vector<RLX> records(image.pixels.size() + 1, {-1, 0, 0, -1});
    const int32_t regions = NuvRLXRegionsWithID(image.data(), width, height, 1, 1, records.data(),
                                                static_cast<int32_t>(records.size()));
    const std::vector<int32_t> label = flooded(image);
    // One number for one label, the other way round too, and numbers without gaps.
    std::map<int32_t, int32_t> number_of;
    for (const RLX& r : records) {
      if (r.y < 0) break;
      for (int32_t x = r.x1; x <= r.x2; ++x) {
        const int32_t at = label[static_cast<std::size_t>(r.y * width + x)];
        EXPECT_EQ(number_of.emplace(at, r.ID).first->second, r.ID);
      }
      EXPECT_LT(r.ID, regions);
    }
    EXPECT_EQ(static_cast<int32_t>(number_of.size()), regions);
    EXPECT_EQ(*std::max_element(label.begin(), label.end()), regions);
  }
}

TEST(RunRegions, ReuseTheNumbersOfRegionsThatJoin) {
  TestImage image = draw({"#.#.#", "###.#", "....#", "#...#"});
  std::vector<RLX> records(20);
  EXPECT_EQ(NuvRLXRegionsWithID(image.data(), 5, 4, 1, 1, records.data(), 20), 3);
  std::vector<int32_t> numbers;
  for (int i = 0; i < 8; ++i) numbers.push_back(records[static_cast<std::size_t>(i)].ID);
  EXPECT_THAT(numbers, ElementsAre(0, 0, 2, 0, 2, 2, 1, 2));
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
