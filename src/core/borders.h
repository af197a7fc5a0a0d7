// The treatment of the outermost rows and columns.

#ifndef NUV_CORE_BORDERS_H
#define NUV_CORE_BORDERS_H

#include <algorithm>
#include <cstring>

#include "core/views.h"

namespace nuv {

// Clears rows first to last, as far as they lie in the image.
inline void clear_rows(GrayImage image, int32_t first, int32_t last) {
  if (image.empty()) return;
  for (int32_t y = std::max(first, 0); y <= std::min(last, image.height - 1); ++y) {
    std::memset(image.row(y), 0, static_cast<std::size_t>(image.width));
  }
}

// Clears columns first to last of row y, as far as they lie in the image.
inline void clear_columns(GrayImage image, int32_t y, int32_t first, int32_t last) {
  for (int32_t x = std::max(first, 0); x <= std::min(last, image.width - 1); ++x) *image.at(x, y) = 0;
}

// Clears a band of the given width along all four sides. An image of at most two bands is cleared as a whole.
inline void clear_band(GrayImage image, int32_t band) {
  if (image.empty()) return;
  if (image.width <= 2 * band || image.height <= 2 * band) {
    clear_rows(image, 0, image.height - 1);
    return;
  }
  clear_rows(image, 0, band - 1);
  clear_rows(image, image.height - band, image.height - 1);
  // The end of each row and the start of the next are adjacent in memory.
  for (int32_t y = band; y <= image.height - band; ++y) {
    uint8_t* seam = image.row(y) - band;
    for (int32_t i = 0; i < 2 * band; ++i) seam[i] = 0;
  }
}

// Sets the four sides as if the image had one byte per pixel; only the distance between rows is real.
template <int Channels>
void set_side_bytes(Image<Channels> image, uint8_t value) {
  if (image.empty()) return;
  std::memset(image.row(0), value, static_cast<std::size_t>(image.width));
  std::memset(image.row(image.height - 1), value, static_cast<std::size_t>(image.width));
  for (int32_t y = 0; y < image.height; ++y) image.row(y)[0] = image.row(y)[image.width - 1] = value;
}

inline void clear_sides(GrayImage image) {
  clear_band(image, 1);
}

}  // namespace nuv

#endif
