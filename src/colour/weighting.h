// The gray of a rectangle, for the functions that copy rectangles.

#ifndef NUV_COLOUR_WEIGHTING_H
#define NUV_COLOUR_WEIGHTING_H

#include <cstddef>
#include <cstdint>

namespace nuv {

// Converts a row of count RGB pixels to count gray bytes.
void rectangle_gray(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* gray);

}  // namespace nuv

#endif
