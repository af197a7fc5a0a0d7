// The gray weightings of an interleaved pixel.

#ifndef NUV_COLOUR_WEIGHTING_H
#define NUV_COLOUR_WEIGHTING_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// One row each, count pixels of three bytes to count bytes of gray.
void whole_image_gray(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* gray);
void rectangle_gray(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* gray);

}  // namespace nuv

#endif
