// The eight directions and neighbours.
//
// Image y grows downwards, so code 2 is up on the screen and rising codes turn counter-clockwise:
//
//     3 2 1
//     4 . 0
//     5 6 7
//
// Even codes are unit steps, odd codes diagonal ones.

#ifndef NUV_CORE_NEIGHBOURS_H
#define NUV_CORE_NEIGHBOURS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/views.h"

namespace nuv {

constexpr std::array<int32_t, 8> kDx = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr std::array<int32_t, 8> kDy = {0, -1, -1, -1, 0, 1, 1, 1};

constexpr bool is_diagonal(int direction) {
  return (direction & 1) != 0;
}

// The low three bits of a code are the direction, so every byte of a chain is a valid index of the tables.
constexpr int direction_of(uint8_t code) {
  return code & 7;
}

// Moves the point. A function that returned a point would make clang pack both coordinates into one register in
// every step of a walk.
constexpr void take_step(Point& p, uint8_t code) {
  p.x += kDx[direction_of(code)];
  p.y += kDy[direction_of(code)];
}

// The offset from a pixel to each of its neighbours in an image with rows of that width.
constexpr std::array<std::ptrdiff_t, 8> neighbour_offsets(std::ptrdiff_t width) {
  std::array<std::ptrdiff_t, 8> offsets{};
  for (int d = 0; d < 8; ++d) offsets[d] = kDy[d] * width + kDx[d];
  return offsets;
}

}  // namespace nuv

#endif
