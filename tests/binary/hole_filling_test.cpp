#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(FillHolesByNearNeighbor, SearchesRightLeftDownUpAtEachDistance) {
  TestImage image = draw({"..4..5", "...1.6", "......", "..32.."});
  TestImage mask = draw({"#####.", "######", "######", "######"});
  const auto filled = [&](int32_t max_distance) {
    TestImage result(6, 4, 9);
    NuvFillHolesByNearNeighbor(image.data(), mask.data(), 6, 4, max_distance, result.data());
    return result;
  };
  EXPECT_EQ(filled(0), draw({"..4...", "...1.6", "......", "..32.."}));
  EXPECT_EQ(filled(-1), filled(0));
  // The left neighbour of the first pixel of a row is the last pixel of the row above. The search upwards does
  // not reach row 0.
  EXPECT_EQ(filled(1), draw({".4445.", "5.1166", "6.32.6", ".3322."}));
}

// The first pixel that is not 0 in the order of the search.
uint8_t nearest(const TestImage& image, int32_t x, int32_t y, int32_t max_distance) {
  const int32_t place = y * image.width + x;
  const auto pixel = [&](int32_t i) { return image.pixels[static_cast<std::size_t>(i)]; };
  for (int32_t d = 1; d <= max_distance; ++d) {
    if (x + d < image.width && pixel(place + d) != 0) return pixel(place + d);
    if (place - d >= 0 && pixel(place - d) != 0) return pixel(place - d);
    if (y + d < image.height && image.at(x, y + d) != 0) return image.at(x, y + d);
    if (y - d > 0 && image.at(x, y - d) != 0) return image.at(x, y - d);
  }
  return 0;
}

TEST(FillHolesByNearNeighbor, AgreesWithTheSearch) {
  Random random(67);
  for (const auto& [width, height] : kOddSizes) {
    for (const int32_t percent : {0, 2, 40}) {
      TestImage mask = random.binary(width, height, 80);
      TestImage image = random.binary(width, height, percent);
      for (uint8_t& pixel : image.pixels)
        pixel = pixel != 0 ? static_cast<uint8_t>(random.between(1, 255)) : 0;
      const int32_t max_distance = random.between(1, 150);
      TestImage expected = image;
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          uint8_t& pixel = expected.at(x, y);
          if (pixel == 0) pixel = nearest(image, x, y, max_distance);
          if (mask.at(x, y) == 0) pixel = 0;
        }
      }
      TestImage result(width, height, 9);
      NuvFillHolesByNearNeighbor(image.data(), mask.data(), width, height, max_distance, result.data());
      EXPECT_EQ(result, expected) << width << 'x' << height << ", distance " << max_distance;
    }
  }
}

}  // namespace
