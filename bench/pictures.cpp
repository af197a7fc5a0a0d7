#include "pictures.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "NuvImgSDK2014DLL.h"

namespace {

using ReadPicture = uint8_t*(const char*, int32_t*, int32_t*);

BenchPicture photograph(const char* path, ReadPicture& read = NuvRead8BitBmpFile2Img, int32_t channels = 1) {
  int32_t width = 0;
  int32_t height = 0;
  const std::unique_ptr<uint8_t[]> pixels(read(path, &width, &height));
  if (!pixels) {
    std::fprintf(stderr, "%s cannot be read\n", path);
    std::exit(1);
  }
  return {width, height, channels, {pixels.get(), pixels.get() + width * height * channels}};
}

}  // namespace

BenchPicture gray_picture(int32_t width, int32_t height) {
  const BenchPicture source = photograph(NUV_PHOTOGRAPH);
  const int32_t w = source.width;
  const int32_t h = source.height;
  const auto mirrored = [](int32_t i, int32_t size) {
    return i / size % 2 == 0 ? i % size : size - 1 - i % size;
  };
  BenchPicture picture{width, height, 1, {}};
  picture.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x)
      picture.pixels.push_back(source.pixels[static_cast<std::size_t>(mirrored(y, h) * w + mirrored(x, w))]);
  }
  return picture;
}

BenchPicture coins_picture() {
  return photograph(NUV_COINS);
}

BenchPicture brick_picture() {
  return photograph(NUV_BENCH_DATA "/brick.bmp");
}

BenchPicture clock_picture() {
  return photograph(NUV_BENCH_DATA "/clock.bmp");
}

BenchPicture coffee_picture() {
  BenchPicture picture = photograph(NUV_BENCH_DATA "/coffee.bmp", NuvRead24BitBmpFile2Img, 3);
  LineVector<uint8_t> gray(picture.pixels.size() / 3);
  NuvRGB2Gry(picture.data(), picture.width, picture.height, gray.data());
  return {picture.width, picture.height, 1, std::move(gray)};
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
