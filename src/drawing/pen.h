// Pens: a gray or RGB image to draw into, and the colour to draw with.

#ifndef NUV_DRAWING_PEN_H
#define NUV_DRAWING_PEN_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/arithmetic.h"
#include "core/views.h"

namespace nuv {

struct GrayPen {
  GrayImage image;
  uint8_t colour;

  GrayPen(uint8_t* pixels, int32_t width, int32_t height, int32_t gray)
      : image{pixels, width, height}, colour(low_byte(gray)) {}
  void put(int32_t x, int32_t y) const { *image.at(x, y) = colour; }
  // n pixels of a row, from column x on.
  void put_run(int32_t x, int32_t y, int32_t n) const {
    std::memset(image.at(x, y), colour, static_cast<std::size_t>(n));
  }
};

struct RgbPen {
  RgbImage image;
  uint8_t blue, green, red;

  RgbPen(uint8_t* pixels, int32_t width, int32_t height, int32_t r, int32_t g, int32_t b)
      : image{pixels, width, height}, blue(low_byte(b)), green(low_byte(g)), red(low_byte(r)) {}
  void put(int32_t x, int32_t y) const {
    uint8_t* pixel = image.at(x, y);
    pixel[0] = blue;
    pixel[1] = green;
    pixel[2] = red;
  }
  // Each copy doubles the pixels that are already written.
  void put_run(int32_t x, int32_t y, int32_t n) const {
    if (n < 1) return;
    put(x, y);
    uint8_t* first = image.at(x, y);
    const std::size_t bytes = 3 * static_cast<std::size_t>(n);
    for (std::size_t done = 3; done < bytes; done *= 2) {
      std::memcpy(first + done, first, std::min(done, bytes - done));
    }
  }
};

}  // namespace nuv

#endif
