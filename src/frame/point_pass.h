// Passes that map every pixel by itself.

#ifndef NUV_FRAME_POINT_PASS_H
#define NUV_FRAME_POINT_PASS_H

#include "frame/row_kernel.h"
#include "frame/views.h"

namespace nuv {

// Applies row_map(pixels, count) to each row of a region that lies in the image; a region that spans the
// whole width is one long row.
template <class RowMap>
void for_rows(GrayImage image, Region region, RowMap row_map) {
  if (region.empty()) return;
  if (region.columns() == image.width) {
    row_map(image.row(region.y1), static_cast<std::ptrdiff_t>(image.width) * region.rows());
    return;
  }
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    row_map(image.at(region.x1, y), static_cast<std::ptrdiff_t>(region.columns()));
  }
}

}  // namespace nuv

#endif
