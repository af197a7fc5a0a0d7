// The gray of a rectangle, for the functions that copy rectangles.

#ifndef NUV_COLOUR_WEIGHTING_H
#define NUV_COLOUR_WEIGHTING_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// One row: count pixels of three bytes to count bytes of gray.
void rectangle_gray(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* gray);

}  // namespace nuv

#endif
