#include <gtest/gtest.h>

#include <array>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

constexpr uint8_t kFill = 77;

// Calls check(image, chain, enclosed pixels) for the contours of random images.
template <class Check>
void for_random_contours(uint32_t seed, bool outer, Check check) {
  Random random(seed);
  for (int round = 0; round < 150; ++round) {
    const TestImage image = random_blobs(random, random.between(3, 40), random.between(3, 40));
    TestImage traced = image;
    for (TracedChain& chain : trace_all(traced)) {
      if (chain.is_outer != outer || chain.n() == 0) continue;
      check(image, chain, enclosed_by(chain, image.width, image.height));
    }
  }
}

TEST(Filling, CoversExactlyWhatOuterChainsEnclose) {
  for_random_contours(71, true, [](const TestImage& image, TracedChain& chain, const Enclosed& enclosed) {
    const int32_t n = chain.n();
    TestImage with_rim = image;
    TestImage without = image;
    EXPECT_EQ(
        NuvFillingContour(with_rim.data(), image.width, chain.x, chain.y, chain.data(), n, true, 128, kFill),
        1);
    NuvFillingContour(without.data(), image.width, chain.x, chain.y, chain.data(), n, false, 128, kFill);
    std::array<int32_t, 256> expected{};
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
      const bool inside = enclosed.region.pixels[i] != 0;
      ASSERT_EQ(with_rim.pixels[i], inside ? kFill : image.pixels[i]);
      ASSERT_EQ(without.pixels[i], inside && enclosed.rim.pixels[i] == 0 ? kFill : image.pixels[i]);
      if (inside) ++expected[image.pixels[i]];
    }
    EXPECT_EQ(NuvRealPixelsEnclosed(chain.data(), n), expected[0] + expected[255]);

    TestImage copy = image;
    std::array<int32_t, 256> bins{};
    NuvRegionHistogram(copy.data(), image.width, chain.x, chain.y, chain.data(), n, 128, bins.data());
    EXPECT_EQ(bins, expected);
    TestImage pasted(image.width, image.height);
    EXPECT_EQ(NuvPastePixels2ResImg(copy.data(), image.width, chain.x, chain.y, chain.data(), n, 128, 255,
                                    pasted.data(), 9),
              expected[255]);
    EXPECT_EQ(NuvPixelsInGryImg(pasted.data(), image.width, image.height, 9), expected[255]);
    TestImage copied(image.width, image.height, 1);
    const uint8_t* codes = chain.data();
    EXPECT_EQ(NuvPastePixels2ResImg(copy.data(), image.width, chain.x, chain.y, codes, n, uint8_t{128},
                                    uint8_t{0}, copied.data()),
              expected[255]);
    EXPECT_EQ(NuvPixelsInGryImg(copied.data(), image.width, image.height, 255), expected[255]);
    EXPECT_EQ(copy, image);
    EXPECT_EQ(NuvReplacePixelsColor(copy.data(), image.width, chain.x, chain.y, chain.data(), n, 128, 0, 9),
              expected[0]);
  });
}

TEST(Filling, OfAHoleLeavesItsRim) {
  for_random_contours(72, false, [](const TestImage& image, TracedChain& chain, const Enclosed&) {
    TestImage filled = image;
    EXPECT_EQ(NuvFillingContour(filled.data(), image.width, chain.x, chain.y, chain.data(), chain.n(), false,
                                128, kFill),
              -1);
    EXPECT_EQ(NuvPixelsInGryImg(filled.data(), image.width, image.height, kFill),
              NuvRealPixelsEnclosed(chain.data(), chain.n()));
  });
}

TEST(Filling, OfLongChainsIsTheSame) {
  TestImage image(1500, 1200);
  NuvFillGryRect(image.data(), 1500, 1200, 1, 1498, 1, 1198, 255);
  TestImage copy = image;
  TracedChain chain = trace(copy, 1, 1, true);
  ASSERT_GT(chain.n(), 4096);
  std::array<int32_t, 256> bins{};
  EXPECT_EQ(NuvRegionHistogram(image.data(), 1500, 1, 1, chain.data(), chain.n(), 128, bins.data()),
            1498 * 1198);
}

TEST(Filling, HandlesASinglePixel) {
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

TEST(Filling, AvoidsTheReservedValues) {
  // With 1 and 7 reserved, the first five free values are 2 to 6. The base is 4, and 0 marks left edges.
  TestImage image = draw({".....", ".###.", ".#7#.", ".###.", "....."});
  TestImage copy = image;
  TracedChain chain = trace(copy, 1, 1, true);
  NuvFillingContour(image.data(), 5, 1, 1, chain.data(), chain.n(), false, 7, 1);
  EXPECT_EQ(image.at(2, 2), 7);  // the mark inside ends the scan
  EXPECT_EQ(NuvFillingContour(image.data(), 5, 1, 1, chain.data(), chain.n(), false, 128, 1), 1);
  EXPECT_EQ(image, draw({".....", ".###.", ".#1#.", ".###.", "....."}));
}

TEST(Filling, OfAChainThatDoesNotCloseWritesNothing) {
  TestImage image(7, 7, 255);
  uint8_t open[] = {0, 0, 6, 6, 4};
  NuvFillingContour(image.data(), 7, 2, 2, open, 5, false, 128, kFill);
  EXPECT_EQ(image, TestImage(7, 7, 255));
}

}  // namespace
