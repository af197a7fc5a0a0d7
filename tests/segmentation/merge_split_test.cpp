#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

std::vector<RegionStruct> regions_of(TestImage image, int32_t min_area, int32_t min_gray, double ratio) {
  std::vector<uint8_t> work(image.pixels.size() * 2);
  RegionStruct* list =
      NuvMergeSplit(image.data(), work.data(), image.width, image.height, min_area, min_gray, ratio);
  std::vector<RegionStruct> regions;
  for (const RegionStruct* r = list; r != nullptr; r = r->next) regions.push_back(*r);
  NuvFreeRegionStruct(list);
  return regions;
}

void fill(TestImage& image, int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
  for (int32_t y = y1; y <= y2; ++y) std::fill(&image.at(x1, y), &image.at(x2, y) + 1, value);
}

// The area of a rectangle by NuvAreaAndPerimeter: the polygon plus half the perimeter.
int32_t area(int32_t w, int32_t h) {
  return (w - 1) * (h - 1) + (w - 1 + h - 1);
}

TEST(MergeSplit, KeepsOrReplacesWhatSplits) {
  // Two dark rectangles in a gray one, on a light ground.
  TestImage scene(60, 40, 240);
  fill(scene, 5, 54, 5, 34, 120);
  fill(scene, 10, 24, 10, 29, 40);
  fill(scene, 35, 49, 10, 29, 40);
  const auto kept = regions_of(scene, 50, 10, 1.0);
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_EQ(kept[0].area, area(15, 20));
  EXPECT_EQ(kept[1].area, area(15, 20));
  EXPECT_EQ(kept[2].area, area(50, 30));
  EXPECT_EQ(kept[0].parentID, kept[2].ID);
  EXPECT_EQ(kept[1].parentID, kept[2].ID);
  EXPECT_EQ(kept[2].parentID, -1);
  EXPECT_EQ(kept[2].gry, 240);
  const auto replaced = regions_of(scene, 50, 10, 0.0);
  ASSERT_EQ(replaced.size(), 2U);
  EXPECT_EQ(replaced[1].area, area(15, 20));
  EXPECT_EQ(replaced[0].parentID, -1);
  // At levels above the gray between them the dark rectangles are one region.
  EXPECT_EQ(regions_of(scene, 50, 121, 0.0).size(), 1U);
}

TEST(MergeSplit, TracksARegionThatShrinks) {
  TestImage image(40, 40, 250);
  fill(image, 5, 34, 5, 34, 200);
  fill(image, 12, 27, 12, 27, 110);
  const auto regions = regions_of(image, 60, 0, 0.5);
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].area, area(30, 30));
  EXPECT_EQ(regions[0].curArea, area(16, 16));
}

TEST(MergeSplit, FindsTheRegionAroundManyOthers) {
  // A dark plate with 900 holes, one dark square in each, and one more in a notch of the plate.
  TestImage image(300, 300, 240);
  fill(image, 5, 294, 5, 294, 100);
  for (int32_t y = 10; y < 280; y += 9) {
    for (int32_t x = 10; x < 280; x += 9) {
      fill(image, x, x + 6, y, y + 6, 240);
      fill(image, x + 2, x + 4, y + 2, y + 4, 100);
    }
  }
  fill(image, 285, 294, 285, 294, 240);
  fill(image, 288, 290, 288, 290, 100);
  const auto regions = regions_of(image, area(3, 3), 0, 0.5);
  ASSERT_EQ(regions.size(), 902U);
  const int32_t plate = regions.back().ID;
  for (const RegionStruct& r : regions) {
    EXPECT_EQ(r.parentID, r.ID == plate || r.x0 == 288 ? -1 : plate) << r.x0 << ' ' << r.y0;
  }
}

TEST(MergeSplit, HasTheChainsOfTracedLevels) {
  Random random(37);
  for (int round = 0; round < 60; ++round) {
    const TestImage image = random.gray(random.between(3, 90), random.between(3, 60));
    TestImage inverse = image;
    std::vector<uint8_t> work(image.pixels.size() * 2);
    RegionStruct* list =
        NuvMergeSplit(inverse.data(), work.data(), image.width, image.height, random.between(2, 9), 0, 0.5);
    ASSERT_TRUE(list != nullptr || image.pixels.size() < 100);
    for (const RegionStruct* r = list; r != nullptr; r = r->next) {
      TestImage darker = image;
      NuvThreshold(darker.data(), image.width, image.height, r->gry, darker.data());
      NuvInvertGryValue(darker.data(), image.width, image.height);
      NuvDrawGryRect(darker.data(), image.width, image.height, 0, image.width - 1, 0, image.height - 1, 0);
      std::vector<uint8_t> codes(4 * image.pixels.size());
      const int32_t n = NuvTraceContour(darker.data(), image.width, r->x0, r->y0, codes.data(),
                                        static_cast<int32_t>(codes.size()), true);
      ASSERT_EQ(std::vector<uint8_t>(r->pChainCode, r->pChainCode + r->N),
                std::vector<uint8_t>(codes.begin(), codes.begin() + n));
    }
    NuvFreeRegionStruct(list);
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
}

}  // namespace
