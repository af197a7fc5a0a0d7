// Images that a function has drawn.

#ifndef NUV_TESTS_DRAWING_DRAWN_H
#define NUV_TESTS_DRAWING_DRAWN_H

#include <cstdint>

#include "images.h"

template <class Draw>
TestImage drawn(int32_t width, int32_t height, Draw draw_into) {
  TestImage image(width, height);
  draw_into(image.data(), width, height);
  return image;
}

#endif
