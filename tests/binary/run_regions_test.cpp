#include <gmock/gmock.h>

#include <set>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;
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
