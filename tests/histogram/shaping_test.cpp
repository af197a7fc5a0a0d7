#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

TEST(Equalising, SpreadsValuesByTheirCounts) {
  const struct {
    std::vector<uint8_t> pixels, fast, standard;
  } cases[] = {
      {{10, 20, 20, 30, 30, 30}, {42, 127, 127, 255, 255, 255}, {0, 42, 42, 127, 127, 127}},
      {{10, 10, 20, 30}, {127, 127, 191, 255}, {42, 42, 172, 172}},  // spans 2..-10 and -10..2: -340
      {{80, 80}, {255, 255}, {0, 0}},
  };
  for (const auto& c : cases) {
    const auto count = static_cast<int32_t>(c.pixels.size());
    std::vector<uint8_t> pixels = c.pixels;
    NuvHistogramEqualizeFast(pixels.data(), count, 1);
    EXPECT_EQ(pixels, c.fast);
    pixels = c.pixels;
    NuvHistogramEqualizeStandard(pixels.data(), count, 1);
    EXPECT_EQ(pixels, c.standard);
  }
}

TEST(Normalization, MapsToTheCentreOfTheTargetBins) {
  const std::pair<Bins, std::vector<uint8_t>> cases[] = {
      {bins({{100, 2}, {150, 1}, {200, 1}}), {124, 124, 174, 200}},  // spans 100..149, 150..199 and 200
      {bins({}), {10, 10, 20, 30}},
      {bins({{9, 1}}), {132, 132, 246, 0}},  // spans 9..255, -10..-10 and -10..9
      {bins({{9, 1000}}), {9, 9, 9, 9}},     // holds more pixels than the image
  };
  for (auto [target, expected] : cases) {
    std::vector<uint8_t> pixels = {10, 10, 20, 30};
    NuvHistogramNormalization(pixels.data(), 4, 1, target.data());
    EXPECT_EQ(pixels, expected);
  }
}

}  // namespace
