// What happens to the outermost rows and columns.

#ifndef NUV_FRAME_BORDERS_H
#define NUV_FRAME_BORDERS_H

#include <cstring>

#include "frame/views.h"

namespace nuv {

// Zeroed: the four sides become 0.
inline void clear_sides(GrayImage image) {
  if (image.empty()) return;
  const auto row_bytes = static_cast<std::size_t>(image.width);
  std::memset(image.row(0), 0, row_bytes);
  std::memset(image.row(image.height - 1), 0, row_bytes);
  for (int32_t y = 1; y < image.height - 1; ++y) {
    uint8_t* row = image.row(y);
    row[0] = 0;
    row[image.width - 1] = 0;
  }
}

}  // namespace nuv

#endif
