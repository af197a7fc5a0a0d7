// Medians of windows of any size by histograms.

#ifndef NUV_FILTERS_MEDIAN_BINS_H
#define NUV_FILTERS_MEDIAN_BINS_H

#include <cstdint>

#include "core/views.h"

namespace nuv {

// Writes the medians of windows of 2m + 1 columns by 2n + 1 rows for the rows y1..y2, at all places where the
// columns of the window lie in the image. Rows outside the image are left out of the window. If that leaves
// an even number of pixels, two values are in the middle of their order. At the first place of a row the
// median is the upper one. At each further place it is the previous median, clamped to the range of the two.
//
// If allocation fails, nothing is written and the result is false.
bool write_medians(GrayImage source, GrayImage result, int32_t m, int32_t n, int32_t y1, int32_t y2);

}  // namespace nuv

#endif
