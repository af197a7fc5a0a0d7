#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

using testing::ElementsAre;

constexpr uint8_t kFill = 77;

TestImage ring() {
  return draw({".......", ".#####.", ".#...#.", ".#...#.", ".#...#.", ".#####.", "......."});
}

// Which pixels a chain encloses, known from the outside: the pixels that its contour, drawn alone, cuts off.
TestImage enclosed_by(TracedChain chain, int32_t width, int32_t height) {
  TestImage rim(width, height);
  NuvMarkChainByColor(rim.data(), width, chain.x, chain.y, chain.data(), chain.n(), 255);
  TestImage inside = outside_of(rim);
  for (uint8_t& pixel : inside.pixels) pixel = pixel != 0 ? 0 : 255;
  return inside;
}

TEST(Filling, CoversExactlyWhatOuterChainsEnclose) {
  Random random(71);
  for (int round = 0; round < 150; ++round) {
    const TestImage image = random_blobs(random, random.between(3, 40), random.between(3, 40));
    TestImage traced = image;
    for (TracedChain& chain : trace_all(traced)) {
      if (!chain.is_outer || chain.n() == 0) continue;
      const TestImage enclosed = enclosed_by(chain, image.width, image.height);
      TestImage with_rim = image;
      TestImage without = image;
      EXPECT_EQ(NuvFillingContour(with_rim.data(), image.width, chain.x, chain.y, chain.data(), chain.n(),
                                  true, 128, kFill),
                1);
      NuvFillingContour(without.data(), image.width, chain.x, chain.y, chain.data(), chain.n(), false, 128,
                        kFill);
      TestImage rim(image.width, image.height);
      NuvMarkChainByColor(rim.data(), image.width, chain.x, chain.y, chain.data(), chain.n(), 255);

      int32_t count = 0;
      std::array<int32_t, 256> expected{};
      for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const bool inside = enclosed.pixels[i] != 0;
        ASSERT_EQ(with_rim.pixels[i], inside ? kFill : image.pixels[i]);
        ASSERT_EQ(without.pixels[i], inside && rim.pixels[i] == 0 ? kFill : image.pixels[i]);
        if (!inside) continue;
        ++count;
        ++expected[image.pixels[i]];
      }
      EXPECT_EQ(NuvRealPixelsEnclosed(chain.data(), chain.n()), count);

      TestImage copy = image;
      std::array<int32_t, 256> bins{};
      EXPECT_EQ(NuvRegionHistogram(copy.data(), image.width, chain.x, chain.y, chain.data(), chain.n(), 128,
                                   bins.data()),
                count);
      EXPECT_EQ(bins, expected);
      TestImage pasted(image.width, image.height);
      EXPECT_EQ(NuvPastePixels2ResImg(copy.data(), image.width, chain.x, chain.y, chain.data(), chain.n(),
                                      128, 255, pasted.data(), 9),
                expected[255]);
      EXPECT_EQ(NuvPixelsInGryImg(pasted.data(), image.width, image.height, 9), expected[255]);
      TestImage copied(image.width, image.height, 1);
      EXPECT_EQ(NuvPastePixels2ResImg(copy.data(), image.width, chain.x, chain.y,
                                      static_cast<const uint8_t*>(chain.data()), chain.n(), uint8_t{128},
                                      uint8_t{0}, copied.data()),
                expected[255]);
      EXPECT_EQ(copy, image);
      EXPECT_EQ(NuvReplacePixelsColor(copy.data(), image.width, chain.x, chain.y, chain.data(), chain.n(),
                                      128, 0, 9),
                expected[0]);
    }
  }
}

TEST(Filling, OfAHoleLeavesItsRim) {
  Random random(72);
  for (int round = 0; round < 150; ++round) {
    const TestImage image = random_blobs(random, random.between(3, 40), random.between(3, 40));
    TestImage traced = image;
    for (TracedChain& chain : trace_all(traced)) {
      if (chain.is_outer) continue;
      TestImage filled = image;
      EXPECT_EQ(NuvFillingContour(filled.data(), image.width, chain.x, chain.y, chain.data(), chain.n(),
                                  false, 128, kFill),
                -1);
      EXPECT_EQ(NuvPixelsInGryImg(filled.data(), image.width, image.height, kFill),
                NuvRealPixelsEnclosed(chain.data(), chain.n()));
    }
  }
}

TEST(Filling, OfLongChainsIsTheSame) {
  TestImage image(1500, 1200);
  for (int32_t y = 1; y < 1199; ++y) std::fill_n(&image.at(1, y), 1498, uint8_t{255});
  TestImage copy = image;
  TracedChain chain = trace(copy, 1, 1, true);
  ASSERT_GT(chain.n(), 4096);
  std::array<int32_t, 256> bins{};
  EXPECT_EQ(NuvRegionHistogram(image.data(), 1500, 1, 1, chain.data(), chain.n(), 128, bins.data()),
            1498 * 1198);
}

TEST(Filling, TakesALonePixelByItself) {
  TestImage image(3, 3, 200);
  uint8_t none = 0;
  std::array<int32_t, 257> bins{};
  EXPECT_EQ(NuvFillingContour(image.data(), 3, 1, 1, &none, 0, true, 128, kFill), 0);
  EXPECT_EQ(NuvRegionHistogram(image.data(), 3, 1, 1, &none, 0, 128, bins.data()), 1);
  EXPECT_EQ(bins[256], 200);
  EXPECT_EQ(bins[200], 0);
  TestImage result(3, 3);
  EXPECT_EQ(NuvPastePixels2ResImg(image.data(), 3, 1, 1, &none, 0, 128, 200, result.data(), 9), 1);
  EXPECT_EQ(NuvPastePixels2ResImg(image.data(), 3, 1, 1, &none, 0, 128, 456, result.data(), 9), 0);
  EXPECT_EQ(NuvReplacePixelsColor(image.data(), 3, 1, 1, &none, 0, 128, 200, 5), 1);
  EXPECT_EQ(image.at(1, 1), 5);
  EXPECT_EQ(result.at(1, 1), 9);
}

TEST(Filling, KeepsClearOfTheReservedValues) {
  // Values 0 to 4 are free again once 1 is taken: the base moves to 4, and 0 is the mark of left edges.
  TestImage image = draw({".....", ".###.", ".#7#.", ".###.", "....."});
  TestImage copy = image;
  TracedChain chain = trace(copy, 1, 1, true);
  NuvFillingContour(image.data(), 5, 1, 1, chain.data(), chain.n(), false, 7, 1);
  EXPECT_EQ(image.at(2, 2), 7);  // the mark inside ends the scan
  EXPECT_EQ(NuvFillingContour(image.data(), 5, 1, 1, chain.data(), chain.n(), false, 128, 1), 1);
  EXPECT_EQ(image, draw({".....", ".###.", ".#1#.", ".###.", "....."}));
}

TEST(Filling, OfAChainThatDoesNotCloseEncloses) {
  TestImage image = ring();
  uint8_t open[] = {0, 0, 6, 6, 4};
  const TestImage before = image;
  NuvFillingContour(image.data(), 7, 2, 2, open, 5, false, 128, kFill);
  EXPECT_EQ(image, before);
}

}  // namespace
