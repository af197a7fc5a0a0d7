#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <set>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;

std::vector<RegionStruct> regions_of(TestImage image, int32_t min_area, int32_t min_gray, double ratio) {
  std::vector<uint8_t> work(image.pixels.size() * 2);
  RegionStruct* list =
      NuvMergeSplit(image.data(), work.data(), image.width, image.height, min_area, min_gray, ratio);
  std::vector<RegionStruct> regions;
  for (const RegionStruct* r = list; r != nullptr; r = r->next) regions.push_back(*r);
  NuvFreeRegionStruct(list);
  return regions;
}

std::vector<int32_t> areas_of(const std::vector<RegionStruct>& regions) {
  std::vector<int32_t> areas;
  for (const RegionStruct& r : regions) areas.push_back(r.area);
  return areas;
}

void fill(TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
  for (int32_t y = y1; y <= y2; ++y) std::fill(&image.at(x1, y), &image.at(x2, y) + 1, value);
}

// Two dark squares in a gray one, on a light ground.
TestImage scene() {
  TestImage image(60, 40, 240);
  fill(image, 5, 54, 5, 34, 120);
  fill(image, 10, 24, 10, 29, 40);
  fill(image, 35, 49, 10, 29, 40);
  return image;
}

TEST(MergeSplit, KeepsOrReplacesWhatSplits) {
  // Areas by NuvAreaAndPerimeter: polygon plus half the perimeter.
  const auto area = [](int32_t w, int32_t h) { return (w - 1) * (h - 1) + (w - 1 + h - 1); };
  const auto kept = regions_of(scene(), 50, 10, 1.0);
  ASSERT_THAT(areas_of(kept), ElementsAre(area(15, 20), area(15, 20), area(50, 30)));
  EXPECT_EQ(kept[0].parentID, kept[2].ID);
  EXPECT_EQ(kept[1].parentID, kept[2].ID);
  EXPECT_EQ(kept[2].parentID, -1);
  EXPECT_EQ(kept[2].gry, 240);
  const auto replaced = regions_of(scene(), 50, 10, 0.0);
  ASSERT_THAT(areas_of(replaced), ElementsAre(area(15, 20), area(15, 20)));
  EXPECT_EQ(replaced[0].parentID, -1);
  // Above the gray between them the dark squares are one.
  EXPECT_EQ(regions_of(scene(), 50, 121, 0.0).size(), 1U);
}

TEST(MergeSplit, TracksARegionThatShrinks) {
  TestImage image(40, 40, 250);
  for (int32_t i = 0; i < 10; ++i)
    fill(image, 5 + i, 34 - i, 5 + i, 34 - i, static_cast<uint8_t>(200 - 10 * i));
  const auto regions = regions_of(image, 60, 0, 0.5);
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].area, 29 * 29 + 58);
  EXPECT_LT(regions[0].curArea, 14 * 14);
}

TEST(MergeSplit, GivesATreeForEveryImage) {
  Random random(91);
  const double ratios[] = {0.0, 0.3, 1.0, -5.0, 1e300, std::numeric_limits<double>::quiet_NaN()};
  for (int round = 0; round < 60; ++round) {
    const int32_t width = random.between(1, 50);
    const int32_t height = random.between(1, 50);
    TestImage noise = random.gray(width, height);
    TestImage image = noise;
    NuvGryAverageFilter(noise.data(), width, height, 2, 2, image.data());
    const auto regions =
        regions_of(image, random.between(-2, 20), random.between(-2, 256), ratios[round % 6]);
    std::set<int32_t> ids;
    for (std::size_t i = regions.size(); i-- > 0;) {
      const RegionStruct& r = regions[i];
      EXPECT_TRUE(i == 0 || regions[i - 1].area <= r.area);
      // Parents stand farther on.
      EXPECT_TRUE(r.parentID == -1 || ids.count(r.parentID) != 0) << image;
      EXPECT_TRUE(ids.insert(r.ID).second);
    }
  }
}

TEST(MergeSplit, LeavesTheInverseWithClearSides) {
  TestImage image(6, 5, 255);
  image.at(2, 2) = 30;
  std::vector<uint8_t> work(60, 9);
  EXPECT_EQ(NuvMergeSplit(image.data(), work.data(), 6, 5, 4, 0, 0.5), nullptr);
  TestImage inverse(6, 5);
  inverse.at(2, 2) = 225;
  EXPECT_EQ(image, inverse);
  NuvFreeRegionStruct(nullptr);
}

}  // namespace
