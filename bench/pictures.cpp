#include "pictures.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "NuvImgSDK2014DLL.h"

BenchPicture gray_picture(int32_t width, int32_t height) {
  int32_t w = 0;
  int32_t h = 0;
  const std::unique_ptr<uint8_t[]> photograph(NuvRead8BitBmpFile2Img(NUV_PHOTOGRAPH, &w, &h));
  if (!photograph) {
    std::fprintf(stderr, "%s cannot be read\n", NUV_PHOTOGRAPH);
    std::exit(1);
  }
  const auto mirrored = [](int32_t i, int32_t size) {
    return i / size % 2 == 0 ? i % size : size - 1 - i % size;
  };
  BenchPicture picture{width, height, 1, {}};
  picture.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x)
      picture.pixels.push_back(photograph[mirrored(y, h) * w + mirrored(x, w)]);
  }
  return picture;
}

BenchPicture colour_picture() {
  BenchPicture gray = gray_picture();
  BenchPicture inverted = gray;
  for (uint8_t& pixel : inverted.pixels) pixel = static_cast<uint8_t>(255 - pixel);
  BenchPicture colour{gray.width, gray.height, 3, LineVector<uint8_t>(gray.pixels.size() * 3)};
  NuvGry2RGBImg(gray.data(), inverted.data(), gray.data(), gray.width, gray.height, colour.data());
  return colour;
}

BenchPicture binary_picture() {
  BenchPicture picture = gray_picture();
  for (uint8_t& pixel : picture.pixels) pixel = pixel >= 128 ? 255 : 0;
  NuvDrawGryRect(picture.data(), picture.width, picture.height, 0, picture.width, 0, picture.height, 0);
  return picture;
}
