// Sums of bytes, which wrap.

#ifndef NUV_TRANSFORMS_MEANS_H
#define NUV_TRANSFORMS_MEANS_H

#include <cstddef>
#include <cstdint>

#include "frame/views.h"

namespace nuv {

int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n);

// Of the pixels of a region that lies in the image.
int32_t sum_of_region(GrayImage image, Region region);

}  // namespace nuv

#endif
