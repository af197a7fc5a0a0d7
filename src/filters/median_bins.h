// Medians of windows of any size.

#ifndef NUV_FILTERS_MEDIAN_BINS_H
#define NUV_FILTERS_MEDIAN_BINS_H

#include <cstdint>

#include "core/views.h"

namespace nuv {

// Writes the medians of windows of 2m + 1 columns by 2n + 1 rows for the rows y1..y2, at all places where the
// columns fit the width; rows outside the image are left out of the window. Where that leaves an even number
// of pixels, the median is the upper one of the two in the middle at the first place of a row, and from there
// the value of the place before, moved between the two in the middle no farther than it must.
//
// Returns whether there was memory for it; if not, nothing is written.
bool write_medians(GrayImage source, uint8_t* result, int32_t m, int32_t n, int32_t y1, int32_t y2);

}  // namespace nuv

#endif
