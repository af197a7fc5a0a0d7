#include <gtest/gtest.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

// The image that has pixel (x, y) of the source at index place(x, y).
template <class Place>
Bytes moved(const Bytes& source, int32_t width, int32_t height, int32_t pixel_bytes, Place place) {
  Bytes result(source.size());
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      std::copy_n(source.begin() + (y * width + x) * pixel_bytes, pixel_bytes,
                  result.begin() + place(x, y) * pixel_bytes);
    }
  }
  return result;
}

TEST(Turning, MovesEachPixelToItsPlace) {
  Random random(92);
  for (auto [width, height] : kOddSizes) {
    const int32_t w = width;
    const int32_t h = height;
    for (int32_t bytes : {1, 3, 4}) {
      Bytes source = random.bytes(static_cast<std::size_t>(w * h * bytes));
      Bytes result(source.size());
      Bytes back(source.size());
      const bool rgb = bytes == 3;
      if (bytes == 4) {
        NuvRGB32Rotate90Degree(source.data(), w, h, true, result.data());
        NuvRGB32Rotate90Degree(result.data(), h, w, false, back.data());
      } else {
        NuvImgRotate90DegreeCS(source.data(), w, h, rgb, result.data());
        NuvImgRotate90DegreeCCS(result.data(), h, w, rgb, back.data());
      }
      ASSERT_EQ(result, moved(source, w, h, bytes, [=](int32_t x, int32_t y) { return x * h + h - 1 - y; }));
      ASSERT_EQ(back, source);
      if (bytes == 4) continue;

      const Bytes flipped =
          moved(source, w, h, bytes, [=](int32_t x, int32_t y) { return (h - 1 - y) * w + x; });
      NuvFlipVertical(source.data(), w, h, rgb, result.data());
      ASSERT_EQ(result, flipped);
      NuvFlipVertical(result.data(), w, h, rgb);
      ASSERT_EQ(result, source);
      if (rgb) continue;

      NuvReverseImg(source.data(), w, h, result.data());
      ASSERT_EQ(result, Bytes(source.rbegin(), source.rend()));
      NuvFlipHorizontal(result.data(), w, h);
      ASSERT_EQ(result, flipped) << "a half turn and one mirror equal the other mirror";
    }
  }
}

}  // namespace
