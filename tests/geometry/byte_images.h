// Gray and RGB images as bytes.

#ifndef NUV_TESTS_GEOMETRY_BYTE_IMAGES_H
#define NUV_TESTS_GEOMETRY_BYTE_IMAGES_H

#include <cstdint>
#include <vector>

#include "images.h"

using Bytes = std::vector<uint8_t>;

struct Source {
  int32_t width;
  int32_t height;
  int32_t channels;
  Bytes bytes;

  Source(Random& random, int32_t w, int32_t h, int32_t c)
      : width(w), height(h), channels(c), bytes(random.bytes(static_cast<std::size_t>(w * h * c))) {}
  int32_t at(int32_t x, int32_t y, int32_t c) const {
    return bytes[static_cast<std::size_t>((y * width + x) * channels + c)];
  }
};

// The image whose bytes are byte(x, y, c).
template <class Byte>
Bytes image_of(int32_t width, int32_t height, int32_t channels, Byte byte) {
  Bytes result;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int32_t c = 0; c < channels; ++c) result.push_back(static_cast<uint8_t>(byte(x, y, c)));
    }
  }
  return result;
}

#endif
