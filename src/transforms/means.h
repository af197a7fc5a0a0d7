// Sums over regions, which wrap.

#ifndef NUV_TRANSFORMS_MEANS_H
#define NUV_TRANSFORMS_MEANS_H

#include <cstdint>

#include "frame/views.h"

namespace nuv {

// Of the pixels of a region that lies in the image.
int32_t sum_of_region(GrayImage image, Region region);

}  // namespace nuv

#endif
