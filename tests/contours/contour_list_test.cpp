#include <gtest/gtest.h>

#include <memory>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

struct FreeContours {
  void operator()(NUV_CONTOUR_STRUCT* list) const { NuvFreeContours(list); }
};
using Contours = std::unique_ptr<NUV_CONTOUR_STRUCT, FreeContours>;

Contours get_contours(TestImage& image, int32_t min_perimeter = 0, int32_t min_area = 0, int32_t mode = 0) {
  std::vector<uint8_t> work(image.pixels.size());
  return Contours(
      NuvGetContours(image.data(), work.data(), image.width, image.height, min_perimeter, min_area, mode));
}

TestImage ring_and_bar() {
  return draw({"...........", ".#####.....", ".#...#.....", ".#.#.#..##.", ".#...#..##.", ".#####..##.",
               "..........."});
}

TEST(GetContours, KeepsWhatModeAndLimitsAllow) {
  struct Case {
    int32_t min_perimeter, min_area, mode;
    std::vector<int32_t> areas;
  };
  // The lone pixel in the ring has no chain.
  const Case cases[] = {
      {0, 0, 1, {25, 6}},    {0, 0, 2, {9}},     {0, 0, 7, {25, 9, 6}}, {7, 0, 0, {25, 9}},
      {6, 0, 0, {25, 9, 6}}, {0, 9, 0, {25, 9}}, {0, 10, 0, {25}},      {99, 0, 0, {}},
  };
  for (const Case& c : cases) {
    TestImage image = ring_and_bar();
    std::vector<int32_t> areas;
    const Contours list = get_contours(image, c.min_perimeter, c.min_area, c.mode);
    for (const auto* node = list.get(); node != nullptr; node = node->pNext) areas.push_back(node->area);
    EXPECT_EQ(areas, c.areas) << c.min_perimeter << ' ' << c.min_area << ' ' << c.mode;
  }
}

TEST(GetContours, ClearsTheBorderAndNeedsExactly255) {
  TestImage image = draw({"###", "###", "###"});
  EXPECT_FALSE(get_contours(image)) << "a single pixel remains, which has no chain";
  EXPECT_EQ(image, draw({"...", ".#.", "..."}));
  TestImage gray(5, 5, 128);
  EXPECT_FALSE(get_contours(gray));
  EXPECT_EQ(gray, draw({".....", ".###.", ".###.", ".###.", "....."}))
      << "the image becomes binary all the same";
}

TEST(GetContours, ComparesValuesWithTheirLimits) {
  for (uint8_t ground : {9, 10}) {
    TestImage image(7, 4, ground);
    for (int32_t x : {3, 4}) image.at(x, 1) = image.at(x, 2) = 255;
    EXPECT_EQ(get_contours(image, 0, 0, 1) != nullptr, ground == 9);
  }
  for (uint8_t object : {250, 251}) {
    TestImage image(7, 5, object);
    image.at(3, 2) = 0;
    EXPECT_EQ(get_contours(image, 0, 0, 2) != nullptr, object == 251);
  }
  TestImage restored(4, 3);
  restored.at(1, 1) = 49;
  restored.at(2, 1) = 50;
  EXPECT_FALSE(get_contours(restored));
  EXPECT_EQ(restored, draw({"....", "..#.", "...."}));
}

// The scan that steps over equal pixels finds what the plain scan finds, and restores the image.
TEST(GetContours, AgreesWithThePlainScanOnRandomImages) {
  Random random(13);
  for (int round = 0; round < 200; ++round) {
    const int32_t width = random.between(3, 70);
    TestImage image = random_blobs(random, width, random.between(3, 30));
    TestImage traced = image;
    const TestImage original = image;
    const Contours list = get_contours(image);
    const NUV_CONTOUR_STRUCT* node = list.get();
    for (const TracedChain& chain : trace_all(traced)) {
      if (chain.codes.empty()) continue;
      ASSERT_NE(node, nullptr);
      ASSERT_EQ(node->isOuter, chain.is_outer);
      ASSERT_EQ(node->x, chain.x);
      ASSERT_EQ(node->y, chain.y);
      ASSERT_EQ(node->area, real_measure(chain).area);
      ASSERT_EQ(node->perimeter, real_measure(chain).perimeter);
      ASSERT_EQ(std::vector<uint8_t>(node->pChainCode, node->pChainCode + node->N), chain.codes);
      node = node->pNext;
    }
    ASSERT_EQ(node, nullptr);
    ASSERT_EQ(image, original);
  }
}

}  // namespace
