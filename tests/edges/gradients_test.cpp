#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Gradient = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);

constexpr uint8_t kSentinel = 77;

// A pixel, which gives its neighbours by their offsets.
struct Pixel {
  const TestImage& image;
  int32_t x, y;

  int operator()(int32_t dx, int32_t dy) const { return image.at(x + dx, y + dy); }
};

// |G0| and |G90|.
int g0(Pixel p) {
  return std::abs(p(-1, -1) + 2 * p(0, -1) + p(1, -1) - p(-1, 1) - 2 * p(0, 1) - p(1, 1));
}
int g90(Pixel p) {
  return std::abs(p(-1, -1) + 2 * p(-1, 0) + p(-1, 1) - p(1, -1) - 2 * p(1, 0) - p(1, 1));
}
int across_columns(Pixel p) {
  return std::abs(p(1, 0) - p(-1, 0));
}
int across_rows(Pixel p) {
  return std::abs(p(0, 1) - p(0, -1));
}
int two_along_row(Pixel p) {
  return std::abs(p(-2, 0) + p(-1, 0) - p(1, 0) - p(2, 0));
}
int two_along_column(Pixel p) {
  return std::abs(p(0, -2) + p(0, -1) - p(0, 1) - p(0, 2));
}
int rows_5x5(Pixel p) {
  int sum = 0;
  for (int32_t dx = -2; dx <= 2; ++dx) sum += p(dx, -2) + p(dx, -1) - p(dx, 1) - p(dx, 2);
  return std::abs(sum);
}

void robert_everywhere(uint8_t* source, int32_t width, int32_t height, uint8_t* result) {
  NuvRobertByMask(source, nullptr, width, height, result);
}

const struct {
  Gradient gradient;
  int32_t band;
  int limit;
  int (*formula)(Pixel);
} kMembers[] = {
    {NuvRobert, 1, 255, [](Pixel p) { return std::max(across_columns(p), across_rows(p)); }},
    {robert_everywhere, 1, 255, [](Pixel p) { return across_columns(p) + across_rows(p); }},
    {NuvGryImgSobel, 1, 255, [](Pixel p) { return g0(p) + g90(p); }},
    {NuvGryImgSobel0, 1, 255, g0},
    {NuvGryImgSobel90, 1, 255, g90},
    {NuvGryImgSobel0Just, 1, 255, [](Pixel p) { return g90(p) < g0(p) ? g0(p) : 0; }},
    {NuvGryImgSobel90Just, 1, 255, [](Pixel p) { return g0(p) < g90(p) ? g90(p) : 0; }},
    {NuvPrewitt90, 2, 255, two_along_row},
    {NuvGradient5x5ByPrewitt0_90, 2, 250,
     [](Pixel p) { return std::max(two_along_row(p), two_along_column(p)); }},
    {NuvGradient0ByPrewitt5x5, 2, 250, rows_5x5},
};

TEST(Gradients, FollowTheirFormulasAndClearTheirBand) {
  Random random(29);
  for (const auto& [gradient, band, limit, formula] : kMembers) {
    for (const auto& [width, height] : kOddSizes) {
      TestImage source = random.noise(width, height);
      TestImage result(width, height, kSentinel);
      TestImage expected(width, height);
      for (int32_t y = band; y < height - band; ++y) {
        for (int32_t x = band; x < width - band; ++x) {
          expected.at(x, y) = static_cast<uint8_t>(std::min(formula({source, x, y}), limit));
        }
      }
      gradient(source.data(), width, height, result.data());
      ASSERT_EQ(result, expected) << width << 'x' << height;
    }
  }
}

TEST(Robert, OfColourClearsItsBorderAsIfTheImageWereGray) {
  TestImage rgb = draw({"............", "............", "1234##.32..."});
  TestImage colour = draw({"777777777777", "777777777777", "777777777777"});
  NuvRobertRGBImage2RGBRobert(rgb.data(), 4, 3, colour.data());
  EXPECT_EQ(colour, draw({"....77777777", ".77.##.32777", "....77777777"}));
  TestImage gray(4, 3, kSentinel);
  NuvRobertRGBImage2GryRobert(rgb.data(), 4, 3, gray.data());
  EXPECT_EQ(gray, draw({"....", ".#3.", "...."})) << "the greatest of the channels";
}

}  // namespace
