#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "NuvImgSDK2014DLL.h"

namespace {

using Bytes = std::vector<uint8_t>;
using ToGray = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Pixel = const uint8_t*;

int whole_image_gray(Pixel p) {
  return (p[0] * 468 + p[1] * 2404 + p[2] * 1225) >> 12;
}
int rectangle_gray(Pixel p) {
  return (p[0] * 306 + p[1] * 601 + p[2] * 116) >> 10;
}

void rectangle_of_whole(uint8_t* rgb, int32_t width, int32_t height, uint8_t* gray) {
  NuvCopyRGBRect2Gry(rgb, width, height, 0, width - 1, 0, height - 1, gray);
}

TEST(Gray, FollowsTheFormulas) {
  const std::pair<ToGray, std::function<int(Pixel)>> functions[] = {
      {NuvRGB2Gry, whole_image_gray},
      {NuvRGB2GryInvert, [](Pixel p) { return 255 - whole_image_gray(p); }},
      {rectangle_of_whole, rectangle_gray},
      {NuvRGBsDif2Gry, [](Pixel p) { return *std::max_element(p, p + 3) - *std::min_element(p, p + 3); }},
      {NuvExtractMaxRGB2GryImg, [](Pixel p) { return *std::max_element(p, p + 3); }},
  };
  // All colours whose bytes are multiples of 3, which include 0 and 255.
  Bytes colours;
  for (int i = 0; i < 86 * 86 * 86; ++i) {
    for (int unit : {86 * 86, 86, 1}) colours.push_back(static_cast<uint8_t>(i / unit % 86 * 3));
  }
  Bytes gray(colours.size() / 3);
  for (const auto& [to_gray, formula] : functions) {
    to_gray(colours.data(), static_cast<int32_t>(gray.size()), 1, gray.data());
    for (std::size_t i = 0; i < gray.size(); ++i) ASSERT_EQ(gray[i], formula(&colours[3 * i])) << i;
  }
}

}  // namespace
